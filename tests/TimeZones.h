// The process's time zone, set for a scope.
#ifndef TESTS_TIMEZONES_H_
#define TESTS_TIMEZONES_H_

#include <string>

// Sets the zone of an IANA name or of a text in POSIX form, such as "CET-1". Where the runtime knows no IANA names, the
// zones of kZones have its nearest rule.
void setTimeZone(const std::string& zone);

inline constexpr const char* kZones[] = {"UTC", "Europe/Berlin", "America/St_Johns", "Asia/Kolkata",
                                         "Pacific/Kiritimati"};

class TimeZone {
 public:
  explicit TimeZone(const std::string& zone) { setTimeZone(zone); }
  TimeZone(const TimeZone&) = delete;
  TimeZone& operator=(const TimeZone&) = delete;
  ~TimeZone() { setTimeZone("UTC"); }
};

#endif  // TESTS_TIMEZONES_H_
