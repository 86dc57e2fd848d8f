// Local times by hand, from the runtime's conversions or those of cctz.
#ifndef BENCH_TIMEPEERS_H_
#define BENCH_TIMEPEERS_H_

#include <benchmark/benchmark.h>
#include <cctz/time_zone.h>

#include <array>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <ctime>
#include <random>
#include <string_view>
#include <vector>

#include "Tarn/time/Time.h"

namespace bench {

// Whole seconds of the years 2015 to 2035.
inline std::vector<std::time_t> someSeconds() {
  std::mt19937_64 random(4);
  std::vector<std::time_t> seconds(1024);
  for (std::time_t& second : seconds) second = static_cast<std::time_t>(1420070400 + random() % 662774400);
  return seconds;
}

// A time of which ours has the same millisecond.
struct Milliseconds {
  std::int64_t count;
  friend bool operator==(const Tarn::Time& time, Milliseconds other) {
    return std::llround(time.getLastTime() * 1000) == other.count;
  }
};

// The numbers of a text with one character between two, without a look at what is wrong with it.
inline std::array<int, 7> numbersOf(std::string_view text) {
  std::array<int, 7> numbers{};
  std::size_t at = 0;
  for (const char c : text) {
    const int digit = c - '0';
    if (digit >= 0 && digit <= 9) {
      numbers[at] = numbers[at] * 10 + digit;
    } else if (++at == numbers.size()) {
      break;
    }
  }
  return numbers;
}

// Both clocks, whose difference a `Time` keeps.
inline void askClocks() {
  benchmark::DoNotOptimize(std::chrono::system_clock::now().time_since_epoch() -
                           std::chrono::steady_clock::now().time_since_epoch());
}

// A time from year to millisecond by `std::mktime`, or by `timegm` with an offset, with both clocks asked.
template <auto kMake = std::mktime>
Milliseconds byMktime(const std::array<int, 7>& numbers, int offset = 0) {
  const auto& [year, month, day, hour, minute, second, millisecond] = numbers;
  std::tm fields{};
  fields.tm_year = year - 1900;
  fields.tm_mon = month - 1;
  fields.tm_mday = day;
  fields.tm_hour = hour;
  fields.tm_min = minute;
  fields.tm_sec = second;
  fields.tm_isdst = -1;
  askClocks();
  return {(kMake(&fields) - offset) * 1000 + millisecond};
}

// What a time from local fields takes at least where only the runtime knows the zone: a conversion to learn the offset,
// and one to learn whether it holds where it leads to.
inline std::time_t byTwoConversions(std::time_t plain) {
  std::tm fields;
  localtime_r(&plain, &fields);
  plain -= fields.tm_gmtoff;
  localtime_r(&plain, &fields);
  askClocks();
  return plain + fields.tm_sec;
}

inline const cctz::time_zone& localZone() {
  static const cctz::time_zone zone = cctz::local_time_zone();
  return zone;
}

// The same of a time in any zone, or `offset` seconds before UTC, without asking a clock.
inline Milliseconds byCctz(const std::array<int, 7>& numbers, const cctz::time_zone& zone = localZone(),
                           int offset = 0) {
  const auto& [year, month, day, hour, minute, second, millisecond] = numbers;
  const auto time = cctz::convert(cctz::civil_second(year, month, day, hour, minute, second), zone);
  return {(time.time_since_epoch().count() - offset) * 1000 + millisecond};
}

}  // namespace bench

#endif  // BENCH_TIMEPEERS_H_
