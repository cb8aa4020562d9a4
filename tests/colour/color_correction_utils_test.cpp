#include "greycard/color_correction_utils.h"

#include <cmath>
#include <functional>
#include <limits>
#include <numeric>
#include <stdexcept>
#include <thread>

#include "chart_fixture.h"
#include "greycard/delta_e.h"
#include "gtest/gtest.h"

namespace greycard {
namespace {

using fixture::KnownCamera;
using fixture::measuredBy;
using fixture::seenBySensor;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

std::unique_ptr<ColorCorrectionUtils> facadeWithGamma() {
  auto utils = std::make_unique<ColorCorrectionUtils>();
  const std::vector<std::int32_t> gamma = fixture::srgbGammaTable();
  utils->SetGammaTable(gamma, gamma, gamma);
  return utils;
}

double meanError(const PatchTable& a, const PatchTable& b) {
  double sum = 0;
  for (std::size_t i = 0; i < kPatchCount; ++i) sum += deltaE76(a[i], b[i]);
  return sum / kPatchCount;
}

void expectRowsSumToOne(const Matrix3& matrix) {
  for (const Vector3& row : matrix) EXPECT_NEAR(row[0] + row[1] + row[2], 1.0, 1e-12);
}

TEST(ColorCorrection, RecoversAKnownCamera) {
  const KnownCamera camera;
  for (const int mode : {0, 1}) {
    ColorCorrectionSettings settings = measuredBy(camera);
    settings.m_nDeltaEMode = mode;
    const auto utils = facadeWithGamma();
    ASSERT_TRUE(utils->Optimize(settings, 0));
    expectRowsSumToOne(utils->m_ccm);
    for (std::size_t r = 0; r < 3; ++r) {
      EXPECT_NEAR(utils->m_wbGain[r], camera.gains[r], 1e-12);
      for (std::size_t c = 0; c < 3; ++c)
        EXPECT_NEAR(utils->m_ccm[r][c], camera.matrix[r][c], 0.01);
    }
    EXPECT_NEAR(utils->m_gain, camera.exposure, 1e-3);  // two whites and a linear look-up
    EXPECT_LT(meanError(utils->m_macbethLab, settings.m_macbethData.m_RefLab), 0.1);
    EXPECT_EQ(utils->m_fit.m_targetLab, settings.m_macbethData.m_RefLab);
    EXPECT_EQ(utils->m_fit.m_powellRuns, 1);
    EXPECT_LT(utils->m_fit.m_lastCost, utils->m_fit.m_firstCost);
  }
}

TEST(ColorCorrection, ReportHasTheChartBeforeCorrection) {
  const ColorCorrectionSettings settings = measuredBy({});
  const auto utils = facadeWithGamma();
  ASSERT_TRUE(utils->Optimize(settings, 0));
  const ColorFitReport& fit = utils->m_fit;
  CDoubleMatrix balanced = toMatrix(settings.m_macbethData.m_RGB);
  const Vector3 gains = utils->Pipeline().m_gains;
  for (std::int32_t i = 0; i < 24; ++i)
    for (std::int32_t c = 0; c < 3; ++c) balanced[i][c] *= gains[static_cast<std::size_t>(c)];
  const PatchTable uncorrected = toPatchTable(
      fixture::slowModel(balanced, meye(3), fixture::curveOf(fixture::srgbGammaTable()),
                         toMatrix(kRgbToXyz), toMatrix(Vector3{95.05, 100.0, 108.9})));
  for (std::size_t i = 0; i < kPatchCount; ++i)
    for (std::size_t c = 0; c < 3; ++c) {
      EXPECT_NEAR(fit.m_balancedRGB[i][c],
                  balanced[static_cast<std::int32_t>(i)][static_cast<std::int32_t>(c)], 1e-14);
      EXPECT_NEAR(fit.m_uncorrectedLab[i][c], uncorrected[i][c], 1e-9);
    }
}

TEST(ColorCorrection, FitsAnOrdinarySensor) {
  for (const Illum light : {illum_D65, illum_D50, illum_TL84}) {
    SCOPED_TRACE(illumName(light));
    ColorCorrectionSettings settings = seenBySensor(light);
    settings.m_nDeltaEMode = 0;
    const auto utils = facadeWithGamma();
    ASSERT_TRUE(utils->Optimize(settings, 0));
    EXPECT_LT(meanError(utils->m_macbethLab, settings.m_macbethData.m_RefLab), 1.5);
    expectRowsSumToOne(utils->m_ccm);

    // The more noise counts, the less the matrix amplifies it.
    settings.m_fNoiseRate = 0.5;
    const Matrix3 plain = utils->m_ccm;
    ASSERT_TRUE(utils->Optimize(settings, 0));
    const auto amplification = [](const Matrix3& m) {
      double sum = 0;
      for (const Vector3& row : m)
        sum += std::inner_product(row.begin(), row.end(), row.begin(), 0.0);
      return sum;
    };
    EXPECT_LT(amplification(utils->m_ccm), amplification(plain));
  }
}

TEST(ColorCorrection, SaturationSearchReachesItsTarget) {
  for (const double wanted : {1.02, 1.1}) {
    ColorCorrectionSettings settings = seenBySensor(illum_TL84);
    settings.m_nDeltaEMode = 0;
    settings.m_fSaturation = wanted;
    const auto utils = facadeWithGamma();
    double last = -1;
    int calls = 0;
    const auto progress = [&](double fraction) {
      EXPECT_GE(fraction, last);
      EXPECT_LE(fraction, 1.0);
      last = fraction;
      ++calls;
      return true;
    };
    ASSERT_TRUE(utils->Optimize(settings, 0, progress));
    EXPECT_EQ(last, 1.0);
    EXPECT_EQ(calls, utils->m_fit.m_powellRuns + 1);
    double chroma = 0, target = 0;
    for (std::size_t i = 0; i < 18; ++i) {
      const Vector3 &corrected = utils->m_macbethLab[i],
                    &reference = settings.m_macbethData.m_RefLab[i];
      chroma += std::hypot(corrected[1], corrected[2]);
      target += std::hypot(reference[1], reference[2]);
    }
    EXPECT_NEAR(chroma / target, wanted, 0.05);
    EXPECT_NEAR(utils->m_fit.m_chromaChange.value(), chroma / target - 1, 1e-12);
    EXPECT_NEAR(utils->m_fit.m_chromaChangeWanted.value(), wanted - 1, 1e-12);
    expectRowsSumToOne(utils->m_ccm);
    // 2 % more is near enough from the start: the loop ends in its first pass.
    if (wanted < 1.05) {
      EXPECT_EQ(utils->m_fit.m_hueWeight, 0.5);
    }
  }
}

// BT.2020 to BT.709 primaries, rows that sum to 1.
TEST(ColorCorrection, TransformTypeTwoChangesPrimaries) {
  ColorCorrectionSettings settings = measuredBy({});
  const auto plain = facadeWithGamma(), wide = facadeWithGamma();
  ASSERT_TRUE(plain->Optimize(settings, 0));
  settings.m_RGBtoXYZTransform = 2;
  ASSERT_TRUE(wide->Optimize(settings, 0));
  expectRowsSumToOne(wide->m_ccm);
  for (std::size_t c = 0; c < 3; ++c)
    EXPECT_NEAR(
        wide->m_ccm[1][c],
        0.0691 * plain->m_ccm[0][c] + 0.9195 * plain->m_ccm[1][c] + 0.0114 * plain->m_ccm[2][c],
        1e-12);
}

TEST(ColorCorrection, CancelledFitLeavesEarlierResults) {
  const auto utils = facadeWithGamma();
  ASSERT_TRUE(utils->Optimize(measuredBy({}), 0));
  const Matrix3 ccm = utils->m_ccm;
  const PatchTable lab = utils->m_macbethLab;
  const double gain = utils->m_gain, lastCost = utils->m_fit.m_lastCost;

  ColorCorrectionSettings other = seenBySensor(illum_A);
  for (const double saturation : {-1.0, 1.1}) {
    other.m_fSaturation = saturation;
    int calls = saturation < 0 ? 0 : 5;
    EXPECT_FALSE(utils->Optimize(other, 0, [&](double) { return calls-- > 0; }));
    EXPECT_EQ(utils->m_ccm, ccm);
    EXPECT_EQ(utils->m_macbethLab, lab);
    EXPECT_EQ(utils->m_gain, gain);
    EXPECT_EQ(utils->m_fit.m_lastCost, lastCost);
  }
}

struct RefusalCase {
  const char* message;  // what it begins with
  std::function<void(ColorCorrectionSettings&, ColorCorrectionUtils&)> spoil;
};

TEST(ColorCorrection, RefusesAChartThatCannotBeFitted) {
  using S = ColorCorrectionSettings;
  using U = ColorCorrectionUtils;
  const RefusalCase cases[] = {
      {"gamma table R is not set", [](S&, U& u) { u.m_nGammaTableR.clear(); }},
      {"gamma table B has 255 entries", [](S&, U& u) { u.m_nGammaTableB.resize(255); }},
      {"gamma table G does not rise", [](S&, U& u) { u.m_nGammaTableG.assign(256, 800); }},
      {"patch 7, channel B: the measured value is nan",
       [](S& s, U&) { s.m_macbethData.m_RGB[6][2] = kNaN; }},
      {"patch 24, channel R: the noise value is inf",
       [](S& s, U&) { s.m_macbethData.m_Noise[23][0] = HUGE_VAL; }},
      {"patch 1, channel a*: the reference value is -inf",
       [](S& s, U&) { s.m_macbethData.m_RefLab[0][1] = -HUGE_VAL; }},
      {"patch 20, channel G: the measured value is 0",
       [](S& s, U&) { s.m_macbethData.m_RGB[19][1] = 0; }},
      {"patches 20, 21, 22, channel R: the measured values sum to -",
       [](S& s, U&) { s.m_macbethData.m_RGB[20][0] = -3; }},
      {"patch 19, channel G: the measured values sum to 0",
       [](S& s, U&) {
         s.m_advanced = {.m_bWhitePatch19 = true,
                         .m_bWhitePatch20 = false,
                         .m_bWhitePatch21 = false,
                         .m_bWhitePatch22 = false};
         s.m_macbethData.m_RGB[18][1] = 0;
       }},
      {"m_fNoiseRate is 1.5", [](S& s, U&) { s.m_fNoiseRate = 1.5; }},
      {"m_fSaturation is nan", [](S& s, U&) { s.m_fSaturation = kNaN; }},
      {"m_fHue_G is inf", [](S& s, U&) { s.m_advanced.m_fHue_G = HUGE_VAL; }},
      {"m_RGBtoXYZTransform is 4", [](S& s, U&) { s.m_RGBtoXYZTransform = 4; }},
      {"m_CustRGB2XYZ gives white a Y of 0",
       [](S& s, U&) {
         s.m_RGBtoXYZTransform = 3;
         s.m_CustRGB2XYZ[1] = {};
       }},
      {"the target has no chroma",
       [](S& s, U&) {
         s.m_fSaturation = 1.1;
         for (Vector3& lab : s.m_macbethData.m_RefLab) lab[1] = lab[2] = 0;
       }},
  };
  const KnownCamera camera;
  for (const RefusalCase& c : cases) {
    SCOPED_TRACE(c.message);
    ColorCorrectionSettings settings = measuredBy(camera);
    const auto utils = facadeWithGamma();
    ASSERT_TRUE(utils->Optimize(settings, 0));
    const Matrix3 ccm = utils->m_ccm;
    const double gain = utils->m_gain;
    c.spoil(settings, *utils);
    try {
      utils->Optimize(settings, 0);
      ADD_FAILURE() << "nothing was thrown";
    } catch (const std::invalid_argument& error) {
      EXPECT_EQ(std::string(error.what()).rfind(c.message, 0), 0u) << error.what();
    }
    EXPECT_EQ(utils->m_ccm, ccm);
    EXPECT_EQ(utils->m_gain, gain);
  }
}

TEST(ColorCorrection, WhitePatchesMayBeNoneOrDark) {
  ColorCorrectionSettings settings = measuredBy({});
  const auto utils = facadeWithGamma();
  settings.m_advanced.m_bWhitePatch20 = settings.m_advanced.m_bWhitePatch21 =
      settings.m_advanced.m_bWhitePatch22 = false;
  ASSERT_TRUE(utils->Optimize(settings, 0));
  EXPECT_EQ(utils->m_wbGain, (Vector3{1, 1, 1}));
  settings = measuredBy({});
  for (const std::size_t patch : {19, 20, 21}) settings.m_macbethData.m_RGB[patch][0] = 0;
  ASSERT_TRUE(utils->Optimize(settings, 0));
  EXPECT_EQ(utils->m_wbGain, (Vector3{1, 1, 1}));
}

TEST(ColorCorrection, StepByStepGivesWhatOptimizeGives) {
  const ColorCorrectionSettings settings = measuredBy({});
  const auto whole = facadeWithGamma(), steps = facadeWithGamma();
  ASSERT_TRUE(whole->Optimize(settings, 0));
  std::array<double, 72> lab{};
  ColorCorrectionUtils::SetColorMatrixOpt(*steps, settings, 0);
  ColorCorrectionUtils::Color_correction_3illum(*steps, lab);
  EXPECT_EQ(steps->m_gain, whole->m_gain);
  for (std::size_t i = 0; i < 72; ++i) EXPECT_EQ(lab[i], whole->m_macbethLab[i / 3][i % 3]);
  steps->Dispose();
  EXPECT_THROW(ColorCorrectionUtils::SetColorMatrixOpt(*steps, settings, 0), std::invalid_argument);
  EXPECT_TRUE(steps->Optimize(settings, 0));
}

TEST(ColorCorrection, SettingsAndCurvesOutOfTheBox) {
  for (const Illum light : {illum_D65, illum_Lowlight, illum_LED})
    EXPECT_EQ(ColorCorrectionSettings(3, light, 0).m_fSaturation, -1.0);
  const ColorCorrectionUtils utils;
  ASSERT_NE(utils.GetGammaCurveForID(0), nullptr);
  EXPECT_EQ(utils.GetGammaCurveForID(0), utils.GetGammaCurveForID(77));
}

// Two objects in two threads give the bits that they give one after the other.
TEST(ColorCorrection, TwoThreadsDoNotMeet) {
  ColorCorrectionSettings first = seenBySensor(illum_D65), second = seenBySensor(illum_A);
  first.m_fSaturation = 1.02;  // a short search
  second.m_fNoiseRate = 0.2;
  second.m_nDeltaEMode = 0;
  const auto alone1 = facadeWithGamma(), alone2 = facadeWithGamma();
  const auto together1 = facadeWithGamma(), together2 = facadeWithGamma();
  ASSERT_TRUE(alone1->Optimize(first, 0));
  ASSERT_TRUE(alone2->Optimize(second, 0));
  std::thread thread1([&] { together1->Optimize(first, 0); });
  std::thread thread2([&] { together2->Optimize(second, 0); });
  thread1.join();
  thread2.join();
  EXPECT_EQ(together1->m_ccm, alone1->m_ccm);
  EXPECT_EQ(together1->m_macbethLab, alone1->m_macbethLab);
  EXPECT_EQ(together1->m_fit.m_evaluations, alone1->m_fit.m_evaluations);
  EXPECT_EQ(together2->m_ccm, alone2->m_ccm);
  EXPECT_EQ(together2->m_macbethLab, alone2->m_macbethLab);
}

}  // namespace
}  // namespace greycard
