#include "catalogue/Terminal.h"

#include <unistd.h>

#include <cerrno>
#include <csignal>

std::vector<std::string> catalogue::startProgram(int argc, char** argv) {
  std::signal(SIGPIPE, SIG_IGN);
  return {argv + 1, argv + argc};
}

bool catalogue::outputGoesToTerminal() { return isatty(STDOUT_FILENO) != 0; }

bool catalogue::errorsGoToTerminal() { return isatty(STDERR_FILENO) != 0; }

bool catalogue::meansClosedPipe(int error) { return error == EPIPE; }
