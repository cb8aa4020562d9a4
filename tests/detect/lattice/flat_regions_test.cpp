#include "lattice/flat_regions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <opencv2/imgproc.hpp>
#include <random>

#include "lattice/row_runs.h"

namespace greycard {
namespace {

WorkingPicture greyPicture(const cv::Mat& image) {
  WorkingPicture picture;
  picture.width = image.cols, picture.height = image.rows, picture.planes = 1;
  picture.samples.assign(image.datastart, image.dataend);
  return picture;
}

TEST(RowRuns, AreThoseOfASlowLook) {
  std::mt19937 random(8);
  for (const int length : {0, 1, 2, 3, 7, 8, 63, 64, 65, 127, 128, 129, 300}) {
    for (const int threshold : {1, 12, 128}) {
      std::vector<std::uint8_t> values(static_cast<std::size_t>(length));
      for (auto& value : values)
        value = static_cast<std::uint8_t>(random() % 3 ? static_cast<unsigned>(threshold) - 1U
                                                       : random() % 256U);
      std::vector<std::pair<int, int>> found, wanted;
      RowRuns runs;
      runs.find(values.data(), length, threshold);
      runs.forEach([&](int first, int last) { found.emplace_back(first, last); });
      for (int x = 0; x < length;) {
        const int first = x;
        while (x < length && values[static_cast<std::size_t>(x)] < threshold) ++x;
        if (x - first >= 3) wanted.emplace_back(first, x - 1);
        if (x == first) ++x;
      }
      EXPECT_EQ(found, wanted) << length << " below " << threshold;
    }
  }
}

TEST(ContrastMap, IsTheLargestDifferenceOfOppositeNeighbours) {
  cv::Mat image(5, 6, CV_8UC1, cv::Scalar(100));
  image.at<uchar>(2, 3) = 140;
  image.at<uchar>(1, 2) = 90;
  const auto map = contrastMap(greyPicture(image));
  EXPECT_EQ(map.row(2)[2], 40);  // beside the bright pixel
  EXPECT_EQ(map.row(3)[3], 40);
  EXPECT_EQ(map.row(2)[3], 0) << "on it";
  EXPECT_EQ(map.row(1)[3], 40) << "the larger of two";
  EXPECT_EQ(map.row(0)[2], 255) << "the border";
  EXPECT_EQ(map.row(3)[5], 255);
}

struct ShapeCase {
  const char* name;
  std::vector<cv::Point> corners;
  bool isPatch;
};

TEST(FlatRegions, TakesLeaningPatchesAndNothingThatIsNone) {
  const ShapeCase cases[] = {
      {"square", {{50, 50}, {90, 50}, {90, 90}, {50, 90}}, true},
      {"turned by 45 degrees", {{70, 40}, {100, 70}, {70, 100}, {40, 70}}, true},
      {"leaning", {{40, 40}, {90, 55}, {95, 85}, {45, 70}}, true},
      {"half as high as wide", {{40, 50}, {100, 50}, {100, 80}, {40, 80}}, true},
      {"L", {{40, 40}, {60, 40}, {60, 80}, {100, 80}, {100, 100}, {40, 100}}, false},
      {"line", {{20, 60}, {140, 60}, {140, 70}, {20, 70}}, false},
      {"triangle", {{40, 40}, {100, 40}, {40, 100}}, false},
      {"larger than a thirtieth of the picture",
       {{40, 20}, {140, 20}, {140, 120}, {40, 120}},
       false}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    cv::Mat image(200, 300, CV_8UC1, cv::Scalar(30));
    cv::fillPoly(image, std::vector<std::vector<cv::Point>>{c.corners}, cv::Scalar(150));
    const auto picture = greyPicture(image);
    const auto regions = flatRegions(contrastMap(picture), 12, picture);
    ASSERT_EQ(regions.size(), c.isPatch ? 1U : 0U);
    if (!c.isPatch) continue;
    // The region is the shape less the pixels along its outline.
    cv::Mat inside;
    cv::erode(image, inside, cv::getStructuringElement(cv::MORPH_CROSS, {3, 3}));
    const auto moments = cv::moments(inside > 100, true);
    EXPECT_NEAR(regions[0].centre.x, moments.m10 / moments.m00, 0.05);
    EXPECT_NEAR(regions[0].centre.y, moments.m01 / moments.m00, 0.05);
    EXPECT_NEAR(regions[0].area, moments.m00, 0.03 * moments.m00);
    EXPECT_NEAR(regions[0].xy, moments.mu11 / moments.m00, 0.05 * regions[0].area / 12.0);
  }
}

TEST(FlatRegions, AreTheConnectedPartsOfTheFlatPixels) {
  // Discs at random: as many regions as OpenCV's labelling finds discs of the right size.
  cv::Mat image(300, 400, CV_8UC1, cv::Scalar(20));
  std::mt19937 random(2);
  for (int i = 0; i < 40; ++i) {
    const cv::Point centre(static_cast<int>(random() % 360 + 20),
                           static_cast<int>(random() % 260 + 20));
    cv::circle(image, centre, 12, cv::Scalar(90 + 4 * i), cv::FILLED);
  }
  const auto picture = greyPicture(image);
  const auto contrast = contrastMap(picture);
  cv::Mat flat(300, 400, CV_8UC1);
  for (int y = 0; y < 300; ++y)
    for (int x = 0; x < 400; ++x) flat.at<uchar>(y, x) = contrast.row(y)[x] < 3 ? 255 : 0;
  cv::Mat labels, stats, centres;
  const int count = cv::connectedComponentsWithStats(flat, labels, stats, centres, 4);
  int whole = 0;
  for (int i = 1; i < count; ++i)
    whole += stats.at<int>(i, cv::CC_STAT_AREA) > 350 && stats.at<int>(i, cv::CC_STAT_AREA) < 500;
  int found = 0;
  for (const auto& region : flatRegions(contrast, 3, picture)) found += region.area > 350;
  EXPECT_EQ(found, whole);
  EXPECT_GT(whole, 5);
}

}  // namespace
}  // namespace greycard
