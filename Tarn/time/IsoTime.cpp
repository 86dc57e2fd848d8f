// The forms are fixed in the place of every character but those of a fraction, so a text is taken apart by places:
//
//     0000-00-00T00:00:00   then   .000...   then   Z   or   +00:00
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string_view>

#include "Tarn/platform/Platform.h"
#include "Tarn/text/internal/Characters.h"
#include "Tarn/time/Time.h"
#include "Tarn/time/internal/Calendar.h"

namespace Tarn {
namespace {

using internal::CalendarFields;

constexpr std::size_t kFieldsSize = 19;

// The number of two digits; where there are none, more than 99.
unsigned pairAt(const char* text) {
  const unsigned tens = static_cast<unsigned char>(text[0]) - unsigned{'0'};
  const unsigned ones = static_cast<unsigned char>(text[1]) - unsigned{'0'};
  return tens <= 9 && ones <= 9 ? tens * 10 + ones : 100;
}

// The seconds of an offset from UTC, of up to 99:99.
std::optional<int> offsetOf(std::string_view zone) {
  if (zone == "Z" || zone == "z") return 0;
  if (zone.size() != 6 || (zone[0] != '+' && zone[0] != '-') || zone[3] != ':') return std::nullopt;
  const unsigned hours = pairAt(&zone[1]);
  const unsigned minutes = pairAt(&zone[4]);
  if (hours > 99 || minutes > 99) return std::nullopt;
  const int seconds = static_cast<int>(hours * 60 + minutes) * 60;
  return zone[0] == '-' ? -seconds : seconds;
}

// The fields that a text begins with, in any range, and the character between date and time in small.
struct IsoFields {
  CalendarFields fields;
  char separator;
};
std::optional<IsoFields> fieldsOf(std::string_view text) {
  if (text.size() < kFieldsSize) return std::nullopt;
  const char* const at = text.data();
  const std::array pairs = {pairAt(at),      pairAt(at + 2),  pairAt(at + 5), pairAt(at + 8),
                            pairAt(at + 11), pairAt(at + 14), pairAt(at + 17)};
  if (at[4] != '-' || at[7] != '-' || at[13] != ':' || at[16] != ':' ||
      std::any_of(pairs.begin(), pairs.end(), [](unsigned pair) { return pair > 99; })) {
    return std::nullopt;
  }
  const auto field = [&pairs](std::size_t i) { return static_cast<int>(pairs[i]); };
  return IsoFields{{field(0) * 100 + field(1), field(2), field(3), field(4), field(5), field(6)},
                   internal::toLower(at[10])};
}

bool isDate(const CalendarFields& fields) {
  return std::chrono::year_month_day(std::chrono::year(fields.year),
                                     std::chrono::month(static_cast<unsigned>(fields.month)),
                                     std::chrono::day(static_cast<unsigned>(fields.day)))
      .ok();
}

// Takes a point with digits behind it from the front of a text, in units of 100 ns, of which a `double` of seconds
// holds no more; 0 if there is none. Nothing if the digits are missing.
std::optional<std::int64_t> takeFraction(std::string_view& text) {
  if (!text.starts_with('.')) return 0;
  text.remove_prefix(1);
  const std::size_t size = std::min(text.find_first_not_of("0123456789"), text.size());
  if (size == 0) return std::nullopt;
  std::int64_t ticks = 0;
  for (std::size_t i = 0; i < 7; ++i) ticks = ticks * 10 + (i < size ? text[i] - '0' : 0);
  text.remove_prefix(size);
  return ticks;
}

// The whole seconds at which clocks show the fields: those of an offset, or else the local ones, in the calendar range.
std::optional<std::int64_t> secondsAt(const CalendarFields& fields, std::optional<int> offset) {
  if (!offset) {
    if (fields.second > 59 || fields.year < 1970 || fields.year > 3000) return std::nullopt;
    const std::int64_t seconds = platform::fromLocalTime(internal::plainSeconds(fields));
    return internal::isInCalendar(seconds) ? std::optional(seconds) : std::nullopt;
  }
  const std::int64_t plain = internal::plainSeconds(fields) - *offset;
  if (fields.second < 60) return platform::fromUtc(plain);
  return plain % 86400 == 0 ? std::optional(platform::fromUtc(plain - 1) + 1) : std::nullopt;
}

}  // namespace

Time Time::fromIsoTimeStrIgnoringTimeZone(const std::string& text) {
  for (std::string_view rest = text;;) {
    const std::string_view line = rest.substr(0, rest.find('\n'));
    const auto found = fieldsOf(line);
    if (found && found->separator == 't' && offsetOf(line.substr(kFieldsSize))) {
      return Time(internal::timeAtLocal(found->fields, 0));
    }
    if (line.size() == rest.size()) return {};
    rest.remove_prefix(line.size() + 1);
  }
}

std::optional<Time> parseTime(std::string_view text) {
  const auto found = fieldsOf(text);
  if (!found || (found->separator != 't' && found->separator != ' ')) return std::nullopt;
  const CalendarFields& fields = found->fields;
  if (!isDate(fields) || fields.hour > 23 || fields.minute > 59 || fields.second > 60) return std::nullopt;
  text.remove_prefix(kFieldsSize);
  const std::optional<std::int64_t> fraction = takeFraction(text);
  const std::optional<int> offset = offsetOf(text);
  const bool isOffset = offset && (text.size() == 1 || (pairAt(&text[1]) <= 23 && pairAt(&text[4]) <= 59));
  if (!fraction || (!isOffset && !text.empty())) return std::nullopt;
  const std::optional<std::int64_t> seconds = secondsAt(fields, offset);
  if (!seconds) return std::nullopt;
  return Time(internal::timeOfTicks(*seconds, *fraction));
}

}  // namespace Tarn
