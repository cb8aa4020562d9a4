#pragma once

// The conversion of a measured chart to L*a*b* before any correction.

#include <array>
#include <cstdint>

#include "double_matrix.h"
#include "greycard/macbeth_chart_data.h"

namespace greycard {

/// Reference object of the evaluation: its fixed matrices, and the chart under four lights.
struct DeltaEColorCalc {
  /// Lights of referenceLab, in this order.
  static constexpr std::array kLights{illum_D65, illum_D50, illum_A, illum_TL84};

  DeltaEColorCalc();

  std::int32_t wavelengthCount = 0;
  CDoubleMatrix wavelengthNm;  ///< 400 to 700 nm by 5 nm
  CDoubleMatrix illuminants;   ///< 61 x 4, columns as kLights
  CDoubleMatrix observer;      ///< 61 x 3
  CDoubleMatrix reflectances;  ///< 61 x 24
  Matrix3 xyzToRgb, rgbToXyz, rgbToYCbCr;
  Matrix3 lumaDifference;                                 ///< rows Y, B - G, R - G
  Vector3 white;                                          ///< of RGB (1, 1, 1)
  std::array<PatchTable, kLights.size()> referenceLab{};  ///< adapted to D65

 private:
  void colordatabase();
  void Macbeth_XYZ_Lab();
};

/// L*, a*, b* of the chart's m_RGB, taken as linear sRGB in 0..1, relative to its own white. Values
/// outside 0..1 are converted as they stand; nothing else of the chart has any influence.
PatchTable evaluateMeasuredChart(const MacbethChartData& chart);

}  // namespace greycard
