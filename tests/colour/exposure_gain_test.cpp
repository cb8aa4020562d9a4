#include "exposure_gain.h"

#include <limits>
#include <stdexcept>

#include "gtest/gtest.h"

namespace greycard {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// A curve whose inverse is known: value = 0.2 + 0.8 x.
CameraCurve straightCurve() {
  CameraCurve curve = gammaGrid();
  for (double& value : curve) value = 0.2 + 0.8 * value;
  return curve;
}

TEST(ExposureGain, InverseIsLinearBetweenEntries) {
  CameraCurve steps = gammaGrid();
  steps[100] = 0.9;  // a bump: the smallest position that reaches the value counts
  EXPECT_NEAR(invertCurve(straightCurve(), 0.2 + 0.8 * 0.4567), 0.4567, 1e-15);
  EXPECT_NEAR(invertCurve(steps, 0.8), (99 + (0.8 - 99 / 255.0) / (0.9 - 99 / 255.0)) / 255.0,
              1e-15);
  EXPECT_EQ(invertCurve(straightCurve(), 0.1), 0.0);
  EXPECT_EQ(invertCurve(straightCurve(), 1.1), 1.0);
}

// L* 50 is sRGB code 118.9 of 255 (linear 0.1842, encoded 0.4663); 0.65 is the ceiling.
TEST(ExposureGain, BringsTheGreyToItsReference) {
  EXPECT_NEAR(exposureGain(50.0, gammaGrid(), 0.2), 0.4663 / 0.2, 1e-3);
  EXPECT_NEAR(exposureGain(50.0, straightCurve(), 0.2), (0.4663 - 0.2) / 0.8 / 0.2, 1e-3);
  EXPECT_DOUBLE_EQ(exposureGain(95.0, gammaGrid(), 0.2), 0.65 / 0.2);
}

TEST(ExposureGain, RefusesWhatGivesNone) {
  for (const double measured : {0.0, -0.1, kNaN}) {
    try {
      exposureGain(50.0, gammaGrid(), measured);
      FAIL() << measured;
    } catch (const std::invalid_argument& error) {
      EXPECT_EQ(std::string(error.what()).rfind("patch 20, channel G: ", 0), 0u) << error.what();
    }
  }
  EXPECT_THROW(exposureGain(5.0, straightCurve(), 0.2), std::invalid_argument);
}

}  // namespace
}  // namespace greycard
