#include "greycard/exposure_histogram.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace greycard {
namespace {

TEST(ExposureHistogramsOf, FourPixelsByHand) {
  Picture picture(2, 2, 3, 8);
  picture.samples = {0, 10, 255, 0, 20, 255, 4, 30, 255, 8, 40, 255};
  const auto [cdf, rgb, luma] = exposureHistograms(picture, 255);
  EXPECT_EQ(cdf[0][0], 0.5);
  EXPECT_EQ(cdf[1][9], 0.0);
  EXPECT_EQ(cdf[2][254], 0.0);
  EXPECT_EQ(rgb[0][255], 3.0);
  EXPECT_EQ(rgb[1][25], (10 + 20) / 4.0);
  for (std::size_t c = 0; c < 3; ++c) EXPECT_EQ(cdf[c][255], 1.0);
  EXPECT_DOUBLE_EQ(luma, 0.299 * 3 + 0.587 * 25 + 0.114 * 255);
}

TEST(ExposureHistogramsOf, ScalesToTheWhiteLevelAndWidensGrey) {
  Picture picture(3, 1, 1, 16);
  picture.samples = {15, 16, 60000};  // of 12 bits: bins 0 and 1, and above white
  const auto result = exposureHistograms(picture, 4095);
  for (std::size_t c = 0; c < 3; ++c) {
    EXPECT_DOUBLE_EQ(result.hist_CDF[c][0], 1.0 / 3);
    EXPECT_DOUBLE_EQ(result.hist_CDF[c][254], 2.0 / 3);
    EXPECT_DOUBLE_EQ(result.hist_RGB[c][255], (0 + 1 + 255) / 3.0);
  }
}

TEST(ExposureHistogramsOf, RefusesWhatIsNoPicture) {
  Picture picture(2, 1, 3, 8);
  EXPECT_THROW(exposureHistograms(Picture(), 255), std::invalid_argument);
  EXPECT_THROW(exposureHistograms(picture, 0), std::invalid_argument);
  EXPECT_THROW(exposureHistograms(picture, 65536), std::invalid_argument);
  EXPECT_EQ(exposureHistograms(picture, 1).luma + exposureHistograms(picture, 65535).luma, 0.0);
  picture.samples.pop_back();
  EXPECT_THROW(exposureHistograms(picture, 255), std::invalid_argument);
}

}  // namespace
}  // namespace greycard
