#include "exposure_gain.h"

#include <stdexcept>

#include "gtest/gtest.h"

namespace greycard {
namespace {

TEST(ExposureGain, InverseIsLinearBetweenEntries) {
  CameraCurve straight = gammaGrid(), bumpy = gammaGrid();
  for (double& value : straight) value = 0.2 + 0.8 * value;
  bumpy[100] = 0.9;  // the smallest position that reaches the value counts
  EXPECT_NEAR(invertCurve(straight, 0.2 + 0.8 * 0.4567), 0.4567, 1e-15);
  EXPECT_NEAR(invertCurve(bumpy, 0.8), (99 + (0.8 - 99 / 255.0) / (0.9 - 99 / 255.0)) / 255, 1e-15);
  EXPECT_EQ(invertCurve(straight, 0.1), 0.0);
  EXPECT_EQ(invertCurve(straight, 1.1), 1.0);
  EXPECT_THROW(exposureGain(5.0, straight, 0.2), std::invalid_argument);  // darker than the curve
  EXPECT_THROW(exposureGain(50.0, straight, 0.0), std::invalid_argument);
  EXPECT_THROW(exposureGain(50.0, straight, 1e-320), std::invalid_argument);
}

}  // namespace
}  // namespace greycard
