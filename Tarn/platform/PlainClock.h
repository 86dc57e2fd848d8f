// The calendar of a clock without a zone: arithmetic only, the same on every platform.
#ifndef TARN_PLATFORM_PLAINCLOCK_H_
#define TARN_PLATFORM_PLAINCLOCK_H_

#include <chrono>
#include <cstdint>
#include <ctime>

namespace Tarn::platform {

// The date and the time of day, `tm_isdst` negative, so many seconds after 1970-01-01 00:00:00, in years that a
// `std::chrono::year` can hold.
inline std::tm toPlainFields(std::int64_t seconds) {
  const std::chrono::sys_seconds time{std::chrono::seconds(seconds)};
  const auto day = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::year_month_day date(day);
  const auto second = static_cast<int>((time - day).count());
  std::tm fields{};
  fields.tm_year = static_cast<int>(date.year()) - 1900;
  fields.tm_mon = static_cast<int>(static_cast<unsigned>(date.month())) - 1;
  fields.tm_mday = static_cast<int>(static_cast<unsigned>(date.day()));
  fields.tm_hour = second / 3600;
  fields.tm_min = second / 60 % 60;
  fields.tm_sec = second % 60;
  fields.tm_isdst = -1;
  return fields;
}

// Their inverse.
inline std::int64_t fromPlainFields(const std::tm& fields) {
  const std::chrono::year_month_day date{std::chrono::year(fields.tm_year + 1900),
                                         std::chrono::month(static_cast<unsigned>(fields.tm_mon + 1)),
                                         std::chrono::day(static_cast<unsigned>(fields.tm_mday))};
  const std::int64_t days = std::chrono::sys_days(date).time_since_epoch().count();
  return ((days * 24 + fields.tm_hour) * 60 + fields.tm_min) * 60 + fields.tm_sec;
}

}  // namespace Tarn::platform

#endif  // TARN_PLATFORM_PLAINCLOCK_H_
