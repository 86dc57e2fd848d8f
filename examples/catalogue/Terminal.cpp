#include "catalogue/Terminal.h"

#include <algorithm>
#include <cmath>

namespace catalogue {

void ProgressBar::show(double done) {
  const int percent = std::clamp(static_cast<int>(std::lround(done * 100.0)), 0, 100);
  if (percent == percent_) return;
  percent_ = percent;
  draw();
}

void ProgressBar::show(const std::string& step) {
  step_ = step;
  draw();
}

void ProgressBar::clear() {
  if (drawn_ == 0) return;
  out_ << '\r' << std::string(drawn_, ' ') << '\r' << std::flush;
  drawn_ = 0;
}

void ProgressBar::draw() {
  constexpr int kPercentPerMark = 4;
  constexpr std::size_t kMarks = 25;
  std::string line(static_cast<std::size_t>(percent_ / kPercentPerMark), '#');
  line.resize(kMarks, ' ');
  const std::string number = std::to_string(percent_);
  line = '[' + line + "] " + std::string(3 - number.size(), ' ') + number + " %  " + step_;
  const std::size_t columns = line.size();  // The steps are ASCII.
  line.resize(std::max(columns, drawn_), ' ');
  out_ << '\r' << line << std::flush;
  drawn_ = columns;
}

}  // namespace catalogue
