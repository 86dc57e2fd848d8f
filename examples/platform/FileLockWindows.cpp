#include <windows.h>

#include <cerrno>
#include <utility>

#include "catalogue/FileLock.h"
#include "catalogue/Stream.h"

namespace {

HANDLE undoHandle = nullptr;
LARGE_INTEGER undoSize{};
const wchar_t* newPath = nullptr;

BOOL WINAPI undo(DWORD) {
  if (undoHandle != nullptr) {
    SetFilePointerEx(undoHandle, undoSize, nullptr, FILE_BEGIN);
    SetEndOfFile(undoHandle);
    if (newPath != nullptr) DeleteFileW(newPath);
  }
  return FALSE;  // And end.
}

HANDLE openShared(const std::filesystem::path& path, DWORD access, DWORD disposition) {
  return CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, disposition,
                     FILE_ATTRIBUTE_NORMAL, nullptr);
}

// Locks here keep others from reading: so it is on a byte far behind every end.
bool lock(HANDLE file, DWORD flags) {
  OVERLAPPED where{};
  where.OffsetHigh = 0x40000000;
  return LockFileEx(file, flags, 0, 1, 0, &where) != FALSE;
}

HANDLE handleOf(std::intptr_t handle) { return reinterpret_cast<HANDLE>(handle); }

}  // namespace

namespace catalogue {

FileLock::FileLock(std::filesystem::path path, const std::function<void()>& wait) : path_(std::move(path)) {
  const HANDLE file = openShared(path_, GENERIC_READ | GENERIC_WRITE, OPEN_ALWAYS);
  if (file == INVALID_HANDLE_VALUE) {
    errno = EACCES;
    throwIoError("cannot write " + textOf(path_));
  }
  isNew_ = GetLastError() != ERROR_ALREADY_EXISTS;
  handle_ = reinterpret_cast<std::intptr_t>(file);
  if (lock(file, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY)) return;
  wait();
  lock(file, LOCKFILE_EXCLUSIVE_LOCK);
}

FileLock::~FileLock() {
  keepWhenInterrupted();
  LARGE_INTEGER size{};
  const bool isEmpty = GetFileSizeEx(handleOf(handle_), &size) != FALSE && size.QuadPart == 0;
  CloseHandle(handleOf(handle_));
  if (isNew_ && isEmpty) DeleteFileW(path_.c_str());
}

void FileLock::undoWhenInterrupted() const {
  GetFileSizeEx(handleOf(handle_), &undoSize);
  newPath = isNew_ ? path_.c_str() : nullptr;
  undoHandle = handleOf(handle_);
  SetConsoleCtrlHandler(undo, TRUE);
}

void FileLock::keepWhenInterrupted() { undoHandle = nullptr; }

bool FileLock::isHeld(const std::filesystem::path& path) {
  const HANDLE file = openShared(path, GENERIC_READ, OPEN_EXISTING);
  if (file == INVALID_HANDLE_VALUE) return false;
  const bool isHeld = !lock(file, LOCKFILE_FAIL_IMMEDIATELY);
  CloseHandle(file);
  return isHeld;
}

}  // namespace catalogue
