// A time is set from calendar fields in two steps: the fields are brought into their ranges here, which is the same on
// every platform, and the runtime, which knows the zone, converts what then is an ordinary date.
#include "Tarn/time/Time.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>

#include "Tarn/platform/PlainClock.h"
#include "Tarn/platform/Platform.h"
#include "Tarn/time/internal/Calendar.h"

namespace Tarn {
namespace {

constexpr std::int64_t kTicksPerSecond = 10'000'000;
constexpr std::int64_t kTicksPerMillisecond = 10'000;
constexpr std::int64_t kZoneSpan = 172800;  // Seconds that no zone's offset reaches: two days.
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

// What setting never converts: a day at either end, so that no zone takes the result out of the range.
bool isGuarded(const internal::CalendarFields& fields) {
  const bool firstMorning = fields.year == 1970 && fields.month == 1 && fields.day == 1 && fields.hour <= 12;
  const bool lastDay = fields.year == 3000 && fields.month == 12 && fields.day == 31;
  return fields.year < 1970 || firstMorning || lastDay || fields.year > 3000;
}

// Whole seconds since 1970-01-01 UTC of local fields in any range; 0 where they are guarded or outside the calendar.
std::int64_t wholeSecondsOf(const internal::CalendarFields& fields) {
  if (isGuarded(fields)) return 0;
  const std::int64_t local = internal::secondsOf(fields);
  if (local < -kZoneSpan || local > internal::kLastCalendarSecond + kZoneSpan) return 0;
  const std::int64_t seconds = platform::fromLocalTime(local);
  return internal::isInCalendar(seconds) ? seconds : 0;
}

template <class T>
int order(const T& a, const T& b) {
  return a < b ? -1 : b < a ? 1 : 0;
}

// The order of `localFields(a)` and `localFields(b)`, converting only where the zone can matter.
int orderOfFields(double a, double b) {
  const std::int64_t secondsA = internal::calendarSeconds(a);
  const std::int64_t secondsB = internal::calendarSeconds(b);
  const bool bothAreIn = secondsA >= 0 && secondsB >= 0;
  if (!bothAreIn || secondsA == secondsB || std::abs(secondsA - secondsB) > 2 * kZoneSpan) {
    return order(secondsA, secondsB);
  }
  return order(internal::localFields(a), internal::localFields(b));
}

// Rounds a number that an `int` can hold, halves away from zero, as `std::round` does by a call.
int rounded(double number) {
  const int whole = static_cast<int>(number);
  const double rest = number - whole;
  return whole + (rest >= 0.5 ? 1 : 0) - (rest <= -0.5 ? 1 : 0);
}

}  // namespace

std::optional<std::int64_t> internal::wholeSeconds(double time) {
  constexpr double kLimit = 9223372036854775808.0;  // 2 to the power of 63.
  const double ticks = time * static_cast<double>(kTicksPerSecond);
  if (!(ticks >= -kLimit && ticks < kLimit)) return std::nullopt;
  return static_cast<std::int64_t>(ticks) / kTicksPerSecond;
}

std::int64_t internal::calendarSeconds(double time) {
  const std::optional<std::int64_t> seconds = wholeSeconds(time);
  return seconds && isInCalendar(*seconds) ? *seconds : -1;
}

std::optional<std::tm> internal::toLocalTime(double time) {
  const std::int64_t seconds = calendarSeconds(time);
  std::tm fields{};
  if (seconds < 0 || !platform::toLocalTime(seconds, fields)) return std::nullopt;
  return fields;
}

internal::TimeParts internal::partsOf(double time) {
  const std::optional<std::int64_t> seconds = wholeSeconds(time);
  if (!seconds) return {};
  const double fraction = time - static_cast<double>(*seconds);
  return {isInCalendar(*seconds) ? *seconds : -1, std::min(rounded(fraction * 1000.0), 999)};
}

internal::CalendarFields internal::utcFields(double time) {
  const std::int64_t seconds = calendarSeconds(time);
  return seconds >= 0 ? toFields(platform::plainFields(seconds)) : CalendarFields{};
}

double internal::fromLocalFields(const CalendarFields& fields, int millisecond) {
  const std::int64_t ticks = wholeSecondsOf(fields) * kTicksPerSecond + millisecond * kTicksPerMillisecond;
  return static_cast<double>(ticks) * kSecondsPerTick;
}

std::int64_t internal::secondsOf(const CalendarFields& fields) {
  const std::int64_t month = std::int64_t{fields.year} * 12 + fields.month - 1;
  const std::int64_t day = daysOfMonth(month) + fields.day - 1;
  const std::int64_t minute = (day * 24 + fields.hour) * 60 + fields.minute;
  return minute * 60 + fields.second;
}

Time::Time() : Time(0.0, realTimeToMonotonic(0.0)) {}

Time Time::now() {
  const double current = calcCurrentTimeStatic();  // The system clock first.
  return {current, calcCurrentMonotonicTimeStatic()};
}

void Time::setTime(double seconds) {
  absTime = seconds;
  monotonicTime = realTimeToMonotonic(seconds);
}

void Time::setTime(const long long& seconds) { setTime(static_cast<double>(seconds)); }

void Time::setTime(int year, int month, int day, int hour, int minute, int second, int millisecond) {
  setTime(internal::fromLocalFields({year, month, day, hour, minute, second}, millisecond));
}

double Time::getCurrentTime() {
  saveCurrentTime();
  return absTime;
}

double Time::getLastTime() const { return absTime; }

double Time::getAbsLastTime() const { return absTime; }

int Time::getYear() const { return internal::localFields(absTime).year; }

int Time::getMonth() const { return internal::localFields(absTime).month; }

int Time::getDay() const { return internal::localFields(absTime).day; }

int Time::getHour() const { return internal::localFields(absTime).hour; }

int Time::getMin() const { return internal::localFields(absTime).minute; }

int Time::getSec() const { return internal::localFields(absTime).second; }

int Time::getMSec() const { return internal::partsOf(absTime).millisecond; }

std::tm Time::getTimeStruct() const { return internal::toLocalTime(absTime).value_or(std::tm{}); }

int Time::compare(const Time& a, const Time& b) {
  const int byFields = orderOfFields(a.absTime, b.absTime);
  return byFields != 0 ? byFields : order(a.getMSec(), b.getMSec());
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
