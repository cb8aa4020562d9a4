#pragma once

// Charts whose right answer is known, for tests and benchmarks of the fit.

#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

#include "color_calc.h"
#include "colour_space.h"
#include "greycard/color_correction_settings.h"
#include "matrix_functions.h"
#include "srgb_transfer.h"
#include "table_conversion.h"

namespace greycard::fixture {

/// A 14-bit camera gamma table with the sRGB curve: an entry over 62.4 * 255 is the encoded value.
inline std::vector<std::int32_t> srgbGammaTable() {
  std::vector<std::int32_t> table(256);
  for (std::size_t i = 0; i < table.size(); ++i)
    table[i] = static_cast<std::int32_t>(
        std::lround(62.4 * 255.0 * sRGBEncode(static_cast<double>(i) / 255.0)));
  return table;
}

/// L*a*b* by the plain matrix functions, step by step: what a camera with matrix m makes of the
/// chart.
inline CDoubleMatrix slowModel(const CDoubleMatrix& balancedRgb, const CDoubleMatrix& m,
                               const CDoubleMatrix& gammaCurve, const CDoubleMatrix& rgbToXyz,
                               const CDoubleMatrix& white) {
  CDoubleMatrix grid(256, 1);
  for (std::int32_t i = 0; i < 256; ++i) grid[i][0] = i / 255.0;
  CDoubleMatrix rgb = mclip(mmABt(balancedRgb, m), 0.0, 1.0);
  rgb = interp1_gamma(grid, gammaCurve, gammaCurve, gammaCurve, rgb);
  for (std::int32_t i = 0; i < rgb.rows(); ++i)
    for (std::int32_t c = 0; c < 3; ++c) rgb[i][c] = sRGBDecode(rgb[i][c]);
  return XYZ2Lab(MatrixMultiply(mmABt(rgb, rgbToXyz), 100.0), white);
}

inline CDoubleMatrix curveOf(const std::vector<std::int32_t>& table) {
  CDoubleMatrix curve(256, 1);
  for (std::int32_t i = 0; i < 256; ++i)
    curve[i][0] = table[static_cast<std::size_t>(i)] / 62.4 / 255.0;
  return curve;
}

/// The true matrix, gains and exposure of a camera, and the settings with the chart as it measures
/// it.
struct KnownCamera {
  Matrix3 matrix{{{1.6, -0.4, -0.2}, {-0.25, 1.5, -0.25}, {0.05, -0.55, 1.5}}};
  Vector3 gains{1.8, 1.0, 1.5};
  double exposure = 1.25;
};

/// The chart under D65 with neutral greys and all colours within 0.02..0.65 of sRGB, as the camera
/// measures it; its reference is what the right answer makes of it, so the error can reach 0.
inline ColorCorrectionSettings measuredBy(const KnownCamera& camera) {
  ColorCorrectionSettings settings(0, illum_D65, 0);
  const CDoubleMatrix toXyz = toMatrix(kRgbToXyz);
  CDoubleMatrix rgb =
      mclip(mmABt(MatrixMultiply(toMatrix(ColorCalc(illum_D65, 0).targetXyz()), 0.01), minv(toXyz)),
            0.02, 0.65);
  for (std::int32_t i = 18; i < 24; ++i) rgb[i][0] = rgb[i][2] = rgb[i][1];
  settings.m_macbethData.m_RefLab =
      toPatchTable(slowModel(rgb, meye(3), curveOf(srgbGammaTable()), toXyz,
                             MatrixMultiply(mmABt(mones(1, 3), toXyz), 100.0)));
  settings.m_macbethData.m_RGB = toPatchTable(mmABt(rgb, minv(toMatrix(camera.matrix))));
  for (Vector3& patch : settings.m_macbethData.m_RGB)
    for (std::size_t c = 0; c < 3; ++c) patch[c] /= camera.gains[c] * camera.exposure;
  return settings;
}

/// The chart as a sensor with bell-shaped, overlapping sensitivities sees it under a light, greys
/// measured at equal G. Noise is 1 % of the signal and 0.1 % of full scale.
inline ColorCorrectionSettings seenBySensor(Illum light) {
  constexpr double kPeakNm[] = {600.0, 535.0, 455.0}, kWidthNm[] = {38.0, 42.0, 32.0};
  ColorCorrectionSettings settings(0, light, 0);
  const ColorCalc set(light, 0);
  CDoubleMatrix sensor(set.wavelengthNm().rows(), 3);
  for (std::int32_t i = 0; i < sensor.rows(); ++i)
    for (std::int32_t c = 0; c < 3; ++c) {
      const double z = (set.wavelengthNm()[i][0] - kPeakNm[c]) / kWidthNm[c];
      sensor[i][c] = set.spectrum()[i][0] * std::exp(-0.5 * z * z);
    }
  CDoubleMatrix rgb = MatrixMultiply(MatrixTranspose(set.reflectances()), sensor);
  rgb *= 0.55 / rgb[18][1];
  settings.m_macbethData.m_RGB = toPatchTable(rgb);
  for (std::size_t i = 0; i < kPatchCount; ++i)
    for (std::size_t c = 0; c < 3; ++c)
      settings.m_macbethData.m_Noise[i][c] = 0.01 * settings.m_macbethData.m_RGB[i][c] + 0.001;
  return settings;
}

}  // namespace greycard::fixture
