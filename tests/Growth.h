// Whether the time of a call grows as promised.
#ifndef TESTS_GROWTH_H_
#define TESTS_GROWTH_H_

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <limits>

// The processor time of a call, the least of three.
template <class Call>
double leastTime(Call call) {
  std::clock_t least = std::numeric_limits<std::clock_t>::max();
  for (int i = 0; i < 3; ++i) {
    const std::clock_t start = std::clock();
    call();
    least = std::min(least, std::clock() - start);
  }
  return static_cast<double>(least);
}

// Calls for what is made of a size, and of 16 times that size, which is to take 16 times as long. It would be 256 times
// where the time grows with the square; caches may take their part. A tenth of a millisecond is added against coarse
// clocks.
template <class Make, class Call>
void expectLinear(const char* what, std::size_t size, Make make, Call call) {
  const double least = std::max(CLOCKS_PER_SEC / 10000.0, 1.0);
  const auto few = make(size);
  const auto many = make(16 * size);
  const double small = leastTime([&] { call(few); }) + least;
  const double large = leastTime([&] { call(many); });
#ifdef TARN_TEST_SANITIZED  // Shadow memory has a time of its own.
  static_cast<void>(what);
  EXPECT_GT(large + small, 0);
#else
  EXPECT_LT(large, 64 * small) << what;
#endif
}

template <class Call>
void expectLinear(const char* what, std::size_t size, Call call) {
  expectLinear(
      what, size, [](std::size_t made) { return made; }, call);
}

#endif  // TESTS_GROWTH_H_
