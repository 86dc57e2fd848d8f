// One writer at a time.
#ifndef CATALOGUE_FILELOCK_H_
#define CATALOGUE_FILELOCK_H_

#include <cstdint>
#include <filesystem>
#include <functional>

namespace catalogue {

// Holds the system's lock on a file, which it makes if there is none. It has a source for each system.
class FileLock {
 public:
  // Calls `wait`, which may throw, before it waits for somebody else who holds the lock.
  FileLock(std::filesystem::path path, const std::function<void()>& wait);
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;
  // A file that it made and that is still empty goes.
  ~FileLock();

  [[nodiscard]] bool isNew() const { return isNew_; }

  // From now on, an interruption of the program leaves the file as it is now, or without it if it is new; until it is
  // to be kept as it will be.
  void undoWhenInterrupted() const;
  static void keepWhenInterrupted();

  // Whether somebody holds the lock of a file.
  static bool isHeld(const std::filesystem::path& path);

 private:
  std::filesystem::path path_;
  std::intptr_t handle_ = -1;
  bool isNew_ = false;
};

}  // namespace catalogue

#endif  // CATALOGUE_FILELOCK_H_
