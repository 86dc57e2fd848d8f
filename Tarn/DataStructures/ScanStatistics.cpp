#include "Tarn/DataStructures/ScanStatistics.h"

namespace Tarn::DataStructures {
namespace {

void resetBlock(CountStatistics& block) {
  block.sums = {};
  block.outliers = 0;
  block.counts.clear();
}

void resetBlock(HistogramStatistics& block) {
  block.sums = {};
  block.outliers = 0;
  block.frequentValues.clear();
  block.histogram.resize(ScanStatistics::kHistogramBins);
}

}  // namespace

void ScanStatistics::reset() {
  // First what may throw.
  for (HistogramStatistics* const block : {&distance, &intensity, &incidence}) block->histogram.reserve(kHistogramBins);
  resetBlock(distance);
  resetBlock(intensity);
  resetBlock(echoes);
  resetBlock(incidence);
}

}  // namespace Tarn::DataStructures
