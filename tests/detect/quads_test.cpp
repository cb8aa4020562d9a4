#include "quads.h"

#include <gtest/gtest.h>

#include <cmath>
#include <opencv2/imgproc.hpp>

#include "colorchecker.h"
#include "patch_average.h"
#include "threshold_mask.h"

namespace greycard {
namespace {

struct QuadCase {
  const char* name;
  Contour contour;
  int minSize;
  bool accepted;
};

// A square of 200 whose upper side bulges outward at its middle by so many pixels.
Contour bulging(int by) {
  return {{0, 0}, {100, -by}, {200, 0}, {200, 200}, {0, 200}};
}

TEST(FindQuad, TakesNearlySquareConvexQuads) {
  const QuadCase cases[] = {
      // Name, contour, least area, whether it is taken.
      {"square", {{0, 0}, {40, 0}, {40, 40}, {0, 40}}, 0, true},
      {"sides differ by exactly 10 %", {{0, 0}, {40, 0}, {40, 44}, {0, 44}}, 0, false},
      {"and the other way round", {{0, 0}, {44, 0}, {44, 40}, {0, 40}}, 0, false},
      {"a little less", {{0, 0}, {40, 0}, {40, 43}, {0, 43}}, 0, true},
      {"area equal to the minimum", {{0, 0}, {40, 0}, {40, 40}, {0, 40}}, 1600, false},
      {"area above the minimum", {{0, 0}, {40, 0}, {40, 40}, {0, 40}}, 1599, true},
      {"rhombus of 45 degrees", {{0, 0}, {100, 0}, {171, 71}, {71, 71}}, 0, true},
      {"rhombus of 40 degrees, area under two thirds",
       {{0, 0}, {100, 0}, {177, 64}, {77, 64}},
       0,
       false},
      {"arrow head", {{0, 0}, {100, 0}, {30, 30}, {0, 100}}, 0, false},
      {"triangle", {{0, 0}, {100, 0}, {50, 90}}, 0, false},
      {"four corners only at accuracy 7", bulging(7), 0, true},
      {"four corners only at accuracy 8", bulging(8), 0, false},
      // Two equal sides beside two long ones: the diagonal of 98.6 is 0.153 and 0.144 of the
      // perimeter.
      {"a kite", {{59, -26}, {3, -6}, {-5, 49}, {-22, 270}}, 0, true},
      {"a longer kite", {{59, -26}, {3, -6}, {-5, 49}, {-22, 290}}, 0, false},
      {"one point", {{5, 5}}, 0, false}};
  for (const auto& c : cases)
    EXPECT_EQ(find_quad(c.contour, c.minSize).has_value(), c.accepted) << c.name;
}

TEST(FindQuads, TakesHolesOfTheSmallestSizeOn) {
  cv::Mat mask(480, 500, CV_8U, cv::Scalar(0));  // minimum 100
  const auto frame = [&](cv::Rect hole, int rim) {
    mask(hole + cv::Size(2 * rim, 2 * rim) - cv::Point(rim, rim)) = 255;
    mask(hole) = 0;
  };
  frame({50, 50, 40, 40}, 10);
  frame({200, 50, 8, 8}, 10);
  mask({300, 300, 60, 60}) = 255;  // a white square is no patch
  const auto found = find_quads(mask, cv::Mat(mask.size(), CV_8UC3, cv::Scalar()));
  EXPECT_TRUE(found.anyContour);
  ASSERT_EQ(found.quads.size(), 1U);
  EXPECT_NEAR(found.boxes[0].center.x, 69.5, 0.01);
  EXPECT_NEAR(found.boxes[0].center.y, 69.5, 0.01);
}

TEST(SearchSizes, FollowThePictureSize) {
  const struct {
    cv::Size image;
    int block, element, minimum;
  } cases[] = {{{100, 140}, 3, 2, 5},    {{4000, 3000}, 61, 8, 5000},
               {{640, 480}, 11, 3, 128}, {{1, 1}, 3, 2, 0},
               {{3000, 74}, 3, 2, 92},   {{60000, 60000}, 1201, 122, 1500000}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.image);
    EXPECT_EQ(thresholdBlockSize(c.image), c.block);
    EXPECT_EQ(thresholdElementSize(c.block), c.element);
    EXPECT_EQ(minimumQuadSize(c.image), c.minimum);
  }
}

TEST(PatchAverage, CountsPixelsInsideThePictureOnly) {
  cv::Mat image(4, 4, CV_8UC3, cv::Scalar(10, 20, 30));
  image.at<cv::Vec3b>(0, 0) = {50, 60, 70};
  EXPECT_EQ(rect_average({-3, -3, 4, 4}, image), cv::Scalar(50, 60, 70));
  EXPECT_EQ(rect_average({-1, -1, 3, 2}, image), cv::Scalar(30, 40, 50));
  EXPECT_TRUE(std::isnan(rect_average({9, 9, 4, 4}, image)[0]));
  EXPECT_TRUE(std::isnan(contour_average({{0, 0}, {3, 0}, {3, 3}, {0, 3}}, image)[0]));
  EXPECT_EQ(contained_rectangle({{50.0F, 40.0F}, {41.0F, 83.0F}, -30.0F}),
            cv::Rect(39, 19, 20, 41));
}

// CIE Lab of sRGB blue against black: L* 32.30, a* 79.19, b* -107.86 (published), in 8 bits
// L* x 2.55, so 82.4, 79.2 and 107.9 apart.
TEST(ColourDistance, InEncodedValuesAndInLab) {
  EXPECT_EQ(euclidean_distance(cv::Point(1, 2), cv::Point(4, 6)), 5.0);
  EXPECT_EQ(euclidean_distance(cv::Scalar(0, 0, 0, 9), cv::Scalar(2, 3, 6, 0)), 7.0);
  EXPECT_NEAR(euclidean_distance_lab({255, 0, 0}, {0, 0, 0}), std::hypot(82.4, 79.2, 107.9), 1.5);
  EXPECT_EQ(euclidean_distance_lab({std::nan(""), 0, 0}, {0, 0, 0}), 0.0);
}

}  // namespace
}  // namespace greycard
