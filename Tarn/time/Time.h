/// @file
/// A point in time, its calendar fields and its text forms.
#ifndef TARN_TIME_TIME_H_
#define TARN_TIME_TIME_H_

#include <chrono>
#include <compare>
#include <concepts>
#include <ctime>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>

#include "Tarn/Export.h"

namespace Tarn {

class ValueReader;

/// The integer types that `Time::setTime` takes beside `long long`.
template <class T>
concept OtherInteger = std::integral<T> && !std::same_as<T, bool> && !std::same_as<T, long long>;

/// A point in time: seconds since 1970-01-01 00:00:00 UTC, paired with the matching reading of the steady clock.
///
/// The wall-clock half is broken down into local calendar fields, compared and printed. The steady half serves
/// `isTimeOut`, which changes of the system clock do not disturb.
///
/// Calendar fields and texts cover 1970-01-01 to 3000-12-31 23:59:59 UTC, on every platform. Outside, and for NaN and
/// infinite times, getters give 0 and texts show zeros, but for milliseconds. Time zone and daylight saving time are
/// the process's; a change of its environment is seen after `tzset()`.
///
///     Time start = Time::now();
///     Time scan;
///     scan.setTime(2024, 3, 5, 14, 7, 9, 42);   // local time
///     scan.getTimeStr8();                       // "2024-03-05 14:07:09"
///     if (start.isTimeOut(30.0)) giveUp();
///
/// Durations are added by way of the clock: `Time(start.toTimePoint() + std::chrono::hours(1))`.
///
/// A plain copyable value of two doubles; only the texts allocate. Threads: as for any plain value. Changing the
/// process's time zone while another thread converts is not safe.
class Time {
 public:
  /// The epoch, 1970-01-01 00:00:00 UTC.
  TARN_API Time();

  /// The same instant, as exactly as a `double` of seconds can hold it: to a fourth of a microsecond today.
  TARN_API explicit Time(std::chrono::system_clock::time_point time);

  /// The clock's reading nearest to this time, its first or last where it does not reach so far; the epoch for NaN.
  [[nodiscard]] TARN_API std::chrono::system_clock::time_point toTimePoint() const;

  /// The current time.
  [[nodiscard]] TARN_API static Time now();

  /// Sets seconds since 1970-01-01 00:00:00 UTC, with their fraction.
  TARN_API void setTime(double seconds);

  /// Sets whole seconds since 1970-01-01 00:00:00 UTC.
  TARN_API void setTime(const long long& seconds);

  /// The same for every other integer type.
  template <OtherInteger T>
  void setTime(T seconds) {
    setTime(static_cast<double>(seconds));
  }

  /// Sets local calendar time. Fields outside their ranges carry over: month 13 is January of the next year, and the
  /// milliseconds may be any number.
  ///
  /// Before 1970-01-01 13:00, on 3000-12-31 or later, as the fields say before they carry, and where the conversion
  /// falls outside the calendar range, the result is the epoch plus the milliseconds. Of an hour that occurs twice one
  /// is taken, and an hour that is missing becomes a neighbouring one; which one is the platform's choice.
  TARN_API void setTime(int year, int month, int day, int hour, int minute, int second, int millisecond = 0);

  /// Sets the current time and returns it as `getLastTime` does.
  TARN_API double getCurrentTime();

  /// Seconds since 1970-01-01 00:00:00 UTC, with their fraction.
  [[nodiscard]] TARN_API double getLastTime() const;
  /// The same.
  [[nodiscard]] TARN_API double getAbsLastTime() const;

  /// Local calendar fields, 0 outside the calendar range. Each call converts anew: for several fields use
  /// `getTimeStruct`.
  [[nodiscard]] TARN_API int getYear() const;   ///< In full: 2024.
  [[nodiscard]] TARN_API int getMonth() const;  ///< 1 to 12.
  [[nodiscard]] TARN_API int getDay() const;    ///< 1 to 31.
  [[nodiscard]] TARN_API int getHour() const;   ///< 0 to 23.
  [[nodiscard]] TARN_API int getMin() const;    ///< 0 to 59.
  [[nodiscard]] TARN_API int getSec() const;    ///< 0 to 59.

  /// The millisecond within the second, rounded, at most 999: 10.9996 s gives 999. Zero or negative before the epoch;
  /// 0 for a time that is not finite or beyond a 64-bit count of 100 ns.
  [[nodiscard]] TARN_API int getMSec() const;

  /// All local calendar fields at once; all zero outside the calendar range.
  [[nodiscard]] TARN_API std::tm getTimeStruct() const;

  /// Compare the instants, seconds with their fraction; NaN is unordered. Other than `compare`, they tell times apart
  /// that show the same fields.
  /// @{
  friend bool operator==(const Time& a, const Time& b) noexcept { return a.absTime == b.absTime; }
  friend std::partial_ordering operator<=>(const Time& a, const Time& b) noexcept { return a.absTime <=> b.absTime; }
  /// @}

  /// Compares the local calendar fields, year to millisecond. Times less than a millisecond apart may be equal, and so
  /// are times an hour apart in the hour that occurs twice.
  /// @return -1, 0 or 1.
  [[nodiscard]] TARN_API static int compare(const Time& a, const Time& b);

  /// Whether more than `timeout` seconds have passed on the steady clock since this time; false for NaN.
  [[nodiscard]] TARN_API bool isTimeOut(double timeout) const;

  /// @name Texts
  /// Of 2024-03-05 14:07:09.042, a Tuesday, local time at UTC+01:00. All but `getTimeStr9` show local time, all but
  /// `getTimeStr4` are exact to the second. Words are those of the process's time locale. Outside the calendar range
  /// all digits but milliseconds are zero, and the two texts with words are empty.
  /// @{
  [[nodiscard]] TARN_API std::string getTimeStr() const;     ///< The locale's own date and time ("%c").
  [[nodiscard]] TARN_API std::string getTimeStr2() const;    ///< 05.03.2024 at 14:07:09
  [[nodiscard]] TARN_API std::string getTimeStr3() const;    ///< Tuesday, March 05, 2024 at 14:07:09
  [[nodiscard]] TARN_API std::string getTimeStr4() const;    ///< 14:07:09:042
  [[nodiscard]] TARN_API std::string getTimeStr5() const;    ///< 05.03.2024
  [[nodiscard]] TARN_API std::string getTimeStr6() const;    ///< 240305
  [[nodiscard]] TARN_API std::string getTimeStr7() const;    ///< 240305_140709
  [[nodiscard]] TARN_API std::string getTimeStr8() const;    ///< 2024-03-05 14:07:09
  [[nodiscard]] TARN_API std::string getTimeStr9() const;    ///< 2024-03-05T13:07:09Z, in UTC.
  [[nodiscard]] TARN_API std::string getIsoTimeStr() const;  ///< 2024-03-05T14:07:09+01:00 (ISO 8601); Z at UTC.
  /// @}

  /// Reads the first line of a text that is an ISO 8601 date and time as `getIsoTimeStr` writes it, and nothing else.
  ///
  ///     2024-03-05T14:07:09Z   2024-03-05t14:07:09+09:00
  ///
  /// The zone must be there, Z, z or an offset, and is ignored: the fields are local time. Lines end at line feeds
  /// only. Fields outside their ranges carry over as in `setTime`. Linear in the text; throws nothing.
  /// For times from outside, take `parseTime`, which knows offsets and fractions.
  /// @return the time, or the epoch if no line has that form.
  [[nodiscard]] TARN_API static Time fromIsoTimeStrIgnoringTimeZone(const std::string& text);

 private:
  // For `ValueReader::tryRead`.
  TARN_API friend bool takeWhole(ValueReader& reader, Time& time);
  TARN_API friend std::optional<Time> parseTime(std::string_view text);

  explicit TARN_API Time(double absolute);
  Time(double absolute, double monotonic) : absTime(absolute), monotonicTime(monotonic) {}

  TARN_API void saveCurrentTime();
  TARN_API static double calcCurrentTimeStatic();
  TARN_API static double calcCurrentMonotonicTimeStatic();
  TARN_API static double realTimeToMonotonic(double time);

  double absTime = 0.0;
  double monotonicTime = 0.0;
};

/// @name Text that can be read back
/// The local time as `5.3.2024 14:7:9:42`: day, month, year, hour, minute, second and millisecond. Reading does not
/// check the separators, only that there is a character where one belongs; numbers that are missing at the end, and
/// those that no `int` holds, count as 0, and the seven go to `setTime`. `Time` can be read from a `ValueReader`, too.
/// It comes back to the millisecond, so that `compare` gives 0; not from before 1970, nor surely from the hour that
/// occurs twice. `isoText` keeps the instant.
///
/// The two stream operators follow the stream's own formatting: with a locale that groups digits, `std::hex` or a width
/// they write another text, which may not read back. The buffer operators write the same bytes everywhere.
///
/// Appending to a buffer leaves it as it was if allocation throws. Reading from one, something that is no number where
/// one belongs throws `std::out_of_range` with "invalid string position": the time is unchanged then, and the buffer
/// has lost what was read before. A stream is left failed.
/// @{

/// Writes or reads a time in the form above.
TARN_API std::ostream& operator<<(std::ostream& stream, const Time& time);
TARN_API std::istream& operator>>(std::istream& stream, Time& time);
TARN_API std::string& operator<<(std::string& buffer, const Time& time);
TARN_API std::string& operator>>(std::string& buffer, Time& time);
TARN_API ValueReader& operator>>(ValueReader& reader, Time& time);
/// @}

/// @name ISO 8601
/// @{

/// The local time to the millisecond with its offset from UTC: `2024-03-05T14:07:09.042+01:00`, `Z` at UTC (RFC 3339).
/// `parseTime` reads that millisecond back, in any zone. A zone of odd seconds shows the clock of the next offset of
/// whole minutes toward UTC. Outside the calendar range all digits are zero; less than a second before it, the
/// milliseconds are.
[[nodiscard]] TARN_API std::string isoText(const Time& time);

/// The time that a text is, or nothing for any other text.
///
///     2024-03-05T14:07:09Z   2024-03-05 14:07:09.042+01:00   2024-03-05t14:07:09.1234567
///
/// Date, `T`, `t` or a space, and time of day; then a fraction of a second of any length, and an offset from UTC, or
/// neither. Without an offset it is local time, as `setTime` takes it, of 1970 to 3000. Fields have to be in their
/// ranges, February 29 in leap years only. A leap second, 23:59:60 UTC, counts as the second behind it, unless the
/// system's clock counts leap seconds (a "right" zone) and has one there.
[[nodiscard]] TARN_API std::optional<Time> parseTime(std::string_view text);
/// @}

}  // namespace Tarn

#endif  // TARN_TIME_TIME_H_
