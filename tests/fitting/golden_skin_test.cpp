// Features of synthetic skin with the engine's own matrices and tone curve, as a text beside this
// file.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "golden.h"
#include "skin_calibrate.h"
#include "skin_color_lib.h"
#include "spectral_tables.h"
#include "text.h"

namespace greycard {
namespace {

// As a sensor of three narrow bands sees the chart.
CDoubleMatrix chart(double red, double blue, double scale) {
  const CDoubleMatrix bands = chartReflectances(CDoubleMatrix(450.0, 75.0, 600.0));
  CDoubleMatrix rgb(24, 3);
  for (std::int32_t i = 0; i < 24; ++i) {
    rgb[i][0] = scale * red * bands[2][i];
    rgb[i][1] = scale * bands[1][i];
    rgb[i][2] = scale * blue * bands[0][i];
  }
  return rgb;
}

std::string everySome(const CDoubleMatrix& features) {
  std::string text;
  for (std::int32_t i = 0; i < features.rows(); i += 119)
    text += formatGeneral(features[i][0]) + " " + formatGeneral(features[i][1]) + " " +
            formatGeneral(features[i][2]) + "\n";
  return text;
}

TEST(GoldenSkin, OfTheEnginesDefaultsAndOfThreeMatrices) {
  SkinCalibrate engine;
  engine.init_parameters();
  CDoubleMatrix d65 = chart(0.6, 0.7, 1.0), a = chart(1.1, 0.3, 1.0), f = chart(0.8, 0.5, 1.0);
  std::string text = everySome(engine.calibrate_skin_color(d65, a, f, 0));
  CDoubleMatrix m(3, 3), ofA(3, 3), ofD65(3, 3), gamma(3, 1);
  m.Init3x3(1.4, -0.3, -0.1, -0.2, 1.3, -0.1, 0.0, -0.4, 1.4);
  ofA.Init3x3(1.8, -0.7, -0.1, -0.3, 1.5, -0.2, -0.1, -0.9, 2.0);
  ofD65.Init3x3(1.2, -0.1, -0.1, -0.1, 1.2, -0.1, 0.1, -0.3, 1.2);
  engine.updateColorCorrectionMatrix(m, &ofA, &ofD65);
  gamma[1][0] = 800;
  gamma[2][0] = 1023;
  engine.updateGammaMatrix(gamma, 10);
  CDoubleMatrix d65Codes = chart(0.6, 0.7, 4095), aCodes = chart(1.1, 0.3, 4095);
  CDoubleMatrix fCodes = chart(0.8, 0.5, 4095);
  text += "three matrices, 12 bits\n";
  text += everySome(engine.calibrate_skin_color(d65Codes, aCodes, fCodes, 12));
  for (std::int32_t i = 0; i < 24; ++i) EXPECT_NEAR(aCodes[i][0], a[i][0], 1e-12);  // in place
  // Through the library, which has a matrix of its own for YCbCr.
  SkinColorLib lib;
  lib.GetMCCRGB_D65() = d65, lib.GetMCCRGB_A() = a, lib.GetMCCRGB_T84() = f;
  lib.GetCCM_T84() = m, lib.GetCCM_A() = ofA, lib.GetCCM_D65() = ofD65;
  for (std::int32_t i = 0; i < 256; ++i) lib.GetGammaTable()[i][0] = std::sqrt(i / 255.0);
  for (const bool single : {false, true}) {
    const auto map = lib.Calibrate(single);
    EXPECT_EQ((std::array{map.width, map.height, map.enabled_dump}), (std::array{1, 1, 0}));
    CDoubleMatrix features(map.count, 3);
    for (std::size_t i = 0; i < map.h.size(); ++i) {
      const std::array row{map.h[i], map.s[i], map.y[i]};
      std::copy(row.begin(), row.end(), features[static_cast<std::int32_t>(i)]);
    }
    text += single ? "one matrix for all lights\n" : "one matrix for each light\n";
    text += everySome(features);
  }
  expectGolden("fitting/golden/skin.txt", text);
}

}  // namespace
}  // namespace greycard
