// Features of synthetic skin: with the engine's own matrices and tone curve, as a text beside this
// file, and with others, worked here.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "golden.h"
#include "matrix_functions.h"
#include "skin_calibrate.h"
#include "skin_color_lib.h"
#include "skin_defaults.h"
#include "skin_weights.h"
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
  for (std::int32_t i = 0; i < 256; ++i)
    lib.GetGammaTable()[i][0] = std::round(65535 * std::sqrt(i / 255.0)) / 65535.0;
  const auto map = lib.Calibrate(false);
  EXPECT_EQ((std::array{map.width, map.height, map.enabled_dump}), (std::array{1, 1, 0}));
  text += "one matrix for each light\n";
  for (std::size_t i = 0; i < map.h.size(); i += 119) text += line(map.h[i], map.s[i], map.y[i]);
  text += "default tone curve\n";
  for (const std::uint8_t code : kDefaultSkinGamma) text += std::to_string(code) + "\n";
  expectGolden("fitting/golden/skin.txt", text);
}

// In single loops, as the engine's formulas read; so bright that balance and skin clip.
TEST(SkinCalibrate, AgreesWithPlainLoops) {
  SkinCalibrate engine;
  engine.init_parameters();
  CDoubleMatrix ofF(3, 3), ofA(3, 3), ycbcr(3, 3), line(2, 1);
  ofF.Init3x3(1.6, -0.5, -0.1, -0.2, 1.5, -0.3, 0.1, -0.6, 1.5);
  ofA.Init3x3(0.9, 0.1, 0.0, 0.0, 1.1, -0.1, 0.1, 0.0, 0.9);
  ycbcr.Init3x3(0.3, -0.2, 0.5, 0.6, -0.3, -0.4, 0.1, 0.5, -0.1);
  line[1][0] = 1.0;
  engine.updateColorCorrectionMatrix(ofF, &ofA, nullptr);
  engine.updateRGB2YCbCrMatrix(ycbcr);
  engine.updateGammaMatrix(line, 0);
  const CDoubleMatrix* const matrices[] = {&ofF, &ofA, &ofF};
  CDoubleMatrix charts[] = {chart(0.6, 0.7, 2.2), chart(1.1, 0.3, 1e-7), chart(0.8, 0.5, 0.9)};
  const CDoubleMatrix found = engine.calibrate_skin_color(charts[0], charts[1], charts[2], 0);
  const CDoubleMatrix weights = skinWeights();
  const std::int32_t skins = weights.rows();
  ASSERT_EQ(found.rows(), 9 * skins);
  for (std::int32_t light = 0; light < 3; ++light) {
    const CDoubleMatrix& rgb = charts[light];
    const double gains[] = {rgb[19][1] / rgb[19][0], 1.0, rgb[19][1] / rgb[19][2]};
    std::vector<Vector3> skin(static_cast<std::size_t>(skins));
    double largest = 0.0, smallest = 1.0;
    for (std::int32_t i = 0; i < skins; ++i)
      for (std::int32_t c = 0; c < 3; ++c) {
        double sum = 0.0;
        for (std::int32_t k = 0; k < 24; ++k) sum += weights[i][k] * rgb[k][c] * gains[c];
        sum = std::clamp(sum, 0.0, 1.0);
        skin[static_cast<std::size_t>(i)][static_cast<std::size_t>(c)] = sum;
        largest = std::max(largest, sum), smallest = std::min(smallest, sum);
      }
    const double factors[] = {std::min(0.01 / std::max(smallest, 1e-5), 1.0), 1.0,
                              std::max(0.85 / std::max(largest, 1e-5), 1.0)};
    for (std::int32_t i = 0; i < 3 * skins; ++i) {
      double y[3] = {};
      for (std::int32_t row = 0; row < 3; ++row) {
        double corrected = 0.0;
        for (std::int32_t c = 0; c < 3; ++c)
          corrected += (*matrices[light])[row][c] * factors[i / skins] *
                       skin[static_cast<std::size_t>(i % skins)][static_cast<std::size_t>(c)];
        for (std::int32_t c = 0; c < 3; ++c)
          y[c] += std::clamp(corrected, 0.0, 1.0) * ycbcr[row][c];
      }
      const double* const features = found[3 * skins * light + i];
      ASSERT_NEAR(features[0], y[1] / y[2], 1e-9 * std::abs(features[0])) << light << " " << i;
      ASSERT_NEAR(features[1], (std::abs(y[1]) + std::abs(y[2])) / 2.0 / y[0], 1e-9);
      ASSERT_NEAR(features[2], y[0], 1e-12);
    }
  }
}

// A float holds no more than 3.4e38.
TEST(SkinCalibrate, WhatIsBeyondAFloatIsInfiniteWithItsSign) {
  SkinColorLib lib;
  for (const CDoubleMatrix* matrix : {&lib.GetCCM_T84(), &lib.GetCCM_A(), &lib.GetCCM_D65()})
    EXPECT_EQ(*matrix, CDoubleMatrix(3, 3));  // to be filled in place
  lib.GetMCCRGB_D65() = lib.GetMCCRGB_A() = lib.GetMCCRGB_T84() = chart(0.6, 0.7, 1.0);
  lib.GetCCM_T84() = lib.GetCCM_A() = lib.GetCCM_D65() = meye(3);
  for (const double sign : {1.0, -1.0}) {
    for (std::int32_t i = 0; i < 256; ++i) lib.GetGammaTable()[i][0] = sign * i * 1e300;
    const auto map = lib.Calibrate(true);
    EXPECT_EQ(map.y[0], static_cast<float>(sign * HUGE_VAL));
    EXPECT_EQ(map.rgb[0][0], static_cast<float>(sign * HUGE_VAL));
    EXPECT_TRUE(std::isfinite(map.h[0]));
  }
}

}  // namespace
}  // namespace greycard
