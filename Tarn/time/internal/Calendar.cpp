// A time is set from calendar fields in two steps: the fields are brought into their ranges here, which is the same on
// every platform, and the runtime, which knows the zone, converts what then is an ordinary date.
#include "Tarn/time/internal/Calendar.h"

#include <algorithm>
#include <cmath>

#include "Tarn/platform/Platform.h"

namespace Tarn::internal {
namespace {

constexpr std::int64_t kTicksPerSecond = 10'000'000;
constexpr std::int64_t kTicksPerMillisecond = 10'000;
constexpr double kSecondsPerTick = 1e-7;
constexpr std::int64_t kZoneSpan = 172800;  // Seconds that no zone's offset reaches: two days.

std::int64_t floorDivide(std::int64_t number, std::int64_t divisor) {
  return number / divisor - (number % divisor < 0 ? 1 : 0);
}

// Days since 1970-01-01 of the first of a month, counted from January of the year 0. Years begin in March here, so that
// the day that leap years have more is their last one.
std::int64_t daysOfMonth(std::int64_t month) {
  const std::int64_t year = floorDivide(month - 2, 12);
  const std::int64_t monthOfYear = month - 2 - year * 12;
  const std::int64_t leapDays = floorDivide(year, 4) - floorDivide(year, 100) + floorDivide(year, 400);
  return year * 365 + leapDays + (monthOfYear * 153 + 2) / 5 - 719468;
}

// What setting never converts: a day at either end, so that no zone takes the result out of the range.
bool isGuarded(const CalendarFields& fields) {
  const bool firstMorning = fields.year == 1970 && fields.month == 1 && fields.day == 1 && fields.hour <= 12;
  const bool lastDay = fields.year == 3000 && fields.month == 12 && fields.day == 31;
  return fields.year < 1970 || firstMorning || lastDay || fields.year > 3000;
}

// The seconds at which local clocks show the fields; 0 where these are guarded or outside the calendar.
std::int64_t settableSeconds(const CalendarFields& fields) {
  if (isGuarded(fields)) return 0;
  const std::int64_t plain = plainSeconds(fields);
  if (plain < -kZoneSpan || plain > kLastCalendarSecond + kZoneSpan) return 0;
  const std::int64_t seconds = platform::fromLocalTime(plain);
  return isInCalendar(seconds) ? seconds : 0;
}

}  // namespace

int millisecondOf(double time) {
  constexpr double kLimit = 9223372036854775808.0;  // 2 to the power of 63.
  const double ticks = time * kTicksPerSecond;
  if (!(-kLimit <= ticks && ticks < kLimit)) return 0;
  const std::int64_t seconds = static_cast<std::int64_t>(ticks) / kTicksPerSecond;
  const double fraction = time - static_cast<double>(seconds);
  return std::min(static_cast<int>(std::round(fraction * 1000.0)), 999);
}

std::int64_t calendarSeconds(double time) {
  constexpr double kTicks = kTicksPerSecond;
  constexpr double kEnd = static_cast<double>(kLastCalendarSecond + 1) * kTicks;
  const double ticks = time * kTicks;
  return -kTicks < ticks && ticks < kEnd ? static_cast<std::int64_t>(ticks) / kTicksPerSecond : -1;
}

std::tm localFieldsAt(std::int64_t seconds) {
  std::tm fields;
  if (seconds < 0 || !platform::toLocalTime(seconds, fields)) fields = kNoFields;
  return fields;
}

std::tm localFields(double time) { return localFieldsAt(calendarSeconds(time)); }

std::tm utcFields(double time) {
  const std::int64_t seconds = calendarSeconds(time);
  std::tm fields;
  if (seconds < 0 || !platform::toUtc(seconds, fields)) fields = kNoFields;
  return fields;
}

double timeOfTicks(std::int64_t seconds, std::int64_t ticks) {
  return static_cast<double>(seconds * kTicksPerSecond + ticks) * kSecondsPerTick;
}

double timeAtLocal(const CalendarFields& fields, int millisecond) {
  return timeOfTicks(settableSeconds(fields), millisecond * kTicksPerMillisecond);
}

std::int64_t plainSeconds(const CalendarFields& fields) {
  const std::int64_t month = std::int64_t{fields.year} * 12 + fields.month - 1;
  const std::int64_t day = daysOfMonth(month) + fields.day - 1;
  const std::int64_t minute = (day * 24 + fields.hour) * 60 + fields.minute;
  return minute * 60 + fields.second;
}

}  // namespace Tarn::internal
