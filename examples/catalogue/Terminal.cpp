#include "catalogue/Terminal.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <iostream>

#include "catalogue/System.h"

namespace catalogue {

using Seconds = std::chrono::duration<double>;
using Tarn::PrintF;

namespace {

struct Range {
  char32_t first, last;
  std::size_t columns;
};

// Characters that take no column or two.
constexpr Range kWidths[] = {
#include "Widths.inc"  // Made by CMake from Unicode's table.
};
// Controls, and the marks that turn the direction of writing.
constexpr Range kDisturbing[] = {
    {0x00, 0x1F, 0}, {0x7F, 0x9F, 0}, {0x200E, 0x200F, 0}, {0x2028, 0x202E, 0}, {0x2066, 0x2069, 0}};

template <std::size_t Size>
const Range* find(const Range (&ranges)[Size], char32_t character) {
  const Range* const range = std::ranges::lower_bound(ranges, character, {}, &Range::last);
  return range != std::end(ranges) && range->first <= character ? range : nullptr;
}

// Takes one character from the front. Nothing, and one byte is taken, where no sequence of UTF-8 begins.
std::optional<char32_t> takeCharacter(std::string_view& text) {
  const auto lead = static_cast<unsigned char>(text.front());
  const int ones = std::countl_one(lead);  // As many bytes as the lead has high ones.
  text.remove_prefix(1);
  if (ones == 0) return lead;
  const std::string_view others = text.substr(0, static_cast<std::size_t>(ones) - 1);
  if (ones == 1 || ones > 4 || others.size() + 1 < static_cast<std::size_t>(ones)) return std::nullopt;
  char32_t value = lead & (0x7FU >> static_cast<unsigned>(ones));
  for (const char other : others) {
    const auto byte = static_cast<unsigned char>(other);
    if (std::countl_one(byte) != 1) return std::nullopt;
    value = (value << 6U) | (byte & 0x3FU);
  }
  text.remove_prefix(others.size());
  return value;
}

// What is shown for the character at the front, which is taken, and the columns of that.
std::pair<std::string_view, std::size_t> takeShown(std::string_view& text) {
  const char* const begin = text.data();
  if (*begin >= ' ' && *begin <= '~') {  // Most characters are.
    text.remove_prefix(1);
    return {{begin, 1}, 1};
  }
  const std::optional<char32_t> character = takeCharacter(text);
  if (!character || find(kDisturbing, *character) != nullptr) return {"?", 1};
  const Range* const width = find(kWidths, *character);
  return {{begin, text.data()}, width != nullptr ? width->columns : 1};
}

}  // namespace

std::size_t columnsOf(int descriptor) {
  if (!isTerminal(descriptor)) return std::string::npos;
  const std::size_t columns = askColumns(descriptor);
  return columns > 0 ? columns : 80;
}

std::size_t widthOf(std::string_view text) {
  std::size_t columns = 0;
  while (!text.empty()) columns += takeShown(text).second;
  return columns;
}

std::string shortened(std::string_view text, std::size_t columns) {
  const bool fits = widthOf(text) <= columns;
  std::size_t left = fits || columns == 0 ? columns : columns - 1;  // One is for the ellipsis.
  std::string result;
  while (!text.empty()) {
    const auto [shown, width] = takeShown(text);
    if (width > left) break;
    result += shown;
    left -= width;
  }
  return fits || columns == 0 ? result : result + "\u2026";
}

std::string inQuotes(std::string_view text) { return '"' + shortened(text, 60) + '"'; }

void Table::print(std::size_t columns) {
  for (const Row& row : rows_) {
    widths_.resize(std::max(widths_.size(), row.size()));
    for (std::size_t i = 0; i < row.size(); ++i) widths_[i] = std::max(widths_[i], widthOf(row[i]));
  }
  for (const Row& row : rows_) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) line += row[i] + std::string(widths_[i] + 2 - widthOf(row[i]), ' ');
    Tarn::rtrim(line);
    std::cout << shortened(line, columns) << '\n';
  }
  rows_.clear();
}

Console::Console(bool mayDraw) : withBar_(mayDraw && isTerminal(2)) {
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
  std::cerr << message + '\n' << std::flush;
}

void Console::clear() {
  if (shown_ == 0) return;
  const std::string blank(std::min(shown_, columnsOf(2) - 1), ' ');
  std::cerr << '\r' + blank + '\r' << std::flush;
  shown_ = 0;
}

void Console::draw(Clock::time_point now) {
  constexpr std::size_t kLeast = 8;  // With its frame.
  constexpr std::size_t kMost = 28;
  std::vector<std::string> parts = {
      PrintF("%3d %%", static_cast<int>(done_ * 100.0)),
      PrintF("%.0f scans/s", static_cast<double>(scans_) / Seconds(now - partStart_).count())};
  if (done_ > 0.0) {
    const long left = std::lround(Seconds(now - start_).count() * (1.0 - done_) / done_);
    parts.push_back(PrintF("%ld:%02ld left", left / 60, left % 60));
  }
  parts.push_back(step_);

  const std::size_t columns = columnsOf(2) - 1;  // Some terminals begin a new line behind the last column.
  std::string text = Tarn::implode(parts, "  ");
  while (parts.size() > 1 && kLeast + text.size() > columns) {
    parts.pop_back();
    text = Tarn::implode(parts, "  ");
  }
  if (kLeast + text.size() <= columns) {
    const std::size_t marks = std::min(kMost, columns - text.size()) - 3;
    std::string bar(static_cast<std::size_t>(done_ * static_cast<double>(marks)), '#');
    bar.resize(marks, ' ');
    text = '[' + bar + "] " + text;
  }
  text.resize(std::min(columns, std::max(shown_, text.size())), ' ');  // All of it is ASCII.
  std::cerr << '\r' + text << std::flush;
  shown_ = text.size();
  drawn_ = now;
}

}  // namespace catalogue
