// The calendar of a time: its range, and its fields in local time and UTC.
//
// A plain second is what a clock without a zone shows, counted from its 1970-01-01 00:00:00: arithmetic only.
#ifndef TARN_TIME_INTERNAL_CALENDAR_H_
#define TARN_TIME_INTERNAL_CALENDAR_H_

#include <cstdint>
#include <ctime>
#include <optional>
#include <tuple>

namespace Tarn::internal {

// 3000-12-31 23:59:59 UTC. The first second of the range is 0.
inline constexpr std::int64_t kLastCalendarSecond = 32535215999;

constexpr bool isInCalendar(std::int64_t seconds) { return seconds >= 0 && seconds <= kLastCalendarSecond; }

// A time by way of its count of 100 ns, truncated toward zero.
struct TimeParts {
  std::int64_t seconds = -1;  // Whole ones; -1 outside the calendar range.
  int millisecond = 0;        // By the rules of `Time::getMSec`.
};
TimeParts partsOf(double time);

// The whole seconds alone.
std::int64_t calendarSeconds(double time);

// The fields as they are read and shown: the full year, the month from 1. All zero outside the calendar range, where
// years otherwise have four digits.
struct CalendarFields {
  int year = 0;
  int month = 0;
  int day = 0;
  int hour = 0;
  int minute = 0;
  int second = 0;

  friend bool operator<(const CalendarFields& a, const CalendarFields& b) {
    const auto inOrder = [](const CalendarFields& f) {
      return std::tie(f.year, f.month, f.day, f.hour, f.minute, f.second);
    };
    return inOrder(a) < inOrder(b);
  }
};

// Local fields, and how many seconds they are ahead of UTC.
struct LocalTime {
  CalendarFields fields;
  int offset = 0;
};

// Of seconds in the calendar range, or of -1.
LocalTime localTimeAt(std::int64_t seconds);
CalendarFields utcFieldsAt(std::int64_t seconds);

// The local fields of a time.
CalendarFields localFields(double time);

// The same as the runtime has them; nothing outside the calendar range.
std::optional<std::tm> runtimeFields(double time);

// The time of whole seconds and units of 100 ns.
double timeOfTicks(std::int64_t seconds, std::int64_t ticks);

// The time at which local clocks show these fields, by the rules of `Time::setTime`.
double timeAtLocal(const CalendarFields& fields, int millisecond);

// Of fields in any range: months and what is smaller carry over.
std::int64_t plainSeconds(const CalendarFields& fields);

// The fields of a plain second in the years 0 to 9999.
CalendarFields plainFields(std::int64_t plain);

}  // namespace Tarn::internal

#endif  // TARN_TIME_INTERNAL_CALENDAR_H_
