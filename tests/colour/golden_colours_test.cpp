// The lights' chart values, the constants of the reference sets and some fits as texts beside this
// file.

#include <gtest/gtest.h>

#include "chart_fixture.h"
#include "delta_e_color_calc.h"
#include "golden.h"
#include "greycard/color_correction_utils.h"
#include "text.h"
#include "white_adaptation.h"

namespace greycard {
namespace {

std::string line(const char* name, std::span<const double> values) {
  return goldenLine(name, values, 8);
}

std::string line(const char* name, const Matrix3& matrix) {
  return line(name, std::span(matrix.front().data(), 9));
}

std::string rows(const PatchTable& table, int decimals) {
  std::string text;
  for (const Vector3& row : table)
    text += formatFixed(row[0], decimals) + " " + formatFixed(row[1], decimals) + " " +
            formatFixed(row[2], decimals) + "\n";
  return text;
}

TEST(GoldenColours, ChartUnderEachLight) {
  std::string text;
  for (const Illum light : {illum_D65, illum_A, illum_D50, illum_TL84, illum_Horizon}) {
    const ColorCalc set(light, 0);
    text += line(illumName(light), whitePoint(light));
    text += rows(set.targetXyz(), 5) + rows(set.targetLab(), 4);
  }
  expectGolden("colour/golden/lights.txt", text);
}

TEST(GoldenColours, Constants) {
  std::string text;
  for (const std::int32_t type : {-1, 0, 1, 2, 3, 4}) {
    const ColorCalc set(illum_D65, type);
    text += "type " + std::to_string(type) + line("\nT", set.rgbToXyz());
    text += line("Tinv", set.xyzToRgb()) + line("white", set.whitePoint());
  }
  const Matrix3 custom{{{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}};
  text += line("custom", ColorCalc(illum_D65, 3, custom, custom).xyzToRgb());
  text += line("only one custom", ColorCalc(illum_D65, 3, custom).rgbToXyz());
  text += line("YCbCr", kRgbToYCbCr);
  const DeltaEColorCalc set;
  text += line("Tinv", set.xyzToRgb) + line("T", set.rgbToXyz) + line("YCbCr", set.rgbToYCbCr);
  text += line("Y, B - G, R - G", set.lumaDifference) + line("white", set.white);
  for (std::size_t i = 0; i < 3; ++i) {
    Vector3 unit{}, cones;
    unit[i] = 1.0;
    DeltaECWhiteAdapt::XYZ2BFD(cones, unit);
    text += line("cones", cones);
    DeltaECWhiteAdapt({100, 80, 60}, {90, 100, 110}, 0.75).AdaptXYZ(cones, unit);
    text += line("adapted", cones);
  }
  const ColorCorrectionSettings settings(300, illum_LED, 2);
  text += line("custom T", settings.m_CustRGB2XYZ);
  text += line("custom Tinv", settings.m_CustXYZ2sRGB);
  text += line("defaults",
               std::array<double, 5>{settings.m_fNoiseRate, settings.m_fSaturation,
                                     1.0 * settings.m_nHueAccuracy, 1.0 * settings.m_nDeltaEMode,
                                     1.0 * settings.m_RGBtoXYZTransform});
  expectGolden("colour/golden/constants.txt", text);
  EXPECT_EQ(set.wavelengthCount, 61);
  for (std::size_t k = 0; k < 4; ++k) {
    const ColorCalc light(DeltaEColorCalc::kLights[k], 0);
    EXPECT_EQ(set.referenceLab[k], light.targetLab());
    const auto column = static_cast<std::int32_t>(k);
    EXPECT_EQ(submat_col(set.illuminants, column, column), light.spectrum());
  }
  EXPECT_EQ(set.observer, ColorCalc(illum_A, 0).observer());
  EXPECT_EQ(set.reflectances, ColorCalc(illum_A, 0).reflectances());
}

struct FitCase {
  Illum light;
  int mode, transform;
  double noiseRate, saturation;
  std::array<double, 7> adjustment;  // saturation of all, R, G, B; hue of R, G, B
  bool onlyPatch19;
};

// What a fit shows, step by step; and its steps for other pictures.
void expectShownAsToldStepByStep(const ColorCorrectionUtils& utils, const PatchTable& measured) {
  const std::vector<std::int32_t> gamma = fixture::srgbGammaTable();
  const CDoubleMatrix toXyz = toMatrix(kRgbToXyz);
  const PatchTable slow = toPatchTable(fixture::slowModel(
      toMatrix(utils.m_fit.m_balancedRGB), toMatrix(utils.m_ccm), fixture::curveOf(gamma), toXyz,
      MatrixMultiply(mmABt(mones(1, 3), toXyz), 100.0)));
  const PatchTable shown = utils.ShownLab(utils.m_fit.m_balancedRGB, utils.m_ccm);
  const ColorPipeline pipeline = utils.Pipeline();
  EXPECT_EQ(pipeline.m_ccm, utils.m_ccm);
  for (std::size_t c = 0; c < 3; ++c) {
    EXPECT_EQ(pipeline.m_gains[c], utils.m_gain * utils.m_wbGain[c]);
    EXPECT_NEAR(pipeline.m_gamma[c][100], gamma[100] / 62.4 / 255.0, 1e-15);
    for (std::size_t i = 0; i < kPatchCount; ++i) {
      EXPECT_NEAR(utils.m_fit.m_balancedRGB[i][c], measured[i][c] * pipeline.m_gains[c], 1e-12);
      EXPECT_NEAR(shown[i][c], slow[i][c], 1e-9);
    }
  }
}

TEST(GoldenColours, Fits) {
  const std::array<double, 7> neutral{1, 1, 1, 1, 0, 0, 0};
  const FitCase cases[] = {{illum_D65, 1, 0, 0.0, -1.0, neutral, false},
                           {illum_A, 0, 0, 0.3, -1.0, neutral, false},
                           {illum_TL84, 1, 1, 0.2, -1.0, neutral, false},
                           {illum_D50, 1, 2, 0.0, -1.0, {1.2, 1.2, 1.2, 1.2, 10, 0, 0}, false},
                           {illum_Horizon, 0, 3, 0.0, -1.0, {1.1, 1.1, 0.9, 1.3, 0, -5, 7}, false},
                           {illum_CoolWhite, 1, 0, 0.1, -1.0, {0.9, 1.2, 0.9, 0.9, 0, 0, 0}, true},
                           {illum_Lowlight, 1, 0, 0.0, 1.15, neutral, false}};
  std::string text;
  for (const FitCase& c : cases) {
    ColorCorrectionSettings settings = fixture::seenBySensor(c.light);
    settings.m_nDeltaEMode = c.mode;
    settings.m_RGBtoXYZTransform = c.transform;
    settings.m_fNoiseRate = c.noiseRate;
    settings.m_fSaturation = c.saturation;
    auto& a = settings.m_advanced;
    a.m_fSat_all = c.adjustment[0], a.m_fSat_R = c.adjustment[1], a.m_fSat_G = c.adjustment[2];
    a.m_fSat_B = c.adjustment[3], a.m_fHue_R = c.adjustment[4], a.m_fHue_G = c.adjustment[5];
    a.m_fHue_B = c.adjustment[6];
    a.m_bWhitePatch19 = c.onlyPatch19;
    a.m_bWhitePatch20 = a.m_bWhitePatch21 = a.m_bWhitePatch22 = !c.onlyPatch19;
    ColorCorrectionUtils utils;
    const std::vector<std::int32_t> gamma = fixture::srgbGammaTable();
    utils.SetGammaTable(gamma, gamma, gamma);
    ASSERT_TRUE(utils.Optimize(settings, 0));
    expectShownAsToldStepByStep(utils, settings.m_macbethData.m_RGB);
    const ColorFitReport& fit = utils.m_fit;
    text += line(illumName(c.light), utils.m_ccm) + line("gains", utils.m_wbGain) +
            line("exposure, errors, chroma, weights",
                 std::array<double, 7>{utils.m_gain, fit.m_startError, fit.m_firstCost,
                                       fit.m_lastCost, *fit.m_chromaChange, fit.m_hueWeight,
                                       fit.m_saturationPressure}) +
            rows(utils.m_macbethLab, 3) + line("uncorrected", fit.m_uncorrectedLab[6]) +
            line("target", fit.m_targetLab[5]) + line("balanced", fit.m_balancedRGB[22]);
    utils.CalculateDeltaE(settings.m_macbethData);
    text += line("measured", utils.m_macbethLab[4]);
  }
  expectGolden("colour/golden/fits.txt", text);
}

}  // namespace
}  // namespace greycard
