// Layouts of digits are written here, which is faster than the runtime and the same on every platform. Only the two
// with words, which depend on the locale, are the runtime's.
#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <istream>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "Tarn/text/ValueReader.h"
#include "Tarn/text/ValueText.h"
#include "Tarn/time/Time.h"
#include "Tarn/time/internal/Calendar.h"

namespace Tarn {
namespace {

using internal::CalendarFields;

// The two digits of every number below 100: "000102" and so on.
constexpr std::array<char, 200> kPairs = [] {
  std::array<char, 200> pairs{};
  for (std::size_t i = 0; i < 100; ++i) {
    pairs[2 * i] = static_cast<char>('0' + i / 10);
    pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
  }
  return pairs;
}();

// A text of up to 40 characters that is written from left to right.
class Row {
 public:
  Row& put(char character) {
    *end_++ = character;
    return *this;
  }
  Row& put(std::string_view text) {
    end_ = std::copy(text.begin(), text.end(), end_);
    return *this;
  }
  // Two digits of a number below 100, three of one below 1000, four of one below 10000.
  Row& putPair(int number) {
    std::memcpy(end_, kPairs.data() + 2 * static_cast<std::size_t>(number), 2);
    end_ += 2;
    return *this;
  }
  Row& putThree(int number) { return put(static_cast<char>('0' + number / 100)).putPair(number % 100); }
  Row& putYear(int number) { return putPair(number / 100).putPair(number % 100); }
  // As few digits as there are, and a minus.
  Row& putNumber(int number) {
    if (0 <= number && number < 10) return put(static_cast<char>('0' + number));
    if (0 <= number && number < 100) return putPair(number);
    end_ = std::to_chars(end_, text_.data() + text_.size(), number).ptr;
    return *this;
  }
  Row& putDate(const CalendarFields& fields) {
    return putYear(fields.year).put('-').putPair(fields.month).put('-').putPair(fields.day);
  }
  Row& putClock(const CalendarFields& fields) {
    return putPair(fields.hour).put(':').putPair(fields.minute).put(':').putPair(fields.second);
  }
  // "+01:00" for what is ahead of UTC; "Z" for no minute.
  Row& putOffset(int seconds) {
    const int minutes = std::abs(seconds) / 60;
    if (seconds >= 0 && minutes == 0) return put('Z');
    return put(seconds < 0 ? '-' : '+').putPair(minutes / 60).put(':').putPair(minutes % 60);
  }
  [[nodiscard]] std::string_view view() const { return {text_.data(), static_cast<std::size_t>(end_ - text_.data())}; }
  [[nodiscard]] std::string text() const { return std::string(view()); }

 private:
  std::array<char, 40> text_;
  char* end_ = text_.data();
};

// A layout with words. Without calendar fields there is nothing to say.
std::string inRuntimeLayout(double time, const char* layout) {
  const std::optional<std::tm> fields = internal::runtimeFields(time);
  if (!fields) return {};
  std::array<char, 1024> text;
  return {text.data(), std::strftime(text.data(), text.size(), layout, &*fields)};
}

}  // namespace

std::string Time::getTimeStr() const { return inRuntimeLayout(absTime, "%c"); }

std::string Time::getTimeStr2() const {
  const CalendarFields local = internal::localFields(absTime);
  Row row;
  row.putPair(local.day).put('.').putPair(local.month).put('.').putYear(local.year);
  return row.put(" at ").putClock(local).text();
}

std::string Time::getTimeStr3() const { return inRuntimeLayout(absTime, "%A, %B %d, %Y at %H:%M:%S"); }

std::string Time::getTimeStr4() const {
  const auto [seconds, millisecond] = internal::partsOf(absTime);
  Row row;
  row.putClock(internal::localTimeAt(seconds).fields).put(':');
  if (millisecond >= 0) return row.putThree(millisecond).text();
  return row.put("00").putNumber(millisecond).text();  // Before the epoch.
}

std::string Time::getTimeStr5() const {
  const CalendarFields local = internal::localFields(absTime);
  Row row;
  return row.putPair(local.day).put('.').putPair(local.month).put('.').putNumber(local.year).text();
}

std::string Time::getTimeStr6() const {
  const CalendarFields local = internal::localFields(absTime);
  Row row;
  return row.putPair(local.year % 100).putPair(local.month).putPair(local.day).text();
}

std::string Time::getTimeStr7() const {
  const CalendarFields local = internal::localFields(absTime);
  Row row;
  row.putPair(local.year % 100).putPair(local.month).putPair(local.day).put('_');
  return row.putPair(local.hour).putPair(local.minute).putPair(local.second).text();
}

std::string Time::getTimeStr8() const {
  const CalendarFields local = internal::localFields(absTime);
  Row row;
  return row.putDate(local).put(' ').putClock(local).text();
}

std::string Time::getTimeStr9() const {
  const CalendarFields utc = internal::utcFieldsAt(internal::calendarSeconds(absTime));
  Row row;
  return row.putDate(utc).put('T').putClock(utc).put('Z').text();
}

std::string Time::getIsoTimeStr() const {
  const auto [local, offset] = internal::localTimeAt(internal::calendarSeconds(absTime));
  Row row;
  return row.putDate(local).put('T').putClock(local).putOffset(offset).text();
}

std::string isoText(const Time& time) {
  const auto [seconds, millisecond] = internal::partsOf(time.getLastTime());
  auto [fields, offset] = internal::localTimeAt(seconds);
  if (const int oddSeconds = offset % 60; oddSeconds != 0) {
    fields = internal::plainFields(internal::plainSeconds(fields) - oddSeconds);
    offset -= oddSeconds;
  }
  Row row;
  row.putDate(fields).put('T').putClock(fields).put('.').putThree(seconds >= 0 ? std::max(millisecond, 0) : 0);
  return row.putOffset(offset).text();
}

std::ostream& operator<<(std::ostream& stream, const Time& time) {
  const CalendarFields fields = internal::localFields(time.getLastTime());
  return stream << fields.day << "." << fields.month << "." << fields.year << " " << fields.hour << ":" << fields.minute
                << ":" << fields.second << ":" << time.getMSec();
}

std::string& operator<<(std::string& buffer, const Time& time) {
  const auto [seconds, millisecond] = internal::partsOf(time.getLastTime());
  const CalendarFields local = internal::localTimeAt(seconds).fields;
  Row row;
  row.putNumber(local.day).put('.').putNumber(local.month).put('.').putNumber(local.year).put(' ');
  for (const int number : {local.hour, local.minute, local.second}) row.putNumber(number).put(':');
  return buffer.append(row.putNumber(millisecond).view());
}

namespace {

// The numbers of a time that is read.
struct Numbers {
  int day = 0, month = 0, year = 0, hour = 0, minute = 0, second = 0, millisecond = 0;

  void setTo(Time& time) const { time.setTime(year, month, day, hour, minute, second, millisecond); }
};

// What could not be read contributes 0, also where the nearest `int` was put in its place. False if it could not.
bool takeNumber(std::istream& stream, int& number) {
  if (stream >> number) return true;
  number = 0;
  return false;
}

bool takeNumber(ValueReader& reader, int& number) {
  const std::optional<int> whole = reader.tryRead<int>();
  number = whole.value_or(0);
  if (whole) return true;
  int ignored = 0;
  reader >> ignored;
  return false;
}

// The twelve reads, of a stream or of a text: numbers that are not there stay 0, separators may be any character. False
// if a number was not there.
template <class Source>
bool takeNumbers(Source& source, Numbers& numbers) {
  char separator = '\0';
  bool areThere = takeNumber(source, numbers.day);
  for (int* const number : {&numbers.month, &numbers.year}) {
    source >> separator;
    areThere &= takeNumber(source, *number);
  }
  areThere &= takeNumber(source, numbers.hour);
  for (int* const number : {&numbers.minute, &numbers.second, &numbers.millisecond}) {
    source >> separator;
    areThere &= takeNumber(source, *number);
  }
  return areThere;
}

// Takes the numbers of a text in exactly the written form. False, and nothing is taken, from any other.
bool takeWritten(ValueReader& reader, Numbers& numbers) {
  constexpr std::size_t kMostDigits = 9;  // Each number that has so many fits into an `int`.
  const std::string_view text = reader.rest();
  std::size_t at = 0;
  const auto take = [text, &at](int& number, char behind) {
    const std::size_t begin = at;
    for (number = 0; at < text.size() && '0' <= text[at] && text[at] <= '9' && at - begin < kMostDigits; ++at) {
      number = number * 10 + (text[at] - '0');
    }
    if (at == begin) return false;
    if (behind == '\0') return at == text.size() || text[at] < '0' || text[at] > '9';
    return at < text.size() && text[at++] == behind;
  };
  const bool isWritten = take(numbers.day, '.') && take(numbers.month, '.') && take(numbers.year, ' ') &&
                         take(numbers.hour, ':') && take(numbers.minute, ':') && take(numbers.second, ':') &&
                         take(numbers.millisecond, '\0');
  if (isWritten) reader.skip(at);
  return isWritten;
}

}  // namespace

std::istream& operator>>(std::istream& stream, Time& time) {
  Numbers numbers;
  takeNumbers(stream, numbers);
  numbers.setTo(time);
  return stream;
}

ValueReader& operator>>(ValueReader& reader, Time& time) {
  Numbers numbers;
  if (!takeWritten(reader, numbers)) {
    numbers = {};
    takeNumbers(reader, numbers);
  }
  numbers.setTo(time);
  return reader;
}

bool takeWhole(ValueReader& reader, Time& time) {
  Numbers numbers;
  try {
    if (!takeWritten(reader, numbers) && !takeNumbers(reader, numbers)) return false;
  } catch (const std::out_of_range&) {
    return false;
  }
  numbers.setTo(time);
  return true;
}

std::string& operator>>(std::string& buffer, Time& time) { return internal::takeFromFront(buffer, time); }

}  // namespace Tarn
