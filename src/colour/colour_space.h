#pragma once

// Conversions between sRGB, CIE XYZ and CIE 1976 L*a*b*. XYZ and L* are on the 0..100 scale.
// Nothing is refused and nothing clamped, unless stated: what is out of range is converted as it
// stands.

#include <cmath>

#include "double_matrix.h"
#include "greycard/types.h"
#include "matrix3.h"
#include "srgb_transfer.h"

namespace greycard {

/// White of the conversions of single colours. The sRGB to XYZ matrix beside it has the white
/// (95.05, 100, 108.9) built in; the difference is deliberate and leaves a* and b* of sRGB white
/// slightly off 0.
inline constexpr Vector3 kLabWhite{95.04, 100.0, 108.89};

/// Linear sRGB to XYZ in percent.
inline constexpr Matrix3 kSRgbToXyz100{
    {{41.24, 35.76, 18.05}, {21.26, 71.52, 7.22}, {1.93, 11.92, 95.05}}};
/// XYZ on the 0..1 scale to linear sRGB.
inline constexpr Matrix3 kXyzToSRgb{
    {{3.2406, -1.5372, -0.4986}, {-0.9689, 1.8758, 0.0415}, {0.0557, -0.2040, 1.0570}}};

/// XYZ in percent of a linear colour, by the matrix for the 0..1 scale.
inline Vector3 rgbToXyz100(const Matrix3& rgbToXyz, const Vector3& rgb) {
  const Vector3 xyz = multiply(rgbToXyz, rgb);
  return {xyz[0] * 100.0, xyz[1] * 100.0, xyz[2] * 100.0};
}

/// L*, a*, b* of an encoded sRGB colour, nominally 0..1. Cube root shortened to the power
/// 0.33333333, deliberately.
Vector3 sRGB_to_CIELab(const Vector3& sRGB);

/// Encoded sRGB of a colour in L*a*b*.
Vector3 CIELab_to_sRGB(const Vector3& lab);

/// XYZ of a colour in L*a*b*, with the cube's linear part below f = 0.206893.
Vector3 CIELab_to_XYZ(const Vector3& lab, const Vector3& white = kLabWhite);

/// f(t) of L*a*b* is a cube root above this value of t, and a straight line of this slope below.
inline constexpr double kLabRootAboveT = 0.008856, kLabLinearSlope = 7.787;

/// f(t) with the full-precision cube root: ISO/CIE 11664-4, constants as commonly printed.
inline double labF(double t) {
  return t > kLabRootAboveT ? std::cbrt(t) : kLabLinearSlope * t + 16.0 / 116.0;
}

/// L*, a*, b* of one XYZ colour relative to a white.
inline Vector3 XYZ_to_CIELab(const Vector3& xyz, const Vector3& white) {
  const double fx = labF(xyz[0] / white[0]);
  const double fy = labF(xyz[1] / white[1]);
  const double fz = labF(xyz[2] / white[2]);
  return {116.0 * fy - 16.0, 500.0 * (fx - fy), 200.0 * (fy - fz)};
}

/// The same for an n x 3 table and a 1 x 3 white. \throws ShapeError for other column counts
CDoubleMatrix XYZ2Lab(const CDoubleMatrix& xyz, const CDoubleMatrix& white);

/// White-balanced camera RGB (n x 3, 0..1) to L*a*b*: camera gamma, matrix, clip to 0..1, then
/// sRGB_to_CIELab row by row into pLab (n x 3 afterwards).
/// \param gamma_step      the gamma grid, m x 1
/// \param gamma_LUT_Norm  the curves over it, m x 3: columns R, G, B, 0..1
/// \param M_rgb2srgb      camera to sRGB, 3 x 3; a colour is multiplied by its transpose
void RGB_to_CIELAB(CDoubleMatrix& pLab, const CDoubleMatrix& RGB_wb_D65,
                   const CDoubleMatrix& gamma_step, const CDoubleMatrix& gamma_LUT_Norm,
                   const CDoubleMatrix& M_rgb2srgb);

}  // namespace greycard
