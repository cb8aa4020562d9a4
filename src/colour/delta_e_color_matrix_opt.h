#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "double_matrix.h"
#include "greycard/macbeth_chart_data.h"

namespace greycard {

/// A colour-matrix optimiser's set-up for three lights at once (D65, A, TL84). The evaluation of a
/// measured chart makes one and doesn't read it.
class DeltaEColorMatrixOpt {
 public:
  DeltaEColorMatrixOpt();

  /// Brings the measured RGB to the exposure of the reference.
  void Normalize();

  /// White-balance matrices and balanced RGB from lists of 0-based grey patches per light.
  void ColorMatrix_WB(const std::vector<std::int32_t>& d65Patches,
                      const std::vector<std::int32_t>& aPatches,
                      const std::vector<std::int32_t>& tl84Patches);

 private:
  struct Light {
    CDoubleMatrix measuredRgb, noise, referenceLab, balancedRgb;  // 24 x 3
    CDoubleMatrix whiteBalance;                                   // 3 x 3
  };
  std::array<Light, 3> lights_;
  CDoubleMatrix ccm_;

  friend void SetColorMatrixOpt(DeltaEColorMatrixOpt& cm, const MacbethChartData& macbethData);
};

/// The whole set-up: the chart's measurement and reference for each light, normalised and
/// white-balanced over the default grey patches.
/// \throws std::exception when the chart has no exposure gain
void SetColorMatrixOpt(DeltaEColorMatrixOpt& cm, const MacbethChartData& macbethData);

}  // namespace greycard
