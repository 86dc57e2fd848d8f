// Layouts of digits are written here, which is faster than the runtime and the same on every platform: a layout is a
// text of zeros, in whose places the digits are put. Outside the calendar range the zeros stay, but for milliseconds.
// Only the two with words, which depend on the locale, are the runtime's.
#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <istream>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "Tarn/platform/PlainClock.h"
#include "Tarn/platform/Platform.h"
#include "Tarn/text/ValueReader.h"
#include "Tarn/text/ValueText.h"
#include "Tarn/time/Time.h"
#include "Tarn/time/internal/Calendar.h"

namespace Tarn {
namespace {

// The two digits of every number below 100: "000102" and so on.
constexpr std::array<char, 200> kPairs = [] {
  std::array<char, 200> pairs{};
  for (std::size_t i = 0; i < 100; ++i) {
    pairs[2 * i] = static_cast<char>('0' + i / 10);
    pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
  }
  return pairs;
}();

// In the place of "00", a number below 100.
void putPair(char* to, int number) { std::memcpy(to, kPairs.data() + 2 * static_cast<std::size_t>(number), 2); }

// In the place of "000", a number below 1000.
void putThree(char* to, int number) {
  *to = static_cast<char>('0' + number / 100);
  putPair(to + 1, number % 100);
}

// In the place of "0000".
void putYear(char* to, const std::tm& fields) {
  const int year = fields.tm_year + 1900;
  putPair(to, year / 100);
  putPair(to + 2, year % 100);
}

// In the place of "0000-00-00".
void putDate(char* to, const std::tm& fields) {
  putYear(to, fields);
  putPair(to + 5, fields.tm_mon + 1);
  putPair(to + 8, fields.tm_mday);
}

// In the place of "00.00".
void putDayAndMonth(char* to, const std::tm& fields) {
  putPair(to, fields.tm_mday);
  putPair(to + 3, fields.tm_mon + 1);
}

// In the place of "000000".
void putShortDate(char* to, const std::tm& fields) {
  putPair(to, fields.tm_year % 100);
  putPair(to + 2, fields.tm_mon + 1);
  putPair(to + 4, fields.tm_mday);
}

// In the place of "00:00:00".
void putClock(char* to, const std::tm& fields) {
  putPair(to, fields.tm_hour);
  putPair(to + 3, fields.tm_min);
  putPair(to + 6, fields.tm_sec);
}

// In the place of "+00:00" at the end of a text, how far local time is ahead of UTC: "Z" for no minute.
void putOffset(std::string& text, std::int64_t seconds) {
  char* const at = text.data() + text.size() - 6;
  const int minutes = std::abs(static_cast<int>(seconds)) / 60;
  if (seconds >= 0 && minutes == 0) {
    *at = 'Z';
    text.resize(text.size() - 5);
    return;
  }
  if (seconds < 0) *at = '-';
  putPair(at + 1, minutes / 60);
  putPair(at + 4, minutes % 60);
}

// One or two digits of a number below 100. Gives their end.
char* putNumber(char* to, int number) {
  const std::size_t zeros = number < 10 ? 1 : 0;
  std::memcpy(to, kPairs.data() + 2 * static_cast<std::size_t>(number) + zeros, 2);
  return to + 2 - zeros;
}

// How far the local fields of seconds are ahead of UTC.
std::int64_t offsetOf(const std::tm& local, std::int64_t seconds) {
  return internal::isNone(local) ? 0 : platform::offsetOf(local, seconds);
}

// A layout with words. Without calendar fields there is nothing to say.
std::string inRuntimeLayout(double time, const char* layout) {
  const std::tm fields = internal::localFields(time);
  if (internal::isNone(fields)) return {};
  std::array<char, 1024> text;
  return {text.data(), std::strftime(text.data(), text.size(), layout, &fields)};
}

}  // namespace

std::string Time::getTimeStr() const { return inRuntimeLayout(absTime, "%c"); }

std::string Time::getTimeStr2() const {
  const std::tm local = internal::localFields(absTime);
  std::string text = "00.00.0000 at 00:00:00";
  putDayAndMonth(text.data(), local);
  putYear(text.data() + 6, local);
  putClock(text.data() + 14, local);
  return text;
}

std::string Time::getTimeStr3() const { return inRuntimeLayout(absTime, "%A, %B %d, %Y at %H:%M:%S"); }

std::string Time::getTimeStr4() const {
  const std::tm local = internal::localFields(absTime);
  const int millisecond = internal::millisecondOf(absTime);
  std::string text = "00:00:00:000";
  putClock(text.data(), local);
  if (millisecond >= 0) {
    putThree(text.data() + 9, millisecond);
  } else {
    text.replace(11, 1, std::to_string(millisecond));  // Before the epoch.
  }
  return text;
}

std::string Time::getTimeStr5() const {
  const std::tm local = internal::localFields(absTime);
  if (internal::isNone(local)) return "00.00.0";
  std::string text = "00.00.0000";
  putDayAndMonth(text.data(), local);
  putYear(text.data() + 6, local);
  return text;
}

std::string Time::getTimeStr6() const {
  const std::tm local = internal::localFields(absTime);
  std::string text = "000000";
  putShortDate(text.data(), local);
  return text;
}

std::string Time::getTimeStr7() const {
  const std::tm local = internal::localFields(absTime);
  std::string text = "000000_000000";
  putShortDate(text.data(), local);
  putPair(text.data() + 7, local.tm_hour);
  putPair(text.data() + 9, local.tm_min);
  putPair(text.data() + 11, local.tm_sec);
  return text;
}

std::string Time::getTimeStr8() const {
  const std::tm local = internal::localFields(absTime);
  std::string text = "0000-00-00 00:00:00";
  putDate(text.data(), local);
  putClock(text.data() + 11, local);
  return text;
}

std::string Time::getTimeStr9() const {
  const std::tm utc = internal::utcFields(absTime);
  std::string text = "0000-00-00T00:00:00Z";
  putDate(text.data(), utc);
  putClock(text.data() + 11, utc);
  return text;
}

std::string Time::getIsoTimeStr() const {
  const std::int64_t seconds = internal::calendarSeconds(absTime);
  const std::tm local = internal::localFieldsAt(seconds);
  std::string text = "0000-00-00T00:00:00+00:00";
  putDate(text.data(), local);
  putClock(text.data() + 11, local);
  putOffset(text, offsetOf(local, seconds));
  return text;
}

std::string isoText(const Time& time) {
  const double instant = time.getLastTime();
  const std::int64_t seconds = internal::calendarSeconds(instant);
  std::tm local = internal::localFieldsAt(seconds);
  std::int64_t offset = offsetOf(local, seconds);
  if (const std::int64_t oddSeconds = offset % 60; oddSeconds != 0) {
    local = platform::toPlainFields(platform::fromPlainFields(local) - oddSeconds);
    offset -= oddSeconds;
  }
  std::string text = "0000-00-00T00:00:00.000+00:00";
  char* const at = text.data();
  putDate(at, local);
  putClock(at + 11, local);
  putThree(at + 20, internal::isNone(local) ? 0 : std::max(internal::millisecondOf(instant), 0));
  putOffset(text, offset);
  return text;
}

std::ostream& operator<<(std::ostream& stream, const Time& time) {
  const std::tm local = internal::localFields(time.getLastTime());
  return stream << local.tm_mday << "." << local.tm_mon + 1 << "." << local.tm_year + 1900 << " " << local.tm_hour
                << ":" << local.tm_min << ":" << local.tm_sec << ":" << time.getMSec();
}

std::string& operator<<(std::string& buffer, const Time& time) {
  const std::tm local = internal::localFields(time.getLastTime());
  std::array<char, 40> text;
  char* end = text.data();
  for (const int number : {local.tm_mday, local.tm_mon + 1}) {
    end = putNumber(end, number);
    *end++ = '.';
  }
  if (internal::isNone(local)) {
    *end++ = '0';
  } else {
    putYear(end, local);
    end += 4;
  }
  *end++ = ' ';
  for (const int number : {local.tm_hour, local.tm_min, local.tm_sec}) {
    end = putNumber(end, number);
    *end++ = ':';
  }
  end = std::to_chars(end, text.data() + text.size(), internal::millisecondOf(time.getLastTime())).ptr;
  return buffer.append(text.data(), end);
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

// Takes the numbers of a text in exactly the written form, which begins where a value does, as behind a map's space.
// False from any other, and nothing but what stands before the first number is taken.
bool takeWritten(ValueReader& reader, Numbers& numbers) {
  constexpr std::size_t kMostDigits = 9;  // Each number that has so many fits into an `int`.
  internal::skipToValue(reader);
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
