#include "Tarn/DataStructures/ScanStatistics.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using namespace Tarn::DataStructures;

static_assert(sizeof(SampleSums) == 64);
static_assert(sizeof(decltype(HistogramStatistics::frequentValues)::value_type) == 16);
static_assert(sizeof(decltype(CountStatistics::counts)::value_type) == 8);

constexpr SampleSums kSums = {1, 2, 3, 4, 5, 6, 7, 8};

bool isZero(const SampleSums& s) {
  return s.count == 0 && s.invalid == 0 && s.minimum == 0 && s.maximum == 0 && s.sum == 0 && s.sumOfSquares == 0 &&
         s.weight == 0 && s.weightedSum == 0;
}

TEST(ScanStatistics, ResetKeepsSettingsAndHistograms) {
  ScanStatistics statistics;
  HistogramStatistics* const blocks[] = {&statistics.distance, &statistics.intensity, &statistics.incidence};
  for (const std::size_t bins : {0U, 100U, 5000U}) {
    for (auto* block : blocks) *block = {0.5, kSums, {-1, 1}, 9, {{2.5, 3}}, std::vector<std::uint32_t>(bins, 7)};
    statistics.echoes = {0.5, kSums, {-1, 1}, 1.5, 9, {{1, 2}}};
    statistics.reset();
    std::vector<std::uint32_t> histogram(std::min<std::size_t>(bins, 2048), 7);
    histogram.resize(2048);
    for (const auto* block : blocks) {
      EXPECT_TRUE(isZero(block->sums) && block->outliers == 0 && block->frequentValues.empty());
      EXPECT_TRUE(block->unit == 0.5 && block->range.lowest == -1 && block->range.highest == 1);
      EXPECT_EQ(block->histogram, histogram);
    }
    const CountStatistics& echoes = statistics.echoes;
    EXPECT_TRUE(isZero(echoes.sums) && echoes.outliers == 0 && echoes.counts.empty());
    EXPECT_TRUE(echoes.unit == 0.5 && echoes.range.lowest == -1 && echoes.range.highest == 1 && echoes.expected == 1.5);
  }
}

}  // namespace
