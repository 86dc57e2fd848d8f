#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cerrno>

#include "catalogue/Stream.h"
#include "catalogue/System.h"

namespace catalogue {

static HANDLE handleOf(std::intptr_t handle) { return reinterpret_cast<HANDLE>(handle); }

std::vector<std::string> startProgram(int, char**) {
  _setmode(0, _O_BINARY);  // A text ends at its first Ctrl-Z otherwise.
  SetConsoleOutputCP(CP_UTF8);
  std::vector<std::string> arguments;
  int count = 0;
  wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);  // The argv of main has lost characters.
  for (int i = 1; i < count; ++i) {
    const std::u8string text = std::filesystem::path(wide[i]).u8string();
    arguments.emplace_back(text.begin(), text.end());
  }
  LocalFree(wide);
  return arguments;
}

bool isTerminal(int descriptor) { return _isatty(descriptor) != 0; }

std::size_t askColumns(int descriptor) {
  CONSOLE_SCREEN_BUFFER_INFO info{};
  if (GetConsoleScreenBufferInfo(handleOf(_get_osfhandle(descriptor)), &info) == FALSE) return 0;
  return static_cast<std::size_t>(info.srWindow.Right - info.srWindow.Left + 1);
}

FileLock::FileLock(const std::filesystem::path& path, bool isWriter)
    : handle_(reinterpret_cast<std::intptr_t>(CreateFileW(
          path.c_str(), isWriter ? GENERIC_READ | GENERIC_WRITE : GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
          nullptr, isWriter ? OPEN_ALWAYS : OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr))),
      isWriter_(isWriter) {
  errno = EACCES;
  if (handleOf(handle_) == INVALID_HANDLE_VALUE) throwIoError("cannot write " + textOf(path));
}

FileLock::~FileLock() { CloseHandle(handleOf(handle_)); }

bool FileLock::take(bool mayWait) const {
  OVERLAPPED where{};
  where.OffsetHigh = 0x40000000;  // Locks here keep others from reading: so it is on a byte far behind every end.
  const DWORD flags = (isWriter_ ? LOCKFILE_EXCLUSIVE_LOCK : 0) | (mayWait ? 0 : LOCKFILE_FAIL_IMMEDIATELY);
  return LockFileEx(handleOf(handle_), flags, 0, 1, 0, &where) != FALSE;
}

}  // namespace catalogue
