#include "histogram_statistic.h"

#include <algorithm>

namespace greycard {
namespace {

double weightedCumulative(double pct, std::span<const double, 256> weightedCDF,
                          std::span<const double, 256> histCDF, const PercentileGuide& guide) {
  int bin = 0;
  double partial = 0.0;
  GetHistPercentileInDetail(pct, histCDF.data(), 256, bin, partial, guide.around(pct));
  const auto at = static_cast<std::size_t>(bin);
  const double previous = at > 0 ? weightedCDF[at - 1] : 0.0;
  return previous + (weightedCDF[at] - previous) * partial;
}

}  // namespace

PercentileGuide::PercentileGuide(std::span<const double, 256> histCDF)
    : m_usable(histCDF[0] >= 0.0 && std::is_sorted(histCDF.begin(), histCDF.end())) {
  std::size_t bin = 0;
  for (std::size_t i = 0; i < m_firstFrom.size(); ++i) {
    const double share = static_cast<double>(i) / kSteps;
    while (bin < 255 && histCDF[bin] < share) ++bin;
    m_firstFrom[i] = static_cast<std::uint8_t>(bin);
  }
}

double GetBHistAvgForPctRange(int /*chnIdx*/, double startPct, double endPct,
                              std::span<const double, 256> weightedCDF,
                              std::span<const double, 256> histCDF, const PercentileGuide& guide) {
  const double start = weightedCumulative(startPct, weightedCDF, histCDF, guide);
  const double end = weightedCumulative(endPct, weightedCDF, histCDF, guide);
  return (end - start) / (endPct - startPct);
}

}  // namespace greycard
