#include <cstdio>
#include <ctime>
#include <regex>

#include "Tarn/time/Time.h"
#include "bench/Bench.h"
#include "bench/Clocks.h"

#if WITH_ABSL
#include <absl/time/time.h>
#endif
#if WITH_CCTZ
#include <cctz/time_zone.h>
#endif

namespace {

std::tm broken(int year, int month, int day, int hour, int minute, int second) {
  std::tm fields{};
  fields.tm_year = year - 1900;
  fields.tm_mon = month - 1;
  fields.tm_mday = day;
  fields.tm_hour = hour;
  fields.tm_min = minute;
  fields.tm_sec = second;
  fields.tm_isdst = -1;
  return fields;
}

double bySscanf(const std::string& text) {
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
  std::sscanf(text.c_str(), "%4d-%2d-%2dT%2d:%2d:%2dZ", &year, &month, &day, &hour, &minute, &second);
  std::tm fields = broken(year, month, day, hour, minute, second);
  return static_cast<double>(std::mktime(&fields));
}

double byRegex(const std::string& text) {
  const std::regex pattern(R"(^(\d{4})-(\d{2})-(\d{2})[Tt](\d{2}):(\d{2}):(\d{2})([Zz]|([+-])(\d{2}):(\d{2}))$)");
  std::smatch match;
  if (!std::regex_search(text, match, pattern)) return 0;
  const auto number = [&match](std::size_t group) { return std::stoi(match[group].str()); };
  std::tm fields = broken(number(1), number(2), number(3), number(4), number(5), number(6));
  return static_cast<double>(std::mktime(&fields));
}

}  // namespace

void bench::registerCases() {
  auto read = compare("ISO 8601 reading", std::string("2024-03-05T14:07:09Z"), [](const std::string& text) {
    return Tarn::Time::fromIsoTimeStrIgnoringTimeZone(text).getLastTime();
  });
  read.limit("clocks and zone", [](const std::string& /*text*/) { return askClocksAndZone(1709647629); });
  read.peer("std::regex", byRegex).peer("sscanf and mktime", bySscanf);
#if WITH_ABSL
  read.peer("absl::ParseTime", [zone = absl::LocalTimeZone()](const std::string& text) {
    absl::Time time;
    absl::ParseTime("%Y-%m-%dT%H:%M:%SZ", text, zone, &time, nullptr);
    return static_cast<double>(absl::ToTimeT(time));
  });
#endif
#if WITH_CCTZ
  read.peer("cctz::parse", [zone = cctz::local_time_zone()](const std::string& text) {
    std::chrono::system_clock::time_point time;
    cctz::parse("%Y-%m-%dT%H:%M:%SZ", text, zone, &time);
    return static_cast<double>(std::chrono::system_clock::to_time_t(time));
  });
#endif
}
