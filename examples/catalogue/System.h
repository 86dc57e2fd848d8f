// What each system does its own way: examples/platform has a source for each.
#ifndef CATALOGUE_SYSTEM_H_
#define CATALOGUE_SYSTEM_H_

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace catalogue {

// Prepares standard input and output, and gives the arguments of main in UTF-8, without the program's name. A reader
// of the output that goes away makes writing fail, and does not end the program.
std::vector<std::string> startProgram(int argc, char** argv);

// Whether standard input (0), output (1) or error (2) is a terminal.
bool isTerminal(int descriptor);

// How many columns the terminal has now on which output (1) or error (2) appears, else what the environment says of
// that; 0 if neither does.
std::size_t askColumns(int descriptor);

// The system's lock on a file: one writer holds it, or any number of readers. It goes with the program.
class FileLock {
 public:
  // Opens the file, and makes it for a writer if there is none.
  FileLock(const std::filesystem::path& path, bool isWriter);
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;
  ~FileLock();

  // Whether it could be had, at once or at all.
  [[nodiscard]] bool take(bool mayWait) const;

 private:
  std::intptr_t handle_;
  bool isWriter_;
};

}  // namespace catalogue

#endif  // CATALOGUE_SYSTEM_H_
