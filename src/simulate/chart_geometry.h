#pragma once

#include "greycard/chart_simulator.h"

namespace greycard {

/// Chart coordinates (u, v) in pitches: patch row r, column c of the upright chart fills
/// |u - c - 0.5| <= kHalfPatch, |v - r - 0.5| <= kHalfPatch; the dark frame reaches kMargin beyond
/// 0 <= u <= 6, 0 <= v <= 4.
inline constexpr double kHalfPatch = 0.435, kMargin = 0.12;

/// The projective mapping between the chart and the picture.
class ChartGeometry {
 public:
  /// A pinhole camera looks at the chart, which is yawed and tilted about its own axes and then
  /// rotated in the picture; scale and shift fit it as the settings say.
  explicit ChartGeometry(const SimulationSettings& settings);

  Point2 toPicture(const Point2& chart) const;
  /// (u w, v w, w) = toChart() * (x, y, 1), with w > 0 wherever the chart's plane is in view.
  const Matrix3& toChart() const { return m_toChart; }
  /// Fills centres, corners, pitch, patchSide, sideRatio and turnDeg.
  void describe(SimulationTruth& truth) const;

 private:
  Matrix3 m_toPicture{}, m_toChart{};
};

}  // namespace greycard
