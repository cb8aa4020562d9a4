#include "greycard/chart_regions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "colorchecker.h"
#include "greycard/errors.h"

namespace greycard {
namespace {

using testing::AllOf;
using testing::HasSubstr;

std::string lines(int count, const std::string& line = "10,20,30,40\n") {
  std::string text;
  for (int i = 0; i < count; ++i) text += line;
  return text;
}

TEST(RegionFile, SizeOf40GivesSquaresOf60) {
  ColorChecker checker;
  checker.size = 40.0;
  checker.points.create(kChartRows, kChartColumns);
  for (int y = 0; y < kChartRows; ++y)
    for (int x = 0; x < kChartColumns; ++x)
      checker.points(y, x) =
          cv::Vec2f(static_cast<float>(100 + 90 * x), static_cast<float>(20 + 90 * y));
  const auto text = formatRegions(patchRegions(checker));
  EXPECT_TRUE(text.starts_with("70,-10,60,60\n160,-10,60,60\n")) << text;
  EXPECT_TRUE(text.ends_with("\n520,260,60,60\n")) << text;
  EXPECT_EQ(parseRegions(text, "regions"), patchRegions(checker));
}

TEST(RegionFile, RoundsHalvesToEvenAsPrintfDoes) {
  PatchRegions regions;
  regions.fill({0.5, 1.5, 2.5, 44.25});
  EXPECT_EQ(formatRegions(regions), lines(24, "0,2,2,44\n"));
}

TEST(RegionFile, AcceptsHandMadeFiles) {
  const auto regions = parseRegions(lines(24, " +1.25 , -2,3e1,4.5\r\n") + "\n \n", "regions");
  EXPECT_EQ(regions[23], (PatchRegion{1.25, -2.0, 30.0, 4.5}));
}

TEST(RegionFile, RefusesNamingFileLineAndWord) {
  const struct {
    std::string text;
    const char *line, *word;
  } cases[] = {
#include "refused_region_files.inc"
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text.substr(0, 60));
    try {
      parseRegions(c.text, "\"my file\"");
      ADD_FAILURE() << "accepted";
    } catch (const FileError& error) {
      EXPECT_THAT(error.what(), AllOf(HasSubstr("my file"), HasSubstr(c.line), HasSubstr(c.word)));
    }
  }
  EXPECT_THROW(readRegions("no such file"), FileError);
}

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
  // The number, 0.35 of the region high, in its middle.
  int top = 99, bottom = 0, left = 99, right = 0;
  for (int y = 24; y < 76; ++y)
    for (int x = 24; x < 76; ++x) {
      if (annotated.pixel(x, y)[0] < 128) continue;
      top = std::min(top, y), bottom = std::max(bottom, y);
      left = std::min(left, x), right = std::max(right, x);
    }
  EXPECT_NEAR(bottom - top, 0.35 * 60, 2);
  EXPECT_NEAR(0.5 * (top + bottom), 50, 2);
  EXPECT_NEAR(0.5 * (left + right), 50, 4);
  EXPECT_THROW(annotateRegions(Picture(), regions), std::invalid_argument);
}

}  // namespace
}  // namespace greycard
