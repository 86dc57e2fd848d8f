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

// One call for what is made of 16 times a size is to take as long as 16 calls for that size. It would take 16 times as
// long where the time grows with the square; caches may take their part. Some steps of the clock are added.
template <class Make, class Call>
void expectLinear(const char* what, std::size_t size, Make make, Call call) {
  const double least = CLOCKS_PER_SEC > 1000 ? CLOCKS_PER_SEC / 10000.0 : 50;  // Those count others' time, too.
  const auto few = make(size);
  const auto many = make(16 * size);
  const double small = least + leastTime([&] {
                         for (int i = 0; i < 16; ++i) call(few);
                       });
  const double large = leastTime([&] { call(many); });
#ifdef TARN_TEST_SANITIZED  // Shadow memory has a time of its own.
  static_cast<void>(what);
  EXPECT_GT(large + small, 0);
#else
  EXPECT_LT(large, 4 * small) << what;
#endif
}

template <class Call>
void expectLinear(const char* what, std::size_t size, Call call) {
  expectLinear(
      what, size, [](std::size_t made) { return made; }, call);
}

#endif  // TESTS_GROWTH_H_
