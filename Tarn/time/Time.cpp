#include "Tarn/time/Time.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <tuple>

#include "Tarn/time/internal/Calendar.h"

namespace Tarn {
namespace {

using SystemClock = std::chrono::system_clock;

constexpr double kSecondsPerTick = 1e-7;  // Of 100 ns.
constexpr double kSecondsPerNanosecond = 1e-9;

template <class T>
int order(const T& a, const T& b) {
  return a < b ? -1 : b < a ? 1 : 0;
}

// The order of the local fields of two times, converting only where the zone can matter.
int orderOfFields(double a, double b) {
  constexpr std::int64_t kFarApart = std::int64_t{4} * 86400;  // More than zones' offsets can differ.
  const std::int64_t secondsA = internal::calendarSeconds(a);
  const std::int64_t secondsB = internal::calendarSeconds(b);
  const bool bothAreIn = secondsA >= 0 && secondsB >= 0;
  if (!bothAreIn || secondsA == secondsB || std::abs(secondsA - secondsB) > kFarApart) return order(secondsA, secondsB);
  const auto shown = [](const std::tm& f) {
    return std::tuple(f.tm_year, f.tm_mon, f.tm_mday, f.tm_hour, f.tm_min, f.tm_sec);
  };
  return order(shown(internal::localFieldsAt(secondsA)), shown(internal::localFieldsAt(secondsB)));
}

}  // namespace

Time::Time() : Time(0.0) {}

Time::Time(double absolute) : Time(absolute, realTimeToMonotonic(absolute)) {}

Time::Time(SystemClock::time_point time) {
  const auto whole = std::chrono::floor<std::chrono::seconds>(time);
  const std::chrono::duration<double> fraction = time - whole;
  setTime(static_cast<double>(whole.time_since_epoch().count()) + fraction.count());
}

SystemClock::time_point Time::toTimePoint() const {
  using Ticks = SystemClock::duration;
  const double ticks = absTime * (static_cast<double>(Ticks::period::den) / static_cast<double>(Ticks::period::num));
  constexpr double kLimit = 9223372036854775808.0;  // 2 to the power of 63.
  if (!(ticks > -kLimit)) return ticks == ticks ? SystemClock::time_point::min() : SystemClock::time_point();
  if (ticks >= kLimit) return SystemClock::time_point::max();
  const auto seconds = static_cast<std::int64_t>(absTime);
  const std::chrono::duration<double> fraction(absTime - static_cast<double>(seconds));
  return SystemClock::time_point(std::chrono::seconds(seconds)) + std::chrono::round<Ticks>(fraction);
}

Time Time::now() {
  const double current = calcCurrentTimeStatic();  // The system clock first.
  return {current, calcCurrentMonotonicTimeStatic()};
}

void Time::setTime(double seconds) { *this = Time(seconds); }

void Time::setTime(const long long& seconds) { setTime(static_cast<double>(seconds)); }

void Time::setTime(int year, int month, int day, int hour, int minute, int second, int millisecond) {
  setTime(internal::timeAtLocal({year, month, day, hour, minute, second}, millisecond));
}

double Time::getCurrentTime() {
  saveCurrentTime();
  return absTime;
}

double Time::getLastTime() const { return absTime; }

double Time::getAbsLastTime() const { return absTime; }

int Time::getYear() const { return internal::localFields(absTime).tm_year + 1900; }

int Time::getMonth() const { return internal::localFields(absTime).tm_mon + 1; }

int Time::getDay() const { return internal::localFields(absTime).tm_mday; }

int Time::getHour() const { return internal::localFields(absTime).tm_hour; }

int Time::getMin() const { return internal::localFields(absTime).tm_min; }

int Time::getSec() const { return internal::localFields(absTime).tm_sec; }

int Time::getMSec() const { return internal::millisecondOf(absTime); }

std::tm Time::getTimeStruct() const {
  std::tm fields = internal::localFields(absTime);
  if (internal::isNone(fields)) fields = {};
  return fields;
}

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
  using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;
  const auto sinceEpoch = SystemClock::now().time_since_epoch();
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
