// A time is set from calendar fields in two steps: the fields are brought into their ranges here, which is the same on
// every platform, and the runtime, which knows the zone, converts what then is an ordinary date.
#include "Tarn/time/Time.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>

#include "Tarn/platform/Platform.h"
#include "Tarn/time/internal/Calendar.h"

namespace Tarn {
namespace {

constexpr std::int64_t kTicksPerSecond = 10'000'000;
constexpr std::int64_t kTicksPerMillisecond = 10'000;
constexpr double kSecondsPerTick = 1e-7;
constexpr double kSecondsPerNanosecond = 1e-9;

std::int64_t floorDivide(std::int64_t number, std::int64_t divisor) {
  return number / divisor - (number % divisor < 0 ? 1 : 0);
}

// Days since 1970-01-01 of the first of a month, counted from January of the year 0.
std::int64_t daysOfMonth(std::int64_t month) {
  constexpr std::int64_t kMonthsPerEra = 4800;  // After which the calendar repeats itself.
  constexpr std::int64_t kDaysPerEra = 146097;
  const std::int64_t era = floorDivide(month, kMonthsPerEra);
  const auto monthOfEra = static_cast<int>(month - era * kMonthsPerEra);
  const std::chrono::year_month_day first{std::chrono::year(monthOfEra / 12),
                                          std::chrono::month(static_cast<unsigned>(monthOfEra % 12 + 1)),
                                          std::chrono::day(1)};
  return era * kDaysPerEra + std::chrono::sys_days(first).time_since_epoch().count();
}

// The fields that a clock without a zone shows. The inverse of `secondsOf` near the calendar range.
std::tm brokenDown(std::int64_t seconds) {
  constexpr std::int64_t kSecondsPerDay = 86400;
  const std::int64_t days = floorDivide(seconds, kSecondsPerDay);
  const auto second = static_cast<int>(seconds - days * kSecondsPerDay);
  const std::chrono::year_month_day date{std::chrono::sys_days(std::chrono::days(days))};
  std::tm fields{};
  fields.tm_year = static_cast<int>(date.year()) - 1900;
  fields.tm_mon = static_cast<int>(static_cast<unsigned>(date.month())) - 1;
  fields.tm_mday = static_cast<int>(static_cast<unsigned>(date.day()));
  fields.tm_hour = second / 3600;
  fields.tm_min = second / 60 % 60;
  fields.tm_sec = second % 60;
  fields.tm_isdst = -1;  // The runtime decides.
  return fields;
}

// What setting never converts: a day at either end, so that no zone takes the result out of the range.
bool isGuarded(const internal::CalendarFields& fields) {
  const bool firstMorning = fields.year == 1970 && fields.month == 1 && fields.day == 1 && fields.hour <= 12;
  const bool lastDay = fields.year == 3000 && fields.month == 12 && fields.day == 31;
  return fields.year < 1970 || firstMorning || lastDay || fields.year > 3000;
}

// Whole seconds since 1970-01-01 UTC of local fields in any range; 0 where they are guarded or outside the calendar.
std::int64_t fromLocalFields(const internal::CalendarFields& fields) {
  constexpr std::int64_t kZoneSpan = 172800;  // Two days, more than any zone's offset.
  if (isGuarded(fields)) return 0;
  const std::int64_t local = internal::secondsOf(fields);
  if (local < -kZoneSpan || local > internal::kLastCalendarSecond + kZoneSpan) return 0;
  const std::int64_t seconds = platform::fromLocalTime(brokenDown(local));
  return internal::isInCalendar(seconds) ? seconds : 0;
}

internal::CalendarFields localFields(double time) { return internal::toFields(internal::toLocalTime(time)); }

std::optional<std::tm> breakDown(double time, bool (*convert)(std::int64_t, std::tm&)) {
  const std::optional<std::int64_t> seconds = internal::wholeSeconds(time);
  std::tm fields{};
  if (!seconds || !internal::isInCalendar(*seconds) || !convert(*seconds, fields)) return std::nullopt;
  return fields;
}

}  // namespace

std::optional<std::int64_t> internal::wholeSeconds(double time) {
  constexpr double kLimit = 9223372036854775808.0;  // 2 to the power of 63.
  const double ticks = time * static_cast<double>(kTicksPerSecond);
  if (!(ticks >= -kLimit && ticks < kLimit)) return std::nullopt;
  return static_cast<std::int64_t>(ticks) / kTicksPerSecond;
}

internal::CalendarFields internal::toFields(const std::optional<std::tm>& broken) {
  if (!broken) return {};
  return {broken->tm_year + 1900, broken->tm_mon + 1, broken->tm_mday, broken->tm_hour, broken->tm_min, broken->tm_sec};
}

std::optional<std::tm> internal::toLocalTime(double time) { return breakDown(time, platform::toLocalTime); }

std::optional<std::tm> internal::toUtc(double time) { return breakDown(time, platform::toUtc); }

std::int64_t internal::secondsOf(const CalendarFields& fields) {
  const std::int64_t month = std::int64_t{fields.year} * 12 + fields.month - 1;
  const std::int64_t day = daysOfMonth(month) + fields.day - 1;
  const std::int64_t minute = (day * 24 + fields.hour) * 60 + fields.minute;
  return minute * 60 + fields.second;
}

Time::Time() { setTime(0.0); }

Time Time::now() {
  Time time;
  time.saveCurrentTime();
  return time;
}

void Time::setTime(double seconds) {
  absTime = seconds;
  monotonicTime = realTimeToMonotonic(seconds);
}

void Time::setTime(const long long& seconds) { setTime(static_cast<double>(seconds)); }

void Time::setTime(int year, int month, int day, int hour, int minute, int second, int millisecond) {
  const std::int64_t seconds = fromLocalFields({year, month, day, hour, minute, second});
  const std::int64_t ticks = seconds * kTicksPerSecond + millisecond * kTicksPerMillisecond;
  setTime(static_cast<double>(ticks) * kSecondsPerTick);
}

double Time::getCurrentTime() {
  saveCurrentTime();
  return absTime;
}

double Time::getLastTime() const { return absTime; }

double Time::getAbsLastTime() const { return absTime; }

int Time::getYear() const { return localFields(absTime).year; }

int Time::getMonth() const { return localFields(absTime).month; }

int Time::getDay() const { return localFields(absTime).day; }

int Time::getHour() const { return localFields(absTime).hour; }

int Time::getMin() const { return localFields(absTime).minute; }

int Time::getSec() const { return localFields(absTime).second; }

int Time::getMSec() const {
  const std::optional<std::int64_t> seconds = internal::wholeSeconds(absTime);
  if (!seconds) return 0;
  const double fraction = absTime - static_cast<double>(*seconds);
  return std::min(static_cast<int>(std::round(fraction * 1000.0)), 999);
}

std::tm Time::getTimeStruct() const { return internal::toLocalTime(absTime).value_or(std::tm{}); }

int Time::compare(const Time& a, const Time& b) {
  const auto fieldsOf = [](const Time& time) {
    const internal::CalendarFields local = localFields(time.absTime);
    return std::array{local.year, local.month, local.day, local.hour, local.minute, local.second, time.getMSec()};
  };
  const auto fieldsOfA = fieldsOf(a);
  const auto fieldsOfB = fieldsOf(b);
  return fieldsOfA < fieldsOfB ? -1 : fieldsOfB < fieldsOfA ? 1 : 0;
}

bool Time::isTimeOut(double timeout) const { return calcCurrentMonotonicTimeStatic() - monotonicTime > timeout; }

void Time::saveCurrentTime() {
  absTime = calcCurrentTimeStatic();
  monotonicTime = calcCurrentMonotonicTimeStatic();
}

double Time::calcCurrentTimeStatic() {
  using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, kTicksPerSecond>>;
  const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
  return static_cast<double>(std::chrono::duration_cast<Ticks>(sinceEpoch).count()) * kSecondsPerTick;
}

double Time::calcCurrentMonotonicTimeStatic() {
  const std::chrono::nanoseconds reading = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<double>(reading.count()) * kSecondsPerNanosecond;
}

double Time::realTimeToMonotonic(double time) {
  const double realNow = calcCurrentTimeStatic();
  const double monotonicNow = calcCurrentMonotonicTimeStatic();
  return monotonicNow + (time - realNow);
}

}  // namespace Tarn
