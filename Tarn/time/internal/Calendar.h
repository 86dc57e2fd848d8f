// The calendar of a time: its range, and its fields in local time and UTC.
//
// A plain second is what a clock without a zone shows, counted from its 1970-01-01 00:00:00: arithmetic only.
#ifndef TARN_TIME_INTERNAL_CALENDAR_H_
#define TARN_TIME_INTERNAL_CALENDAR_H_

#include <cstdint>
#include <ctime>

namespace Tarn::internal {

// 3000-12-31 23:59:59 UTC. The first second of the range is 0.
inline constexpr std::int64_t kLastCalendarSecond = 32535215999;

constexpr bool isInCalendar(std::int64_t seconds) { return seconds >= 0 && seconds <= kLastCalendarSecond; }

// The whole seconds of a time, by way of its count of 100 ns, truncated toward zero; -1 outside the calendar range.
std::int64_t calendarSeconds(double time);

// By the rules of `Time::getMSec`.
int millisecondOf(double time);

// The fields that a time shows, as the runtime has them. Outside the calendar range these are `kNoFields`; otherwise
// years have four digits.
std::tm localFields(double time);
std::tm utcFields(double time);

// Those of seconds in the calendar range, or of -1.
std::tm localFieldsAt(std::int64_t seconds);

// All that is shown of them is zero: the day, the year counted from 1900, the month from 0.
inline constexpr std::tm kNoFields = [] {
  std::tm fields{};
  fields.tm_mon = -1;
  fields.tm_year = -1900;
  return fields;
}();

constexpr bool isNone(const std::tm& fields) { return fields.tm_mday == 0; }

// Fields as they are read, in any range: the full year, the month from 1.
struct CalendarFields {
  int year = 0;
  int month = 0;
  int day = 0;
  int hour = 0;
  int minute = 0;
  int second = 0;
};

// The time of whole seconds and units of 100 ns.
double timeOfTicks(std::int64_t seconds, std::int64_t ticks);

// The time at which local clocks show these fields, by the rules of `Time::setTime`.
double timeAtLocal(const CalendarFields& fields, int millisecond);

// Months and what is smaller carry over.
std::int64_t plainSeconds(const CalendarFields& fields);

}  // namespace Tarn::internal

#endif  // TARN_TIME_INTERNAL_CALENDAR_H_
