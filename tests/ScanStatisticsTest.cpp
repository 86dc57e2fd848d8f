#include "Tarn/DataStructures/ScanStatistics.h"

#include <gtest/gtest.h>

namespace {

using namespace Tarn::DataStructures;

void fill(HistogramStatistics& block, std::size_t bins) {
  block.unit = 0.5;
  block.sums = {1, 2, 3, 4, 5, 6, 7, 8};
  block.range = {-1, 1};
  block.outliers = 9;
  block.frequentValues[2.5] = 3;
  block.histogram.resize(bins, 7);
}

bool isZero(const SampleSums& sums) {
  return sums.count == 0 && sums.invalid == 0 && sums.minimum == 0 && sums.maximum == 0 && sums.sum == 0 &&
         sums.sumOfSquares == 0 && sums.weight == 0 && sums.weightedSum == 0;
}

void expectReset(const HistogramStatistics& block, std::size_t bins) {
  EXPECT_TRUE(isZero(block.sums));
  EXPECT_EQ(block.outliers, 0U);
  EXPECT_TRUE(block.frequentValues.empty());
  EXPECT_EQ(block.unit, 0.5);
  EXPECT_EQ(block.range.lowest + block.range.highest * 3, 2.0);
  std::vector<std::uint32_t> histogram(std::min<std::size_t>(bins, 2048), 7);
  histogram.resize(2048);
  EXPECT_EQ(block.histogram, histogram);
}

TEST(ScanStatistics, ResetKeepsSettingsAndHistograms) {
  static_assert(sizeof(SampleSums) == 64);
  static_assert(sizeof(decltype(HistogramStatistics::frequentValues)::value_type) == 16);
  static_assert(sizeof(decltype(CountStatistics::counts)::value_type) == 8);
  ScanStatistics statistics;
  fill(statistics.distance, 0);
  fill(statistics.intensity, 100);
  fill(statistics.incidence, 5000);
  statistics.echoes = {0.5, {1, 2, 3, 4, 5, 6, 7, 8}, {-1, 1}, 1.5, 9, {{1, 2}}};
  for (int again = 0; again < 2; ++again) {
    statistics.reset();
    expectReset(statistics.distance, 0);
    expectReset(statistics.intensity, 100);
    expectReset(statistics.incidence, 5000);
    EXPECT_TRUE(isZero(statistics.echoes.sums));
    EXPECT_TRUE(statistics.echoes.counts.empty());
    EXPECT_EQ(statistics.echoes.outliers, 0U);
    EXPECT_EQ(statistics.echoes.expected, 1.5);
    EXPECT_EQ(statistics.echoes.unit, 0.5);
    EXPECT_EQ(statistics.echoes.range.highest, 1);
  }
}

}  // namespace
