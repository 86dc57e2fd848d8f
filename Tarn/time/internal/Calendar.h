// The calendar of a time: its range, and its fields in local time and UTC.
#ifndef TARN_TIME_INTERNAL_CALENDAR_H_
#define TARN_TIME_INTERNAL_CALENDAR_H_

#include <cstdint>
#include <ctime>
#include <optional>
#include <tuple>

#include "Tarn/platform/Platform.h"

namespace Tarn::internal {

// 3000-12-31 23:59:59 UTC. The first second of the range is 0.
inline constexpr std::int64_t kLastCalendarSecond = 32535215999;

constexpr bool isInCalendar(std::int64_t seconds) { return seconds >= 0 && seconds <= kLastCalendarSecond; }

// Whole seconds of a time, by way of its count of 100 ns, both truncated toward zero. Nothing if that count does not
// fit 64 bits.
std::optional<std::int64_t> wholeSeconds(double time);

// The same; -1 outside the calendar range.
std::int64_t calendarSeconds(double time);

// The same with the millisecond behind it, by the rules of `Time::getMSec`.
struct TimeParts {
  std::int64_t calendarSeconds = -1;
  int millisecond = 0;
};
TimeParts partsOf(double time);

// The fields as they are read and shown: the full year, the month from 1. All zero outside the calendar range, where
// years otherwise have four digits.
struct CalendarFields {
  int year = 0;
  int month = 0;
  int day = 0;
  int hour = 0;
  int minute = 0;
  int second = 0;
  int weekday = 0;  // From Sunday, 0. Of local times only.

  friend bool operator<(const CalendarFields& a, const CalendarFields& b) {
    const auto inOrder = [](const CalendarFields& f) {
      return std::tie(f.year, f.month, f.day, f.hour, f.minute, f.second);
    };
    return inOrder(a) < inOrder(b);
  }
};

CalendarFields utcFields(double time);

// These are inline so that no field is copied: compilers copy fields in pairs, and a processor waits where it is to
// read two of them at once that have just been written one by one.
inline CalendarFields toFields(const std::tm& broken) {
  return {broken.tm_year + 1900, broken.tm_mon + 1, broken.tm_mday, broken.tm_hour,
          broken.tm_min,         broken.tm_sec,     broken.tm_wday};
}
inline CalendarFields localFieldsAt(std::int64_t calendarSeconds) {
  std::tm fields;
  return calendarSeconds >= 0 && platform::toLocalTime(calendarSeconds, fields) ? toFields(fields) : CalendarFields{};
}
inline CalendarFields localFields(double time) { return localFieldsAt(calendarSeconds(time)); }

// The broken-down local time; nothing outside the calendar range.
std::optional<std::tm> toLocalTime(double time);

// The time at which local clocks show these fields, by the rules of `Time::setTime`.
double fromLocalFields(const CalendarFields& fields, int millisecond);

// The seconds since 1970-01-01 00:00:00 of fields in any range, on a clock without a zone. Months and what is smaller
// carry over.
std::int64_t secondsOf(const CalendarFields& fields);

}  // namespace Tarn::internal

#endif  // TARN_TIME_INTERNAL_CALENDAR_H_
