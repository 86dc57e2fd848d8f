/// @file
/// The statistics of one scan's measurements.
#ifndef TARN_DATASTRUCTURES_SCANSTATISTICS_H_
#define TARN_DATASTRUCTURES_SCANSTATISTICS_H_

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

#include "Tarn/Export.h"

namespace Tarn::DataStructures {

/// Running sums over the samples of one measured quantity. With `count` 0 the other numbers mean nothing.
struct SampleSums {
  std::uint64_t count = 0;    ///< Valid samples.
  std::uint64_t invalid = 0;  ///< Samples without a usable value.
  double minimum = 0.0;       ///< Smallest valid sample.
  double maximum = 0.0;       ///< Largest valid sample.
  double sum = 0.0;           ///< Of the valid samples.
  double sumOfSquares = 0.0;  ///< Of the valid samples.
  double weight = 0.0;        ///< Sum of the samples' weights.
  double weightedSum = 0.0;   ///< Sum of sample times weight.
};

/// The range that a quantity can take on a device, and its unit. Settings, not results: `reset` leaves them alone.
struct ValueRange {
  double lowest = 0.0;   ///< In the quantity's unit.
  double highest = 0.0;  ///< In the quantity's unit.
};

/// Statistics of a quantity with a histogram.
struct HistogramStatistics {
  double unit = 1.0;                               ///< One raw step in the quantity's unit; `reset` leaves it alone.
  SampleSums sums;                                 ///< Over all samples.
  ValueRange range;                                ///< What the histogram's bins span.
  std::uint32_t outliers = 0;                      ///< Samples outside `range`.
  std::map<double, std::uint64_t> frequentValues;  ///< Value to number of samples.
  std::vector<std::uint32_t> histogram;            ///< Samples in each bin, bins of equal width.
};

/// Statistics of a quantity that takes few values, counted one by one.
struct CountStatistics {
  double unit = 1.0;                             ///< One raw step in the quantity's unit; `reset` leaves it alone.
  SampleSums sums;                               ///< Over all samples.
  ValueRange range;                              ///< What the quantity can take.
  double expected = 0.0;                         ///< The value that the device was set to; `reset` leaves it alone.
  std::uint32_t outliers = 0;                    ///< Samples outside `range`.
  std::map<std::int32_t, std::uint32_t> counts;  ///< Raw value to number of samples.
};

/// What is counted while a scan is read. A plain record, filled by whoever reads the scan.
///
/// Threads: as for any plain value.
struct ScanStatistics {
  /// Bins of every histogram after `reset`.
  static constexpr std::size_t kHistogramBins = 2048;

  HistogramStatistics distance;   ///< Metres from the device to the surface.
  HistogramStatistics intensity;  ///< Strength of the returned light.
  CountStatistics echoes;         ///< Echoes for each emitted pulse.
  HistogramStatistics incidence;  ///< Angle between beam and surface, in radians.

  /// Zeroes all sums and outliers and empties the maps, ready for the next scan. Units, ranges and the expected value
  /// stay.
  ///
  /// Every histogram gets exactly `kHistogramBins` bins: a longer one is cut, a shorter one extended with zeros. Bins
  /// that were there keep their counts, so histograms go on over several scans; clear them yourself if they should
  /// not. If allocation throws, everything is as before.
  TARN_API void reset();
};

}  // namespace Tarn::DataStructures

#endif  // TARN_DATASTRUCTURES_SCANSTATISTICS_H_
