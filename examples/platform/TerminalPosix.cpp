#include "catalogue/Terminal.h"

#include <unistd.h>

#include <cerrno>
#include <csignal>

std::vector<std::string> catalogue::startProgram(int argc, char** argv) {
  std::signal(SIGPIPE, SIG_IGN);
  return {argv + 1, argv + argc};
}

bool catalogue::isTerminal(int descriptor) { return isatty(descriptor) != 0; }

bool catalogue::meansClosedPipe(int error) { return error == EPIPE; }
