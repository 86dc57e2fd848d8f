// What a person sees: text in columns, tables of it, and how the work gets on.
#ifndef CATALOGUE_TERMINAL_H_
#define CATALOGUE_TERMINAL_H_

#include <Tarn/Tarn.h>

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace catalogue {

// The columns that a line has at this moment on standard output (1) or error (2); any number if that is no terminal.
std::size_t columnsOf(int descriptor);

// The columns of a text in UTF-8, as far as it is that; East Asian wide characters take two, combining ones none.
std::size_t widthOf(std::string_view text);

// The text in at most so many columns, cut with an ellipsis. What would disturb a terminal is shown as a question mark.
std::string shortened(std::string_view text, std::size_t columns = std::string::npos);

// A text to be named in a message.
std::string inQuotes(std::string_view text);

// Rows of cells, printed in columns as wide as they need to be.
class Table {
 public:
  using Row = std::vector<std::string>;

  void add(Row row) { rows_.push_back(std::move(row)); }
  [[nodiscard]] std::size_t size() const { return rows_.size(); }  // Without those that have been printed.
  [[nodiscard]] bool isNew() const { return rows_.empty() && widths_.empty(); }

  // Prints the rows to standard output, each in at most so many columns, and forgets them. Those of later rows begin
  // at the same places, as far as they fit.
  void print(std::size_t columns = std::string::npos);

 private:
  std::vector<Row> rows_;
  std::vector<std::size_t> widths_;
};

// Messages on standard error and, where that is a terminal, a bar in one line that follows the work:
//
//     [#########                ]  36 %  83210 scans/s  0:07 left  Writing scans
//
// On a narrow terminal the bar is shorter, and the last parts go. It is drawn ten times a second at most, and not at
// all for work that takes no longer than that.
class Console {
 public:
  explicit Console(bool mayDraw = true);
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

  bool withBar_;
  std::shared_ptr<Tarn::DataStructures::Progress> whole_ = std::make_shared<Tarn::DataStructures::Progress>();
  std::optional<Tarn::DataStructures::PartialProgress> part_;
  double done_ = 0.0;
  std::string step_;
  std::size_t scans_ = 0;  // Of this part.
  Clock::time_point start_ = Clock::now();
  Clock::time_point partStart_ = start_;
  Clock::time_point drawn_ = start_;
  std::size_t shown_ = 0;  // Characters of the bar that stand on the terminal.
};

}  // namespace catalogue

#endif  // CATALOGUE_TERMINAL_H_
