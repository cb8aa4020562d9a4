#pragma once

#include <array>
#include <cstddef>
#include <vector>

namespace greycard {

/// Points of a camera gamma curve, at 0, 1/255, ... 1.
inline constexpr std::size_t kGammaPoints = 256;
using CameraCurve = std::array<double, kGammaPoints>;

/// 0, 1/255, ... 1.
CameraCurve gammaGrid();

/// The camera's three gamma curves as clamped cubic splines on the gamma grid, ready for many
/// look-ups: the values are those of interp1_gamma over the grid, to rounding (about 1e-15).
class GammaStage {
 public:
  /// R, G, B with full scale 1.
  explicit GammaStage(const std::array<CameraCurve, 3>& curves);

  /// The curve of channel 0..2 at x in 0..1.
  double at(std::size_t channel, double x) const {
    const std::size_t segment = segmentOf(x);
    const Cubic& c = cubics_[channel * kSegments + segment];
    const double t = (x - grid_[segment]) * (kGammaPoints - 1);
    return c[0] + t * (c[1] + t * (c[2] + t * c[3]));
  }
  /// The curve's slope there.
  double slope(std::size_t channel, double x) const {
    const std::size_t segment = segmentOf(x);
    const Cubic& c = cubics_[channel * kSegments + segment];
    const double t = (x - grid_[segment]) * (kGammaPoints - 1);
    return (kGammaPoints - 1) * (c[1] + t * (2.0 * c[2] + t * 3.0 * c[3]));
  }

 private:
  static constexpr std::size_t kSegments = kGammaPoints - 1;
  using Cubic = std::array<double, 4>;  // ascending powers of t, 0..1 within a segment

  // The last segment that doesn't start above x, which bisection finds too: the rounded product is
  // off by one at most. NaN gives the last segment.
  std::size_t segmentOf(double x) const {
    const std::size_t guess = x < 1.0 ? static_cast<std::size_t>(x * kSegments) : kSegments - 1;
    if (grid_[guess] > x) return guess - 1;
    return guess + 1 < kSegments && grid_[guess + 1] <= x ? guess + 1 : guess;
  }

  CameraCurve grid_;
  std::vector<Cubic> cubics_;  // 255 segments of R, then G, then B
};

}  // namespace greycard
