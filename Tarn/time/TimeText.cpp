// Layouts of digits are written here, which is faster than the runtime and the same on every platform: the text is made
// of the layout, and then each number put in its place. Only the two with words, which depend on the locale, are the
// runtime's.
#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <istream>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

#include "Tarn/text/ValueReader.h"
#include "Tarn/text/ValueText.h"
#include "Tarn/time/Time.h"
#include "Tarn/time/internal/Calendar.h"

namespace Tarn {
namespace {

using internal::CalendarFields;

// A text in which each "00" is the place of a number below 100.
template <std::size_t kSize>
struct Layout {
  consteval Layout(const char (&characters)[kSize]) : text(std::to_array(characters)) {}

  template <std::size_t kCount>
  [[nodiscard]] consteval std::array<std::size_t, kCount> places() const {
    std::array<std::size_t, kCount> found{};
    std::size_t count = 0;
    for (std::size_t i = 0; i + 1 < kSize; ++i) {
      if (text[i] == '0' && text[i + 1] == '0') found.at(count++) = i++;
    }
    if (count != kCount) throw "a layout takes as many numbers as it has places";
    return found;
  }

  std::array<char, kSize> text;
};

// The two digits of every number below 100: "000102" and so on.
constexpr std::array<char, 200> kPairs = [] {
  std::array<char, 200> pairs{};
  for (std::size_t i = 0; i < 100; ++i) {
    pairs[2 * i] = static_cast<char>('0' + i / 10);
    pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
  }
  return pairs;
}();

void putPair(char* out, int number) { std::memcpy(out, kPairs.data() + 2 * static_cast<std::size_t>(number), 2); }

// The layout with these numbers in its places, in turn. The places are known to the compiler.
template <Layout layout, class... Numbers>
std::string inLayout(Numbers... numbers) {
  constexpr auto kPlaces = layout.template places<sizeof...(Numbers)>();
  std::string text(layout.text.data(), layout.text.size() - 1);
  const std::size_t* place = kPlaces.data();
  char* const out = text.data();
  (putPair(out + *place++, numbers), ...);
  return text;
}

// "2024-03-05 14:07:09" in the punctuation of the layout.
template <Layout layout>
std::string inIsoOrder(const CalendarFields& fields) {
  return inLayout<layout>(fields.year / 100, fields.year % 100, fields.month, fields.day, fields.hour, fields.minute,
                          fields.second);
}

// A layout with words. Without calendar fields there is nothing to say.
std::string inRuntimeLayout(double time, const char* layout) {
  const std::optional<std::tm> fields = internal::toLocalTime(time);
  if (!fields) return {};
  std::array<char, 1024> text;
  return {text.data(), std::strftime(text.data(), text.size(), layout, &*fields)};
}

// What a clock of these fields is ahead of UTC at a time in whole seconds: `secondsOf(local) - seconds`. The two dates
// are less than half a week apart, so their weekdays tell by how much, and the date need not be converted back. The
// runtimes disagree on "%z": some give a name.
int offsetOf(const CalendarFields& local, std::int64_t seconds) {
  const auto weekday = static_cast<int>((seconds / 86400 + 4) % 7);  // 1970-01-01 was a Thursday.
  const int days = (local.weekday - weekday + 10) % 7 - 3;
  return ((days * 24 + local.hour) * 60 + local.minute) * 60 + local.second - static_cast<int>(seconds % 86400);
}

// A number below 100, without a zero in front. Gives the end of what was written.
char* putPlain(char* out, int number) {
  if (number >= 10) {
    putPair(out, number);
    return out + 2;
  }
  *out = static_cast<char>('0' + number);
  return out + 1;
}

}  // namespace

std::string Time::getTimeStr() const { return inRuntimeLayout(absTime, "%c"); }

std::string Time::getTimeStr2() const {
  const CalendarFields local = internal::localFields(absTime);
  return inLayout<"00.00.0000 at 00:00:00">(local.day, local.month, local.year / 100, local.year % 100, local.hour,
                                            local.minute, local.second);
}

std::string Time::getTimeStr3() const { return inRuntimeLayout(absTime, "%A, %B %d, %Y at %H:%M:%S"); }

std::string Time::getTimeStr4() const {
  const auto [seconds, milliseconds] = internal::partsOf(absTime);
  const CalendarFields local = internal::localFieldsAt(seconds);
  std::string text = inLayout<"00:00:00:000">(local.hour, local.minute, local.second, std::max(milliseconds, 0) / 10);
  if (milliseconds >= 0) {
    text.back() = static_cast<char>('0' + milliseconds % 10);
  } else {
    text.replace(text.size() - 1, 1, std::to_string(milliseconds));  // Before the epoch: behind two zeros.
  }
  return text;
}

std::string Time::getTimeStr5() const {
  const CalendarFields local = internal::localFields(absTime);
  if (local.year == 0) return "00.00.0";
  return inLayout<"00.00.0000">(local.day, local.month, local.year / 100, local.year % 100);
}

std::string Time::getTimeStr6() const {
  const CalendarFields local = internal::localFields(absTime);
  return inLayout<"000000">(local.year % 100, local.month, local.day);
}

std::string Time::getTimeStr7() const {
  const CalendarFields local = internal::localFields(absTime);
  return inLayout<"000000_000000">(local.year % 100, local.month, local.day, local.hour, local.minute, local.second);
}

std::string Time::getTimeStr8() const { return inIsoOrder<"0000-00-00 00:00:00">(internal::localFields(absTime)); }

std::string Time::getTimeStr9() const { return inIsoOrder<"0000-00-00T00:00:00Z">(internal::utcFields(absTime)); }

std::string Time::getIsoTimeStr() const {
  const std::int64_t seconds = internal::calendarSeconds(absTime);
  const CalendarFields local = internal::localFieldsAt(seconds);
  const int offset = local.year != 0 ? offsetOf(local, seconds) : 0;
  const int minutes = std::abs(offset) / 60;
  if (offset >= 0 && minutes == 0) return inIsoOrder<"0000-00-00T00:00:00Z">(local);
  std::string text =
      inLayout<"0000-00-00T00:00:00+00:00">(local.year / 100, local.year % 100, local.month, local.day, local.hour,
                                            local.minute, local.second, minutes / 60, minutes % 60);
  if (offset < 0) text[19] = '-';
  return text;
}

std::ostream& operator<<(std::ostream& stream, const Time& time) {
  const CalendarFields fields = internal::localFields(time.getLastTime());
  return stream << fields.day << "." << fields.month << "." << fields.year << " " << fields.hour << ":" << fields.minute
                << ":" << fields.second << ":" << time.getMSec();
}

std::string& operator<<(std::string& buffer, const Time& time) {
  const auto [seconds, milliseconds] = internal::partsOf(time.getLastTime());
  const CalendarFields fields = internal::localFieldsAt(seconds);
  std::array<char, 32> text;  // Holds eight numbers of two digits, six separators, and milliseconds down to -1000.
  char* out = putPlain(text.data(), fields.day);
  *out++ = '.';
  out = putPlain(out, fields.month);
  *out++ = '.';
  out = std::to_chars(out, text.end(), fields.year).ptr;
  *out++ = ' ';
  for (const int number : {fields.hour, fields.minute, fields.second}) {
    out = putPlain(out, number);
    *out++ = ':';
  }
  out = std::to_chars(out, text.end(), milliseconds).ptr;
  return buffer.append(text.data(), out);
}

namespace {

// A stream puts the nearest `int` in the place of a number that none can hold; to a time it is no number, as any other
// text that is none.
void takeNumber(std::istream& stream, int& number) {
  if (!(stream >> number)) number = 0;
}

void takeNumber(ValueReader& reader, int& number) { reader >> number; }

// The twelve reads, of a stream or of a text: numbers that are not there stay 0, separators may be any character.
template <class Source>
void readTime(Source& source, Time& time) {
  CalendarFields fields;
  int milliseconds = 0;
  char separator = '\0';
  takeNumber(source, fields.day);
  for (int* const number : {&fields.month, &fields.year}) {
    source >> separator;
    takeNumber(source, *number);
  }
  takeNumber(source, fields.hour);
  for (int* const number : {&fields.minute, &fields.second, &milliseconds}) {
    source >> separator;
    takeNumber(source, *number);
  }
  time.setTime(fields.year, fields.month, fields.day, fields.hour, fields.minute, fields.second, milliseconds);
}

}  // namespace

std::istream& operator>>(std::istream& stream, Time& time) {
  readTime(stream, time);
  return stream;
}

ValueReader& operator>>(ValueReader& reader, Time& time) {
  readTime(reader, time);
  return reader;
}

std::string& operator>>(std::string& buffer, Time& time) { return internal::takeFromFront(buffer, time); }

}  // namespace Tarn
