#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>

#include "greycard/present/chart.h"

namespace greycard::present {
namespace {

TEST(AnnotateRegions, DrawsInsideThePictureWhateverTheRegions) {
  Picture picture(200, 100, 1, 16);
  PatchRegions regions;
  regions.fill({std::nan(""), 0, 10, 10});
  const double huge = std::numeric_limits<double>::max();
  regions[1] = {-huge, -huge, huge, huge};
  regions[2] = {500, 500, 10, 10};
  regions[3] = {0, 0, -5, 10};
  const auto untouched = annotateRegions(picture, regions);
  EXPECT_EQ(untouched.samples, Picture(200, 100, 3, 8).samples);

  regions[0] = {20, 20, 60, 60};
  regions[1] = {150, -30, 1e300, 1e300};
  const auto annotated = annotateRegions(picture, regions);
  EXPECT_EQ(annotated.bits, 8);
  EXPECT_EQ(annotated.pixel(50, 20)[0], 255) << "upper side of the first region";
  EXPECT_EQ(annotated.pixel(150, 90)[0], 255) << "left side of the second";
  EXPECT_EQ(annotated.pixel(100, 50)[0], 0);
  EXPECT_THROW(annotateRegions(Picture(), regions), std::invalid_argument);
}

}  // namespace
}  // namespace greycard::present
