// What a command tells a person while it works.
#ifndef CATALOGUE_TERMINAL_H_
#define CATALOGUE_TERMINAL_H_

#include <Tarn/Tarn.h>

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace catalogue {

// The next three have a source for each system.

// Prepares standard input and output, and gives the arguments of main in UTF-8, without the program's name. A reader
// of the output that goes away makes writing fail, and does not end the program.
std::vector<std::string> startProgram(int argc, char** argv);

// Whether standard output (1) or standard error (2) is a terminal.
bool isTerminal(int descriptor);

// Whether an `errno` of writing says that nobody reads the pipe any longer.
bool meansClosedPipe(int error);

// Messages and, where it is wanted, a bar in one line that follows the work:
//
//     [#########                ]  36 %  83210 scans/s  0:07 left  Writing scans
//
// The bar is drawn ten times a second at most, and not at all for work that takes no longer than that.
class Console {
 public:
  Console(std::ostream& out, bool withBar);
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;
  ~Console() { clear(); }

  // Begins a part of the work, which counts as a share of the whole.
  void begin(const std::string& step, double share);

  // Counts a scan, and moves to where the part is: 0 to 1, or always 0 if nobody knows.
  void advance(double done);

  // A line of its own, without its end.
  void say(const std::string& message);

  // Leaves an empty line for other output. The bar comes back with the work.
  void clear();

 private:
  using Clock = std::chrono::steady_clock;

  void draw(Clock::time_point now);

  std::ostream& out_;
  bool withBar_;
  std::shared_ptr<Tarn::DataStructures::Progress> whole_ = std::make_shared<Tarn::DataStructures::Progress>();
  std::optional<Tarn::DataStructures::PartialProgress> part_;
  double done_ = 0.0;
  std::string step_;
  std::size_t scans_ = 0;  // Of this part.
  Clock::time_point start_ = Clock::now();
  Clock::time_point partStart_ = start_;
  Clock::time_point drawn_ = start_;
  std::size_t columns_ = 0;  // Of the line that stands on the terminal.
};

}  // namespace catalogue

#endif  // CATALOGUE_TERMINAL_H_
