// What the catalogue does to the model in a folder.
#ifndef CATALOGUE_COMMANDS_H_
#define CATALOGUE_COMMANDS_H_

#include <cstddef>
#include <optional>
#include <string>

namespace catalogue {

enum ExitStatus { kAllWell = 0, kNotAll = 1, kFailed = 2, kDamaged = 3 };

struct Options {
  std::string folder;
  std::optional<std::string> argument;  // The list to write, or the scan to show.
  std::optional<std::size_t> rows;
  bool json = false;
  bool list = false;    // Shown as a list that can be written.
  bool noWait = false;  // For another writer.
};

// Adds the scans of a list to the stream.
ExitStatus writeScans(const Options& options);

// Prints all scans, or all that is known of one.
ExitStatus showScans(const Options& options);

// Looks for everything that is wrong with the stream.
ExitStatus verifyScans(const Options& options);

// Whoever read the output has read enough.
struct ReaderGone {};

// Throws `ReaderGone`, or the system's reason, unless all that was printed went out.
void checkOutput();

}  // namespace catalogue

#endif  // CATALOGUE_COMMANDS_H_
