// Features of synthetic skin with the engine's own matrices and tone curve, as a text beside this
// file.

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <vector>

#include "golden.h"
#include "greycard/skin_color_helper.h"
#include "matrix_functions.h"
#include "skin_calibrate.h"
#include "skin_color_lib.h"
#include "skin_defaults.h"
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

std::vector<double> channel(const CDoubleMatrix& rgb, std::int32_t c) {
  const CDoubleMatrix column = submat_col(rgb, c, c);
  return {column.data(), column.data() + column.size()};
}

std::string line(double h, double s, double y) {
  return formatGeneral(h) + " " + formatGeneral(s) + " " + formatGeneral(y) + "\n";
}

std::string everySome(const CDoubleMatrix& features) {
  std::string text;
  for (std::int32_t i = 0; i < features.rows(); i += 119)
    text += line(features[i][0], features[i][1], features[i][2]);
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
  std::vector<std::int32_t> codes;
  for (std::int32_t i = 0; i < 256; ++i) {
    codes.push_back(static_cast<std::int32_t>(std::lround(65535 * std::sqrt(i / 255.0))));
    lib.GetGammaTable()[i][0] = codes.back() / 65535.0;
  }
  const auto map = lib.Calibrate(false);
  EXPECT_EQ((std::array{map.width, map.height, map.enabled_dump}), (std::array{1, 1, 0}));
  text += "one matrix for each light\n";
  for (std::size_t i = 0; i < map.h.size(); i += 119) text += line(map.h[i], map.s[i], map.y[i]);
  // Through the helper: the last matrix for all lights.
  SkinColorHelper helper;
  helper.SetMCCRGBValues_D65(channel(d65, 0), channel(d65, 1), channel(d65, 2));
  helper.SetMCCRGBValues_A(channel(a, 0), channel(a, 1), channel(a, 2));
  helper.SetMCCRGBValues_T84(channel(f, 0), channel(f, 1), channel(f, 2));
  helper.SetCCMValues_T84({{{1.4, -0.3, -0.1}, {-0.2, 1.3, -0.1}, {0.0, -0.4, 1.4}}});
  helper.SetGammaTable(codes, 16);
  helper.Calibrate();
  text += "one matrix for all lights\n";
  for (std::size_t i = 0; i < helper.GetLowerData()->size(); i += 119) {
    const auto& point = (*helper.GetLowerData())[i];
    text += line(point.h, point.s, point.y);
    const auto& [r, g, b] = (*helper.GetEncodedColours())[i];
    EXPECT_NEAR(0.299F * r + 0.587F * g + 0.114F * b, point.y, 1e-6F);
  }
  text += "default tone curve\n";
  for (const std::uint8_t code : kDefaultSkinGamma) text += std::to_string(code) + "\n";
  expectGolden("fitting/golden/skin.txt", text);
}

}  // namespace
}  // namespace greycard
