#include "greycard/color_correction_utils.h"

#include <cmath>
#include <functional>
#include <limits>
#include <stdexcept>
#include <thread>

#include "chart_fixture.h"
#include "greycard/delta_e.h"
#include "gtest/gtest.h"

namespace greycard {
namespace {

using fixture::measuredBy;
using fixture::seenBySensor;
using S = ColorCorrectionSettings;
using U = ColorCorrectionUtils;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

class ColorCorrection : public testing::Test {
 protected:
  ColorCorrection() { setGamma(utils); }
  static void setGamma(U& u) {
    const std::vector<std::int32_t> gamma = fixture::srgbGammaTable();
    u.SetGammaTable(gamma, gamma, gamma);
  }
  U utils;
};

double meanError(const PatchTable& a, const PatchTable& b) {
  double sum = 0;
  for (std::size_t i = 0; i < kPatchCount; ++i) sum += deltaE76(a[i], b[i]);
  return sum / kPatchCount;
}

void expectRowsSumToOne(const Matrix3& matrix) {
  for (const Vector3& row : matrix) EXPECT_NEAR(row[0] + row[1] + row[2], 1.0, 1e-12);
}

TEST_F(ColorCorrection, RecoversAKnownCamera) {
  const fixture::KnownCamera camera;
  for (const int mode : {0, 1}) {
    S settings = measuredBy(camera);
    settings.m_nDeltaEMode = mode;
    ASSERT_TRUE(utils.Optimize(settings, 0));
    expectRowsSumToOne(utils.m_ccm);
    for (std::size_t r = 0; r < 3; ++r) {
      EXPECT_NEAR(utils.m_wbGain[r], camera.gains[r], 1e-12);
      for (std::size_t c = 0; c < 3; ++c) EXPECT_NEAR(utils.m_ccm[r][c], camera.matrix[r][c], 0.01);
    }
    EXPECT_NEAR(utils.m_gain, camera.exposure, 1e-3);  // two whites and a linear look-up
    EXPECT_LT(meanError(utils.m_macbethLab, settings.m_macbethData.m_RefLab), 0.1);
    EXPECT_LT(utils.m_fit.m_lastCost, utils.m_fit.m_firstCost);
    EXPECT_EQ(utils.m_fit.m_powellRuns, 1);
  }
}

TEST_F(ColorCorrection, CancelledFitLeavesEarlierResults) {
  ASSERT_TRUE(utils.Optimize(measuredBy({}), 0));
  const Matrix3 ccm = utils.m_ccm;
  const double gain = utils.m_gain, lastCost = utils.m_fit.m_lastCost;
  for (const double saturation : {-1.0, 1.1}) {
    S other = seenBySensor(illum_A);
    other.m_fSaturation = saturation;
    int calls = saturation < 0 ? 0 : 5;
    EXPECT_FALSE(utils.Optimize(other, 0, [&](double) { return calls-- > 0; }));
    EXPECT_EQ(utils.m_ccm, ccm);
    EXPECT_EQ(utils.m_gain, gain);
    EXPECT_EQ(utils.m_fit.m_lastCost, lastCost);
  }
}

using Advanced = ColorCorrectionAdvancedSettings;
constexpr std::array kAdvanced{&Advanced::m_fSat_all, &Advanced::m_fSat_R, &Advanced::m_fSat_G,
                               &Advanced::m_fSat_B,   &Advanced::m_fHue_R, &Advanced::m_fHue_G,
                               &Advanced::m_fHue_B};

struct RefusalCase {
  const char* message;  // what it begins with
  std::function<void(S&, U&)> spoil;
};

TEST_F(ColorCorrection, RefusesAChartThatCannotBeFitted) {
  const RefusalCase cases[] = {
      // How the refusal begins, and what is wrong.
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
      {"patch 21, channel G: the measured values sum to 0",
       [](S& s, U&) {
         s.m_advanced.m_bWhitePatch20 = s.m_advanced.m_bWhitePatch22 = false;
         s.m_macbethData.m_RGB[20][1] = 0;
       }},
      {"m_fNoiseRate is 1.5", [](S& s, U&) { s.m_fNoiseRate = 1.5; }},
      {"m_fNoiseRate is -0.1", [](S& s, U&) { s.m_fNoiseRate = -0.1; }},
      {"m_fSaturation is nan", [](S& s, U&) { s.m_fSaturation = kNaN; }},
      {"m_exposure is free", [](S& s, U&) { s.m_exposure = FitExposure::free; }},
      {"m_exposureGain is 1.1e+06",
       [](S& s, U&) { s.m_exposure = FitExposure::number, s.m_exposureGain = 1.1e6; }},
      {"m_exposureGain is 9e-07",
       [](S& s, U&) { s.m_exposure = FitExposure::number, s.m_exposureGain = 9e-7; }},
      {"m_RGBtoXYZTransform is 4", [](S& s, U&) { s.m_RGBtoXYZTransform = 4; }},
      {"m_RGBtoXYZTransform is -1", [](S& s, U&) { s.m_RGBtoXYZTransform = -1; }},
      {"m_CustRGB2XYZ gives white a Y of 0",
       [](S& s, U&) {
         s.m_RGBtoXYZTransform = 3;
         s.m_CustRGB2XYZ[1] = {};
       }},
      {"the target has no chroma",
       [](S& s, U&) {
         s.m_fSaturation = 1.1;
         s.m_macbethData.m_RefLab.fill({50, 0, 0});
       }},
      {"an entry of m_CustRGB2XYZ is nan",
       [](S& s, U&) { s.m_RGBtoXYZTransform = 3, s.m_CustRGB2XYZ[0][0] = kNaN; }},
      {"an entry of m_CustXYZ2sRGB is inf",
       [](S& s, U&) { s.m_RGBtoXYZTransform = 3, s.m_CustXYZ2sRGB[2][0] = HUGE_VAL; }},
  };
  for (const auto member : kAdvanced) {
    S settings = measuredBy({});
    settings.m_advanced.*member = HUGE_VAL;
    EXPECT_THROW(utils.Optimize(settings, 0), std::invalid_argument);
  }
  ASSERT_TRUE(utils.Optimize(measuredBy({}), 0));
  const Matrix3 ccm = utils.m_ccm;
  const double gain = utils.m_gain;
  for (const RefusalCase& c : cases) {
    S settings = measuredBy({});
    setGamma(utils);
    c.spoil(settings, utils);
    try {
      utils.Optimize(settings, 0);
      ADD_FAILURE() << "not thrown: " << c.message;
    } catch (const std::invalid_argument& error) {
      EXPECT_EQ(std::string(error.what()).rfind(c.message, 0), 0u) << error.what();
    }
    EXPECT_EQ(utils.m_ccm, ccm);
    EXPECT_EQ(utils.m_gain, gain);
  }
}

TEST_F(ColorCorrection, NoWhitePatchesOrDarkOnesGiveUnitGains) {
  S none = measuredBy({}), dark = none;
  none.m_advanced.m_bWhitePatch20 = none.m_advanced.m_bWhitePatch21 =
      none.m_advanced.m_bWhitePatch22 = false;
  for (const std::size_t patch : {19U, 20U, 21U}) dark.m_macbethData.m_RGB[patch][0] = 0;
  for (const S* settings : {&none, &dark}) {
    ASSERT_TRUE(utils.Optimize(*settings, 0));
    EXPECT_EQ(utils.m_wbGain, (Vector3{1, 1, 1}));
  }
}

TEST_F(ColorCorrection, TheExposureMayBeGivenOrBalanced) {
  S settings = measuredBy({});
  ASSERT_TRUE(utils.Optimize(settings, 0));
  const double stated = utils.m_gain;
  const Vector3 gains = utils.m_wbGain;
  settings.m_exposure = FitExposure::number;
  settings.m_exposureGain = 0.8;
  ASSERT_TRUE(utils.Optimize(settings, 0));
  EXPECT_EQ(utils.m_gain, 0.8);
  EXPECT_EQ(utils.m_wbGain, gains);
  EXPECT_NEAR(utils.m_fit.m_balancedRGB[3][0], 0.8 * gains[0] * settings.m_macbethData.m_RGB[3][0],
              1e-12);
  settings.m_exposure = FitExposure::balanced;
  ASSERT_TRUE(utils.Optimize(settings, 0));
  EXPECT_NEAR(utils.m_gain, stated / gains[1], 1e-12);
}

TEST_F(ColorCorrection, StepByStepGivesWhatOptimizeGives) {
  const S settings = measuredBy({});
  std::array<double, 72> lab{};
  U::SetColorMatrixOpt(utils, settings, 0);
  U::Color_correction_3illum(utils, lab);
  utils.Dispose();
  EXPECT_THROW(U::SetColorMatrixOpt(utils, settings, 0), std::invalid_argument);
  ASSERT_TRUE(utils.Optimize(settings, 0));
  for (std::size_t i = 0; i < 72; ++i) EXPECT_EQ(lab[i], utils.m_macbethLab[i / 3][i % 3]);
}

// Two objects in two threads give the bits that they give one after the other.
TEST_F(ColorCorrection, TwoThreadsDoNotMeet) {
  std::array<S, 2> settings{seenBySensor(illum_D65), seenBySensor(illum_A)};
  settings[0].m_fSaturation = 1.02;  // a short search
  settings[1].m_fNoiseRate = 0.2;
  settings[1].m_nDeltaEMode = 0;
  std::array<U, 2> alone, together;
  const auto fit = [&settings](std::array<U, 2>& objects, std::size_t i) {
    setGamma(objects[i]);
    objects[i].Optimize(settings[i], 0);
  };
  fit(alone, 0);
  fit(alone, 1);
  std::thread other([&] { fit(together, 1); });
  fit(together, 0);
  other.join();
  for (std::size_t i = 0; i < 2; ++i) {
    EXPECT_EQ(together[i].m_ccm, alone[i].m_ccm);
    EXPECT_EQ(together[i].m_macbethLab, alone[i].m_macbethLab);
    EXPECT_EQ(together[i].m_fit.m_evaluations, alone[i].m_fit.m_evaluations);
  }
}

}  // namespace
}  // namespace greycard
