// Layouts of digits are written here, which is faster than the runtime and the same on every platform; only the two
// with words, which depend on the locale, are the runtime's.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <istream>
#include <ostream>
#include <string_view>

#include "Tarn/text/ValueReader.h"
#include "Tarn/text/ValueText.h"
#include "Tarn/time/Time.h"
#include "Tarn/time/internal/Calendar.h"

namespace Tarn {
namespace {

using internal::CalendarFields;

// Writes a number from 0 up with zeros in front to this width. Gives the end of what was written.
char* putPadded(char* out, int number, int width) {
  int size = 1;
  for (int rest = number / 10; rest > 0; rest /= 10) ++size;
  size = std::max(size, width);
  for (int i = size; i > 0; number /= 10) out[--i] = static_cast<char>('0' + number % 10);
  return out + size;
}

// The fields in a layout of strftime's letters: Y m d H M S, y for the year's last two digits, and N for a year that is
// not padded. Every layout here has room for 32 characters.
std::string inLayout(const CalendarFields& fields, std::string_view layout) {
  std::array<char, 32> text;
  char* out = text.data();
  for (std::size_t i = 0; i < layout.size(); ++i) {
    if (layout[i] != '%') {
      *out++ = layout[i];
      continue;
    }
    switch (layout[++i]) {
      case 'Y':
        out = putPadded(out, fields.year, 4);
        break;
      case 'N':
        out = putPadded(out, fields.year, 1);
        break;
      case 'y':
        out = putPadded(out, fields.year % 100, 2);
        break;
      case 'm':
        out = putPadded(out, fields.month, 2);
        break;
      case 'd':
        out = putPadded(out, fields.day, 2);
        break;
      case 'H':
        out = putPadded(out, fields.hour, 2);
        break;
      case 'M':
        out = putPadded(out, fields.minute, 2);
        break;
      default:
        out = putPadded(out, fields.second, 2);
    }
  }
  return {text.data(), out};
}

std::string localInLayout(double time, std::string_view layout) {
  return inLayout(internal::toFields(internal::toLocalTime(time)), layout);
}

// A layout with words. Without calendar fields there is nothing to say.
std::string inRuntimeLayout(double time, const char* layout) {
  const std::optional<std::tm> fields = internal::toLocalTime(time);
  if (!fields) return {};
  std::array<char, 1024> text;
  return {text.data(), std::strftime(text.data(), text.size(), layout, &*fields)};
}

// The zone designator of local fields at a time in whole seconds. The runtimes disagree on "%z": some give a name.
std::string zoneDesignator(const CalendarFields& local, std::int64_t seconds) {
  const std::int64_t offset = internal::secondsOf(local) - seconds;
  const auto minutes = static_cast<int>(std::abs(offset) / 60);
  if (offset >= 0 && minutes == 0) return "Z";
  std::array<char, 6> text;
  text[0] = offset < 0 ? '-' : '+';
  putPadded(text.data() + 1, minutes / 60, 2);
  text[3] = ':';
  putPadded(text.data() + 4, minutes % 60, 2);
  return {text.data(), text.size()};
}

}  // namespace

std::string Time::getTimeStr() const { return inRuntimeLayout(absTime, "%c"); }

std::string Time::getTimeStr2() const { return localInLayout(absTime, "%d.%m.%Y at %H:%M:%S"); }

std::string Time::getTimeStr3() const { return inRuntimeLayout(absTime, "%A, %B %d, %Y at %H:%M:%S"); }

std::string Time::getTimeStr4() const {
  // Before the epoch milliseconds are negative: the zeros go by the number, the minus comes behind them.
  const int milliseconds = getMSec();
  const std::string_view zeros = milliseconds < 10 ? "00" : milliseconds < 100 ? "0" : "";
  return localInLayout(absTime, "%H:%M:%S:").append(zeros).append(std::to_string(milliseconds));
}

std::string Time::getTimeStr5() const { return localInLayout(absTime, "%d.%m.%N"); }

std::string Time::getTimeStr6() const { return localInLayout(absTime, "%y%m%d"); }

std::string Time::getTimeStr7() const { return localInLayout(absTime, "%y%m%d_%H%M%S"); }

std::string Time::getTimeStr8() const { return localInLayout(absTime, "%Y-%m-%d %H:%M:%S"); }

std::string Time::getTimeStr9() const {
  return inLayout(internal::toFields(internal::toUtc(absTime)), "%Y-%m-%dT%H:%M:%SZ");
}

std::string Time::getIsoTimeStr() const {
  const std::optional<std::tm> broken = internal::toLocalTime(absTime);
  const CalendarFields fields = internal::toFields(broken);
  const std::string zone = broken ? zoneDesignator(fields, *internal::wholeSeconds(absTime)) : "Z";
  return inLayout(fields, "%Y-%m-%dT%H:%M:%S").append(zone);
}

std::ostream& operator<<(std::ostream& stream, const Time& time) {
  const CalendarFields fields = internal::toFields(internal::toLocalTime(time.getLastTime()));
  return stream << fields.day << "." << fields.month << "." << fields.year << " " << fields.hour << ":" << fields.minute
                << ":" << fields.second << ":" << time.getMSec();
}

std::string& operator<<(std::string& buffer, const Time& time) {
  const CalendarFields fields = internal::toFields(internal::toLocalTime(time.getLastTime()));
  return buffer << fields.day << '.' << fields.month << '.' << fields.year << ' ' << fields.hour << ':' << fields.minute
                << ':' << fields.second << ':' << time.getMSec();
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
