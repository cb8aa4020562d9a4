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
  const std::string spaced = "# by hand\n\n" + lines(24, " 1.25 -2\t3e1 4.5  # a patch\n");
  EXPECT_EQ(parseRegions(spaced, "regions")[0], regions[0]);
}

TEST(RegionFile, RefusesNamingFileLineAndWord) {
  const struct {
    std::string text;
    const char *line, *word;
  } cases[] = {// Text, the line and the word that the refusal names.
               {"", "line 1", "0 lines"},
               {lines(23), "line 24", "23 lines"},
               {lines(25), "line 25", "25 lines"},
               {"\n#\n1,2,3\n" + lines(23), "line 3", "3 values"},
               {lines(3) + "1,2,3\n" + lines(20), "line 4", "3 values"},
               {lines(3) + "1,2,3,4,5\n" + lines(20), "line 4", "5 values"},
               {lines(3) + "1,,3,4\n" + lines(20), "line 4", "top \"\""},
               {lines(3) + "1,2,three,4\n" + lines(20), "line 4", "\"three\""},
               {lines(3) + "nan,2,3,4\n" + lines(20), "line 4", "\"nan\""},
               {lines(3) + "1,inf,3,4\n" + lines(20), "line 4", "\"inf\""},
               {lines(3) + "1,-1.1e9,3,4\n" + lines(20), "line 4", "\"-1.1e9\""},
               {lines(3) + "1,2,0,4\n" + lines(20), "line 4", "width \"0\""},
               {lines(23) + "1,2,3,-4", "line 24", "height \"-4\""}};
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

TEST(RegionFile, TheSecondFormHoldsCorners) {
  const auto file = parseRegionFile(lines(24, "1,2,11,2.5,12,14.25,0,12\n"), "quads");
  EXPECT_FALSE(file.upright);
  EXPECT_EQ(file.quads[23], (PatchQuad{{{1, 2}, {11, 2.5}, {12, 14.25}, {0, 12}}}));
  EXPECT_EQ(parseRegionFile(formatQuads(file.quads), "again").quads, file.quads);
  EXPECT_THAT([] { parseRegionFile(lines(23, "1,2,11,2,12,14,0,12\n") + "1,2,3,4\n", "mixed"); },
              testing::ThrowsMessage<FileError>(HasSubstr("line 24")));

  const auto upright = parseRegionFile(lines(24), "rectangles");
  EXPECT_TRUE(upright.upright);
  EXPECT_EQ(upright.quads[0], (PatchQuad{{{10, 20}, {40, 20}, {40, 60}, {10, 60}}}));
  for (const auto& text : {lines(23, "1,2,11,2,11,12,1,12\n") + "1,2,3,4\n",
                           lines(24, "1,2,11,12,11,2,1,12\n"), lines(24, "1,2,11,2,11,12,1\n")})
    EXPECT_THROW(parseRegionFile(text, "wrong"), FileError) << text.substr(0, 30);
}

}  // namespace
}  // namespace greycard
