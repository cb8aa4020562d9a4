#include "colour_space.h"

#include <algorithm>

#include "greycard/errors.h"
#include "matrix_functions.h"

namespace greycard {
namespace {

// Single colours use a shortened cube-root exponent and a shortened 16/116. Deliberate.
constexpr double kShortThird = 0.33333333;
constexpr double kShortOffset = 0.1379310344828;
constexpr double kLabRootAboveF = 0.206893;

double shortLabF(double t) {
  return t > kLabRootAboveT ? std::pow(t, kShortThird) : kLabLinearSlope * t + kShortOffset;
}

double inverseLabF(double f) {
  return f > kLabRootAboveF ? f * f * f : (f - kShortOffset) / kLabLinearSlope;
}

}  // namespace

Vector3 sRGB_to_CIELab(const Vector3& sRGB) {
  const Vector3 xyz =
      multiply(kSRgbToXyz100, {sRGBDecode(sRGB[0]), sRGBDecode(sRGB[1]), sRGBDecode(sRGB[2])});
  const double fx = shortLabF(xyz[0] / kLabWhite[0]);
  const double fy = shortLabF(xyz[1] / kLabWhite[1]);
  const double fz = shortLabF(xyz[2] / kLabWhite[2]);
  return {116.0 * fy - 16.0, 500.0 * (fx - fy), 200.0 * (fy - fz)};
}

Vector3 CIELab_to_XYZ(const Vector3& lab, const Vector3& white) {
  const double fy = (lab[0] + 16.0) / 116.0;
  const double fx = fy + lab[1] / 500.0;
  const double fz = fy - lab[2] / 200.0;
  return {inverseLabF(fx) * white[0], inverseLabF(fy) * white[1], inverseLabF(fz) * white[2]};
}

Vector3 CIELab_to_sRGB(const Vector3& lab) {
  const Vector3 xyz100 = CIELab_to_XYZ(lab);
  const Vector3 linear =
      multiply(kXyzToSRgb, {xyz100[0] / 100.0, xyz100[1] / 100.0, xyz100[2] / 100.0});
  return {sRGBEncode(linear[0]), sRGBEncode(linear[1]), sRGBEncode(linear[2])};
}

CDoubleMatrix XYZ2Lab(const CDoubleMatrix& xyz, const CDoubleMatrix& white) {
  if (xyz.cols() != 3 || white.rows() != 1 || white.cols() != 3)
    throw ShapeError("XYZ tables have three columns, and a white is one row of three");
  const Vector3 whiteXyz{white[0][0], white[0][1], white[0][2]};
  CDoubleMatrix table(xyz.rows(), 3);
  for (std::int32_t i = 0; i < xyz.rows(); ++i) {
    const auto lab = XYZ_to_CIELab({xyz[i][0], xyz[i][1], xyz[i][2]}, whiteXyz);
    std::copy(lab.begin(), lab.end(), table[i]);
  }
  return table;
}

void RGB_to_CIELAB(CDoubleMatrix& pLab, const CDoubleMatrix& RGB_wb_D65,
                   const CDoubleMatrix& gamma_step, const CDoubleMatrix& gamma_LUT_Norm,
                   const CDoubleMatrix& M_rgb2srgb) {
  const auto encoded =
      interp1_gamma(gamma_step, submat_col(gamma_LUT_Norm, 0, 0), submat_col(gamma_LUT_Norm, 1, 1),
                    submat_col(gamma_LUT_Norm, 2, 2), RGB_wb_D65);
  const auto sRGB = mclip(mmABt(encoded, M_rgb2srgb), 0.0, 1.0);
  if (sRGB.cols() != 3) throw ShapeError("a colour table and its matrix have three columns");
  pLab.Init(sRGB.rows(), 3);
  for (std::int32_t i = 0; i < sRGB.rows(); ++i) {
    const auto lab = sRGB_to_CIELab({sRGB[i][0], sRGB[i][1], sRGB[i][2]});
    std::copy(lab.begin(), lab.end(), pLab[i]);
  }
}

}  // namespace greycard
