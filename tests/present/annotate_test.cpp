#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>

#include "greycard/present/chart.h"
#include "greycard/present/plot_picture.h"

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

TEST(PlotPicture, DrawsWhatTheSvgSaysOnWhite) {
  const std::string svg =
      "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"20\" height=\"10\">"
      "<rect x=\"5\" y=\"2\" width=\"10\" height=\"6\" fill=\"#c86432\"/></svg>";
  const Picture drawn = present::plotPicture(svg, 2.0);
  ASSERT_EQ(drawn.width, 40);
  ASSERT_EQ(drawn.height, 20);
  for (int y = 0; y < 20; ++y)
    for (int x = 0; x < 40; ++x) {
      const bool inside = x >= 10 && x < 30 && y >= 4 && y < 16;
      EXPECT_EQ(drawn.pixel(x, y)[0], inside ? 200 : 255) << x << ", " << y;
      EXPECT_EQ(drawn.pixel(x, y)[2], inside ? 50 : 255) << x << ", " << y;
    }
  EXPECT_THROW(present::plotPicture("<svg", 2.0), std::invalid_argument);
  EXPECT_THROW(present::plotPicture(svg, 0.0), std::invalid_argument);
}

}  // namespace
}  // namespace greycard::present
