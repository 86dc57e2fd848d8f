// The process's time zone, set for a scope.
#ifndef TESTS_TIMEZONES_H_
#define TESTS_TIMEZONES_H_

#include <cstddef>
#include <ctime>
#include <iterator>
#include <stdexcept>
#include <string>

// Sets the zone of an IANA name or of a text in POSIX form, such as "CET-1". Where the runtime knows no IANA names, the
// zones of kZones have its nearest rule.
void setTimeZone(const std::string& zone);

inline constexpr const char* kZones[] = {"UTC", "Europe/Berlin", "America/St_Johns", "Asia/Kolkata",
                                         "Pacific/Kiritimati"};

class TimeZone {
 public:
  // Throws where the runtime does not know a zone of kZones: it would take it for UTC.
  explicit TimeZone(const std::string& zone) {
    setTimeZone(zone);
    constexpr int kMinutes[] = {0, 60, -210, 330, 840};
    for (std::size_t i = 0; i < std::size(kZones); ++i) {
      if (zone != kZones[i]) continue;
      const std::time_t noon = 1704110400;  // 2024-01-01 12:00 UTC
      const std::tm local = *std::localtime(&noon);
      const int day = local.tm_mday == 1 ? 0 : local.tm_mday == 2 ? 1440 : -1440;
      if (day + local.tm_hour * 60 + local.tm_min - 720 != kMinutes[i]) throw std::runtime_error("no zone " + zone);
    }
  }
  TimeZone(const TimeZone&) = delete;
  TimeZone& operator=(const TimeZone&) = delete;
  ~TimeZone() { setTimeZone("UTC"); }
};

#endif  // TESTS_TIMEZONES_H_
