#include "catalogue/Terminal.h"

#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <system_error>

std::vector<std::string> catalogue::startProgram(int argc, char** argv) {
  if (std::signal(SIGPIPE, SIG_IGN) == SIG_ERR) throw std::system_error(errno, std::generic_category(), "SIGPIPE");
  return {argv + 1, argv + argc};
}

bool catalogue::isTerminal(int descriptor) { return isatty(descriptor) != 0; }

bool catalogue::meansClosedPipe(int error) { return error == EPIPE; }
