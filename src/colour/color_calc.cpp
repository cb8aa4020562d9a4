#include "color_calc.h"

#include "cie_xyz.h"
#include "colour_space.h"
#include "matrix_functions.h"
#include "spectral_tables.h"
#include "table_conversion.h"
#include "white_adaptation.h"

namespace greycard {
namespace {

// Adobe RGB (1998), D65.
constexpr Matrix3 kAdobeRgbToXyz{
    {{0.57667, 0.18556, 0.18823}, {0.29734, 0.62736, 0.07529}, {0.02703, 0.07069, 0.99134}}};
constexpr Matrix3 kXyzToAdobeRgb{
    {{2.04159, -0.56501, -0.34473}, {-0.96924, 1.87597, 0.04156}, {0.01344, -0.11836, 1.01517}}};

struct RgbMatrices {
  Matrix3 rgbToXyz{}, xyzToRgb{};
};

RgbMatrices matricesOf(std::int32_t rgbType, const std::optional<Matrix3>& customRgbToXyz,
                       const std::optional<Matrix3>& customXyzToSRgb) {
  switch (rgbType) {
    case 0:
    case 2:
      return {kRgbToXyz, kXyzToRgb};
    case 1:
      return {kAdobeRgbToXyz, kXyzToAdobeRgb};
    case 3:
      if (customRgbToXyz && customXyzToSRgb) return {*customRgbToXyz, *customXyzToSRgb};
      return {kDefaultCustomRgbToXyz, kDefaultCustomXyzToSRgb};
    default:
      return {};
  }
}

Vector3 perfectReflector(Illum light, const CDoubleMatrix& gridNm, const CDoubleMatrix& observer) {
  return toVector3(CIE_XYZ(illuminantSpectrum(light, gridNm), observer, mones(gridNm.rows(), 1)));
}

void adaptRows(PatchTable& xyz, const Vector3& from, const Vector3& to) {
  const DeltaECWhiteAdapt adapt(from, to, 1.0);
  for (Vector3& row : xyz) adapt.AdaptXYZ(row, Vector3(row));
}

}  // namespace

Vector3 whitePoint(Illum light) {
  const auto grid = wavelengthGrid();
  return perfectReflector(light, grid, observerFunctions(grid));
}

ColorCalc::ColorCalc(Illum light, std::int32_t rgbType,
                     const std::optional<Matrix3>& customRgbToXyz,
                     const std::optional<Matrix3>& customXyzToSRgb)
    : light_(light),
      wavelengthNm_(wavelengthGrid()),
      spectrum_(illuminantSpectrum(light, wavelengthNm_)),
      observer_(observerFunctions(wavelengthNm_)),
      reflectances_(chartReflectances(wavelengthNm_)) {
  const auto matrices = matricesOf(rgbType, customRgbToXyz, customXyzToSRgb);
  rgbToXyz_ = matrices.rgbToXyz;
  xyzToRgb_ = matrices.xyzToRgb;
  whitePoint_ = rgbToXyz100(rgbToXyz_, {1.0, 1.0, 1.0});

  const auto d65White = perfectReflector(illum_D65, wavelengthNm_, observer_);
  const auto lightWhite = perfectReflector(light, wavelengthNm_, observer_);
  targetXyz_ = toPatchTable(CIE_XYZ(spectrum_, observer_, reflectances_));
  // Lights that D65 stands for give its table to the bit.
  if (lightWhite != d65White) adaptRows(targetXyz_, lightWhite, d65White);
  for (std::size_t i = 0; i < kPatchCount; ++i)
    targetLab_[i] = XYZ_to_CIELab(targetXyz_[i], d65White);
}

}  // namespace greycard
