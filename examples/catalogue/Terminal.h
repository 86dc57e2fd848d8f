// The progress bar, and whether there is a terminal to draw it on.
#ifndef CATALOGUE_TERMINAL_H_
#define CATALOGUE_TERMINAL_H_

#include <cstddef>
#include <ostream>
#include <string>

namespace catalogue {

// Whether the program's standard error is a terminal. Each system has its own source for it.
bool errorsGoToTerminal();

// One line that shows a step and how far the whole is: "[#####     ]  50 %  Writing". It is drawn again only when what
// it shows changes, however often it is told.
class ProgressBar {
 public:
  explicit ProgressBar(std::ostream& out) : out_(out) {}

  // The part that is done, 0 to 1.
  void show(double done);
  void show(const std::string& step);

  // Leaves an empty line for other output. The bar comes back with the next change.
  void clear();

 private:
  void draw();

  std::ostream& out_;
  std::string step_;
  int percent_ = 0;
  std::size_t drawn_ = 0;  // Columns of the line that stands on the terminal.
};

}  // namespace catalogue

#endif  // CATALOGUE_TERMINAL_H_
