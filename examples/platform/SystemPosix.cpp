#include <fcntl.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

#include "catalogue/Stream.h"
#include "catalogue/System.h"

namespace catalogue {

std::vector<std::string> startProgram(int argc, char** argv) {
  if (std::signal(SIGPIPE, SIG_IGN) == SIG_ERR) throwIoError("SIGPIPE");
  return {argv + 1, argv + argc};
}

bool isTerminal(int descriptor) { return isatty(descriptor) != 0; }

std::size_t askColumns(int descriptor) {
  winsize size{};
  if (ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) return size.ws_col;
  const char* const columns = secure_getenv("COLUMNS");
  return columns != nullptr ? std::strtoul(columns, nullptr, 10) : 0;
}

FileLock::FileLock(const std::filesystem::path& path, bool isWriter)
    : handle_(open(path.c_str(), O_CLOEXEC | (isWriter ? O_RDWR | O_CREAT : O_RDONLY), 0666)), isWriter_(isWriter) {
  if (handle_ < 0) throwIoError("cannot write " + textOf(path));
}

FileLock::~FileLock() { close(static_cast<int>(handle_)); }

bool FileLock::take(bool mayWait) const {
  const int operation = (isWriter_ ? LOCK_EX : LOCK_SH) | (mayWait ? 0 : LOCK_NB);
  return flock(static_cast<int>(handle_), operation) == 0;
}

}  // namespace catalogue
