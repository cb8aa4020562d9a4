#include "lightness_reach.h"

#include <algorithm>
#include <vector>

#include "brent.h"

namespace greycard {
namespace {

// L* rises or falls with the factor throughout, unless the test colour has components of both
// signs: their shares grow at different rates.
bool isMonotone(const Vector3& testRGB) {
  const auto [least, most] = std::ranges::minmax(testRGB);
  return least >= 0.0 || most <= 0.0;
}

}  // namespace

std::optional<double> nearestWhereNoneReaches(const MinSearchRun& run) {
  const double target = lightness(run.m_targetRGB);
  const auto excess = [&](double factor) {
    const Vector3& test = run.m_testRGB;
    return lightness({factor * test[0], factor * test[1], factor * test[2]}) - target;
  };
  // With one sign throughout, how far L* is off is the excess without its sign.
  const bool tooDark = excess(kLeastFactor) < 0.0;
  const auto off = [&](double factor) { return tooDark ? -excess(factor) : excess(factor); };

  struct Sample {
    double factor, off;
  };
  const int steps = isMonotone(run.m_testRGB) ? 1 : 1000;
  std::vector<Sample> samples;
  for (int i = 0; i <= steps; ++i) {
    const double factor = kLeastFactor + (kMostFactor - kLeastFactor) * i / steps;
    samples.push_back({factor, off(factor)});
  }
  // Of a colour too dark to change, the largest factor is as near as any.
  if (tooDark) std::ranges::reverse(samples);
  const auto nearest = std::ranges::min_element(samples, {}, &Sample::off);
  if (nearest->off <= kLightnessTolerance) return std::nullopt;
  if (nearest == samples.begin() || nearest + 1 == samples.end()) return nearest->factor;
  const Sample &before = nearest[-1], &after = nearest[1];
  const LineMinimum best = brent(
      off, {before.factor, nearest->factor, after.factor, before.off, nearest->off, after.off});
  if (best.value <= kLightnessTolerance) return std::nullopt;
  return best.x;
}

}  // namespace greycard
