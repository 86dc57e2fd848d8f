#include "catalogue/Terminal.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cerrno>
#include <filesystem>

std::vector<std::string> catalogue::startProgram(int, char**) {
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

bool catalogue::isTerminal(int descriptor) { return _isatty(descriptor) != 0; }

bool catalogue::meansClosedPipe(int error) { return error == EPIPE || error == EINVAL; }
