#pragma once

// Means of the part of a histogram between two percentiles. The searches are inline: an evaluation
// of the luma-target rule makes up to eighteen of them per image.

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace greycard {

/// A cumulative histogram with what it takes to begin a search beside its end: the result is that
/// of the search through all bins, also for a table that decreases somewhere.
class PercentileGuide {
 public:
  struct Bins {
    int lo, hi;
  };
  explicit PercentileGuide(std::span<const double, 256> histCDF);

  /// The bins that a search for pct may begin with.
  Bins around(double pct) const {
    if (!m_usable || !(pct >= 0.0 && pct <= 1.0)) return {0, 255};
    const auto step = static_cast<std::size_t>(pct * kSteps);
    const int below = m_firstFrom[step], above = m_firstFrom[step + 1];
    return {below > 0 ? below - 1 : 0, above > 0 ? above : 1};
  }

 private:
  static constexpr int kSteps = 256;  // a power of two, so that the steps are exact
  bool m_usable;
  // The first bin whose entry is at least i / kSteps, or the last bin. Two more for pct 1.
  std::array<std::uint8_t, kSteps + 2> m_firstFrom;
};

/// Where in a cumulative table a percentile lies: in bin `binIdx`, at the share `partialCount`
/// (0..1) of what that bin holds.
///
/// \param data   datacount (at least 2) non-decreasing entries, the last nominally 1
/// \param start  the bins to begin with, from the table's guide; all of them without one
inline void GetHistPercentileInDetail(double pct, const double* data, int datacount, int& binIdx,
                                      double& partialCount, PercentileGuide::Bins start) {
  if (pct < data[0]) {
    binIdx = 0;
    partialCount = data[0] > 0.0 ? (pct > 0.0 ? pct : 0.0) / data[0] : 0.0;
    return;
  }
  if (pct > 1.0) {
    binIdx = datacount - 1;
    partialCount = 1.0;
    return;
  }
  auto [lo, hi] = start;
  while (lo < hi - 1) {
    const int mid = lo + (hi - lo) / 2;
    if (pct > data[mid])
      lo = mid;
    else
      hi = mid;
  }
  const double held = data[hi] - data[lo];
  binIdx = hi;
  partialCount = held > 0.0 ? (pct - data[lo]) / held : 0.0;
}
inline void GetHistPercentileInDetail(double pct, const double* data, int datacount, int& binIdx,
                                      double& partialCount) {
  GetHistPercentileInDetail(pct, data, datacount, binIdx, partialCount, {0, datacount - 1});
}

/// Mean bin of the pixels between two percentiles that differ.
///
/// \param chnIdx       the channel; the tables are already that channel's, so it is not used
/// \param weightedCDF  256 entries: cumulative sum of bin times share
/// \param histCDF      256 entries: cumulative share
/// \param guide        made of histCDF
double GetBHistAvgForPctRange(int chnIdx, double startPct, double endPct,
                              std::span<const double, 256> weightedCDF,
                              std::span<const double, 256> histCDF, const PercentileGuide& guide);

}  // namespace greycard
