#include "gamma_stage.h"

#include "matrix_functions.h"
#include "spline.h"

namespace greycard {

CameraCurve gammaGrid() {
  CameraCurve grid;
  for (std::size_t i = 0; i < kGammaPoints; ++i)
    grid[i] = static_cast<double>(i) / (kGammaPoints - 1.0);
  return grid;
}

GammaStage::GammaStage(const std::array<CameraCurve, 3>& curves) : grid_(gammaGrid()) {
  cubics_.reserve(3 * kSegments);
  CameraCurve y2;
  for (const CameraCurve& y : curves) {
    constexpr std::size_t n = kSegments;
    spline(grid_, y, endSlope(grid_[0], y[0], grid_[1], y[1]),
           endSlope(grid_[n - 1], y[n - 1], grid_[n], y[n]), y2);
    for (std::size_t i = 0; i < kSegments; ++i) {
      // The segment's cubic in t = (x - x0) / h, from its ends and second derivatives.
      const double h = grid_[i + 1] - grid_[i];
      const double m0 = y2[i] * h * h / 6.0, m1 = y2[i + 1] * h * h / 6.0;
      cubics_.push_back({y[i], y[i + 1] - y[i] - 2.0 * m0 - m1, 3.0 * m0, m1 - m0});
    }
  }
}

}  // namespace greycard
