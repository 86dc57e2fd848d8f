// What the system takes to set a time from local calendar fields.
#ifndef BENCH_CLOCKS_H_
#define BENCH_CLOCKS_H_

#include <chrono>
#include <ctime>

namespace bench {

// Both clocks, whose difference a time keeps, and the zone's offset before and at a local time: that tells the first of
// an hour that occurs twice.
inline double askClocksAndZone(std::time_t seconds) {
  const std::chrono::duration<double> system = std::chrono::system_clock::now().time_since_epoch();
  const std::chrono::duration<double> steady = std::chrono::steady_clock::now().time_since_epoch();
  const std::time_t before = seconds - 86400;
  std::tm fields{};
  localtime_r(&before, &fields);
  const std::time_t utc = seconds - fields.tm_gmtoff;
  localtime_r(&utc, &fields);
  return (steady - system).count() + static_cast<double>(fields.tm_gmtoff);
}

}  // namespace bench

#endif  // BENCH_CLOCKS_H_
