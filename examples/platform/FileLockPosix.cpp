#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <utility>

#include "catalogue/FileLock.h"
#include "catalogue/Stream.h"

namespace {

// What the handler of signals needs, which can take no lock and no memory.
volatile std::sig_atomic_t undoDescriptor = -1;
off_t undoSize = 0;
const char* newPath = nullptr;

extern "C" void undo(int signal) {
  if (undoDescriptor >= 0) {
    const int ignored = newPath != nullptr ? unlink(newPath) : ftruncate(undoDescriptor, undoSize);
    static_cast<void>(ignored);
  }
  static_cast<void>(std::signal(signal, SIG_DFL));
  static_cast<void>(raise(signal));
}

bool isSameFile(int descriptor, const char* path) {
  struct stat open {};
  struct stat named {};
  return fstat(descriptor, &open) == 0 && stat(path, &named) == 0 && open.st_dev == named.st_dev &&
         open.st_ino == named.st_ino;
}

}  // namespace

namespace catalogue {

FileLock::FileLock(std::filesystem::path path, const std::function<void()>& wait) : path_(std::move(path)) {
  for (bool hasWaited = false;;) {
    int descriptor = open(path_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    isNew_ = descriptor >= 0;
    if (!isNew_ && errno == EEXIST) {
      descriptor = open(path_.c_str(), O_RDWR | O_CLOEXEC);
      if (descriptor < 0 && errno == ENOENT) continue;  // It has just gone.
    }
    if (descriptor < 0) throwIoError("cannot write " + textOf(path_));
    handle_ = descriptor;
    if (flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
      if (!hasWaited) wait();
      hasWaited = true;
      while (flock(descriptor, LOCK_EX) != 0 && errno == EINTR) {
      }
    }
    if (isSameFile(descriptor, path_.c_str())) return;
    close(descriptor);  // Who held the lock has taken the file away.
  }
}

FileLock::~FileLock() {
  keepWhenInterrupted();
  const int descriptor = static_cast<int>(handle_);
  if (isNew_ && lseek(descriptor, 0, SEEK_END) == 0) unlink(path_.c_str());
  close(descriptor);
}

void FileLock::undoWhenInterrupted() const {
  undoSize = lseek(static_cast<int>(handle_), 0, SEEK_END);
  newPath = isNew_ ? path_.c_str() : nullptr;
  undoDescriptor = static_cast<int>(handle_);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) static_cast<void>(std::signal(signal, undo));
}

void FileLock::keepWhenInterrupted() { undoDescriptor = -1; }

bool FileLock::isHeld(const std::filesystem::path& path) {
  const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) return false;
  const bool isHeld = flock(descriptor, LOCK_SH | LOCK_NB) != 0;
  close(descriptor);
  return isHeld;
}

}  // namespace catalogue
