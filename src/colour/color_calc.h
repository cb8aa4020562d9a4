#pragma once

// The reference set for one light: the chart's target colours from spectral data, and the RGB/XYZ
// matrices that the optimiser works with.

#include <cstdint>
#include <optional>

#include "double_matrix.h"
#include "greycard/illum.h"
#include "greycard/luma.h"
#include "greycard/types.h"

namespace greycard {

/// Selects the RGB/XYZ matrices: 0 and 2 sRGB, 1 Adobe RGB (1998), 3 custom, any other zeros.
using RGBType = std::int32_t;

/// ITU-T T.871, clause 7 (BT.601 luma), to four decimals.
inline constexpr Matrix3 kRgbToYCbCr{
    {kLumaShares, {-0.1687, -0.3313, 0.5}, {0.5, -0.4187, -0.0813}}};
/// sRGB, IEC 61966-2-1, to four decimals; white (95.05, 100, 108.9).
inline constexpr Matrix3 kRgbToXyz{
    {{0.4124, 0.3576, 0.1805}, {0.2126, 0.7152, 0.0722}, {0.0193, 0.1192, 0.9505}}};
inline constexpr Matrix3 kXyzToRgb{
    {{3.241, -1.5374, -0.4986}, {-0.9692, 1.876, 0.0416}, {0.0556, -0.204, 1.057}}};
/// What RGB type 3 uses unless both custom matrices are given.
inline constexpr Matrix3 kDefaultCustomRgbToXyz{
    {{0.433506, 0.292297, 0.211697}, {0.19676, 0.74413, 0.05911}, {0.004443, 0.07921, 1.103847}}};
inline constexpr Matrix3 kDefaultCustomXyzToSRgb{{{2.785111, -1.04309, -0.47827},
                                                  {-0.73975, 1.628611, 0.05466},
                                                  {0.041874, -0.11267, 0.903926}}};

/// The 24 patches as they look under the light after full adaptation (CAT02, D = 1) to D65, and the
/// matrices of an RGB space. Built once and then only read.
class ColorCalc {
 public:
  /// \param rgbType  0 and 2 sRGB, 1 Adobe RGB (1998), 3 the custom matrices when both are given;
  ///                 any other leaves both matrices zero, which makes every conversion zero
  ColorCalc(Illum light, RGBType rgbType,
            const std::optional<Matrix3>& customRgbToXyz = std::nullopt,
            const std::optional<Matrix3>& customXyzToSRgb = std::nullopt);

  Illum light() const { return light_; }
  /// The wavelength grid, 61 x 1; the light's spectrum, 61 x 1; the observer, 61 x 3; the patches,
  /// 61 x 24.
  const CDoubleMatrix& wavelengthNm() const { return wavelengthNm_; }
  const CDoubleMatrix& spectrum() const { return spectrum_; }
  const CDoubleMatrix& observer() const { return observer_; }
  const CDoubleMatrix& reflectances() const { return reflectances_; }
  /// The chart, Y = 100 for a perfect white, and its L*a*b* relative to the D65 white.
  const PatchTable& targetXyz() const { return targetXyz_; }
  const PatchTable& targetLab() const { return targetLab_; }
  /// T, RGB to XYZ on the 0..1 scale; Tinv, its inverse; the white point 100 T * (1, 1, 1).
  const Matrix3& rgbToXyz() const { return rgbToXyz_; }
  const Matrix3& xyzToRgb() const { return xyzToRgb_; }
  const Vector3& whitePoint() const { return whitePoint_; }

 private:
  Illum light_;
  CDoubleMatrix wavelengthNm_, spectrum_, observer_, reflectances_;
  PatchTable targetXyz_{}, targetLab_{};
  Matrix3 rgbToXyz_{}, xyzToRgb_{};
  Vector3 whitePoint_{};
};

}  // namespace greycard
