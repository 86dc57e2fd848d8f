// The calendar of a time: its range, and its fields in local time and UTC.
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

// Whole seconds of a time, by way of its count of 100 ns, both truncated toward zero. Nothing if that count does not
// fit 64 bits.
std::optional<std::int64_t> wholeSeconds(double time);

// The same; -1 outside the calendar range.
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

CalendarFields localFields(double time);
CalendarFields utcFields(double time);

// The broken-down local time; nothing outside the calendar range.
std::optional<std::tm> toLocalTime(double time);

// The time at which local clocks show these fields, by the rules of `Time::setTime`.
double fromLocalFields(const CalendarFields& fields, int millisecond);

// The seconds since 1970-01-01 00:00:00 of fields in any range, on a clock without a zone. Months and what is smaller
// carry over.
std::int64_t secondsOf(const CalendarFields& fields);

}  // namespace Tarn::internal

#endif  // TARN_TIME_INTERNAL_CALENDAR_H_
