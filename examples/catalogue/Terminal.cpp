#include "catalogue/Terminal.h"

#include <algorithm>
#include <cmath>

namespace catalogue {

using Seconds = std::chrono::duration<double>;
using Tarn::PrintF;

Console::Console(std::ostream& out, bool withBar) : out_(out), withBar_(withBar) {
  whole_->addObserver([this](double done) { done_ = std::clamp(done, 0.0, 1.0); });
  whole_->addObserver([this](const std::string& step) { step_ = step; });
}

void Console::begin(const std::string& step, double share) {
  if (part_) part_->setProgress(1.0);
  part_.emplace(whole_, share);
  part_->setStep(step);
  scans_ = 0;
  partStart_ = Clock::now();
}

void Console::advance(double done) {
  if (!withBar_) return;
  ++scans_;
  part_->setProgress(done);
  const Clock::time_point now = Clock::now();
  if (now - drawn_ >= std::chrono::milliseconds(100)) draw(now);
}

void Console::say(const std::string& message) {
  clear();
  out_ << message + '\n' << std::flush;
}

void Console::clear() {
  if (columns_ == 0) return;
  out_ << '\r' << std::string(columns_, ' ') << '\r' << std::flush;
  columns_ = 0;
}

void Console::draw(Clock::time_point now) {
  constexpr std::size_t kMarks = 25;
  std::string line(static_cast<std::size_t>(done_ * kMarks), '#');
  line.resize(kMarks, ' ');
  line = PrintF("[%s] %3d %%  %.0f scans/s", line, static_cast<int>(done_ * 100.0),
                static_cast<double>(scans_) / Seconds(now - partStart_).count());
  if (done_ > 0.0) {
    const long left = std::lround(Seconds(now - start_).count() * (1.0 - done_) / done_);
    line += PrintF("  %ld:%02ld left", left / 60, left % 60);
  }
  line += "  " + step_;
  const std::size_t columns = line.size();  // The steps are ASCII.
  line.resize(std::max(columns, columns_), ' ');
  out_ << '\r' << line << std::flush;
  columns_ = columns;
  drawn_ = now;
}

}  // namespace catalogue
