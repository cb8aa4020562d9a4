#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

#include "greycard/macbeth_chart_data.h"
#include "srgb_transfer.h"

namespace greycard {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr int kSide = 10;  // pixels of a square patch

// 6 x 4 patches side by side, without gaps.
PatchRegions chartRegions() {
  PatchRegions regions;
  for (std::size_t i = 0; i < regions.size(); ++i)
    regions[i] = {static_cast<double>(i % 6 * kSide), static_cast<double>(i / 6 * kSide), kSide,
                  kSide};
  return regions;
}

using CodeAt = std::function<int(int x, int y, int channel)>;
Picture pictureOf(int bits, int channels, const CodeAt& code) {
  Picture picture(6 * kSide, 4 * kSide, channels, bits);
  for (int y = 0; y < picture.height; ++y)
    for (int x = 0; x < picture.width; ++x)
      for (int c = 0; c < channels; ++c)
        picture.pixel(x, y)[c] = static_cast<std::uint16_t>(code(x, y, c));
  return picture;
}

constexpr auto kLinear = SampleEncoding::linear;

struct DepthCase {
  const char* name;
  int bits;
  SampleLevels levels;
};

TEST(PatchSampler, MeanAndDeviationOfAKnownPattern) {
  const DepthCase cases[] = {{"8 bit", 8, SampleLevels::eightBit(kLinear)},
                             {"12 bit", 16, SampleLevels::twelveBit(kLinear)},
                             {"16 bit", 16, SampleLevels::sixteenBit(kLinear)},
                             {"12 bit, black level and scale", 16, {256, 4095, 0.5, kLinear}}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    // Half of the pixels 6 codes above the middle of the scale, half below; red 30 codes brighter.
    const int middle = static_cast<int>(c.levels.whiteLevel / 2);
    const auto picture = pictureOf(c.bits, 3, [&](int x, int y, int channel) {
      return middle + ((x + y) % 2 == 0 ? 6 : -6) + (channel == 0 ? 30 : 0);
    });
    MacbethChartData chart;
    const auto report = chart.CollectRGBData(picture, chartRegions(), c.levels);
    const double perCode = c.levels.scale / (c.levels.whiteLevel - c.levels.blackLevel);
    for (const std::size_t patch : {0, 7, 23}) {
      EXPECT_EQ(report.pixels[patch], 100u);
      EXPECT_NEAR(chart.m_RGB[patch][0], (middle + 30 - c.levels.blackLevel) * perCode, 1e-14);
      EXPECT_NEAR(chart.m_RGB[patch][2], (middle - c.levels.blackLevel) * perCode, 1e-14);
      EXPECT_NEAR(chart.m_Noise[patch][1], 6.0 * std::sqrt(100.0 / 99.0) * perCode, 1e-13);
    }
    EXPECT_THAT(report.clippedPatches(), IsEmpty());
  }
}

TEST(PatchSampler, EncodedPixelsAreDecodedBeforeAveraging) {
  const auto picture = pictureOf(8, 1, [](int x, int, int) { return x % 2 == 0 ? 255 : 51; });
  MacbethChartData chart;
  chart.CollectRGBData(picture, chartRegions(), SampleLevels::eightBit(SampleEncoding::sRGB));
  const double dark = std::pow((0.2 + 0.055) / 1.055, 2.4);
  for (std::size_t c = 0; c < 3; ++c)  // one channel stands for all three
    EXPECT_NEAR(chart.m_RGB[3][c], 0.5 * (1.0 + dark), 1e-14);
}

TEST(PatchSampler, RegionsHoldThePixelsWhoseCentresTheyCover) {
  const auto picture = pictureOf(8, 1, [](int x, int, int) { return x; });
  const struct {
    PatchRegion region;
    std::size_t pixels;
    double mean;  // of the column numbers
  } cases[] = {{{10, 10, 5, 4}, 20, 12.0},     {{9.5, 9.5, 5, 4}, 20, 12.0},
               {{10.1, 10, 5, 1}, 5, 13.0},    {{-20, -20, 23, 21}, 3, 1.0},
               {{57.5, 0, 1e300, 1}, 2, 58.5}, {{20, 20, 0.5, 0.5}, 1, 20.0}};
  for (const auto& c : cases) {
    auto regions = chartRegions();
    regions[11] = c.region;
    MacbethChartData chart;
    const auto report = chart.CollectRGBData(picture, regions, SampleLevels::eightBit(kLinear));
    EXPECT_EQ(report.pixels[11], c.pixels);
    EXPECT_NEAR(chart.m_RGB[11][0] * 255.0, c.mean, 1e-12);
    if (c.pixels == 1) {
      EXPECT_EQ(chart.m_Noise[11][0], 0.0);
    }
  }
}

TEST(PatchSampler, ClippingIsReportedPerPatchAndChannel) {
  // Patch 1: two red pixels at the ceiling. Patch 3: one. Patch 24: half of blue at the floor.
  const auto picture = pictureOf(16, 3, [](int x, int y, int channel) {
    if (channel == 0 && y == 0 && (x < 2 || x == 20)) return x == 0 ? 5000 : 4095;
    return channel == 2 && x >= 50 && y >= 35 ? (x % 2 == 0 ? 64 : 10) : 1000;
  });
  MacbethChartData chart;
  const auto report = chart.CollectRGBData(picture, chartRegions(), {64, 4095, 1.0, kLinear});
  EXPECT_EQ(report.clipping[0][0].ceiling, 0.02);
  EXPECT_EQ(report.clipping[0][1].ceiling, 0.0);
  EXPECT_EQ(report.clipping[2][0].ceiling, 0.01);
  EXPECT_EQ(report.clipping[23][2].floor, 0.5);
  EXPECT_THAT(report.clippedPatches(), ElementsAre(0, 23));
  // Values above the white level count as white; what is below black stays below.
  EXPECT_NEAR(chart.m_RGB[0][0], (2.0 + 98.0 * 936.0 / 4031.0) / 100.0, 1e-14);
  EXPECT_NEAR(chart.m_RGB[23][2], (50.0 * 936.0 - 25.0 * 54.0) / 4031.0 / 100.0, 1e-14);
}

TEST(PatchSampler, RefusalsLeaveTheTablesAlone) {
  const double nan = std::nan(""), huge = std::numeric_limits<double>::max();
  const auto good = pictureOf(8, 3, [](int, int, int) { return 100; });
  struct Case {
    const char* complaint;
    std::function<void(Picture&, PatchRegions&, SampleLevels&)> spoil;
  };
  using P = Picture&;
  using R = PatchRegions&;
  using L = SampleLevels&;
  const Case cases[] = {
      {"patch 24: its region (left 60, top 0, 5 x 5) has no pixel inside the picture of 60 x 40",
       [](P, R r, L) {
         r[23] = {60, 0, 5, 5};
       }},
      {"patch 2",
       [](P, R r, L) {
         r[1] = {-9, 0, 9, 5};
       }},
      {"patch 1",
       [](P, R r, L) {
         r[0] = {5, 5, -3, 3};
       }},
      {"patch 5: its region (left nan", [&](P, R r, L) { r[4].left = nan; }},
      {"patch 6", [](P, R r, L) { r[5].height = HUGE_VAL; }},
      {"white level (10) must be above the black level (10)",
       [](P, R, L l) { l.blackLevel = l.whiteLevel = 10; }},
      {"white level", [&](P, R, L l) { l.whiteLevel = nan; }},
      {"white level", [&](P, R, L l) { l.blackLevel = -huge, l.whiteLevel = huge; }},
      {"scale", [](P, R, L l) { l.scale = 0.0; }},
      {"scale", [&](P, R, L l) { l.scale = nan; }},
      {"samples", [](P p, R, L) { p.samples.pop_back(); }},
      {"samples", [](P p, R, L) { p.width = -60; }},
      {"samples", [](P p, R, L) { p.channels = 2; }},
      {"samples", [](P p, R, L) { p = Picture(); }},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.complaint);
    Picture picture = good;
    PatchRegions regions = chartRegions();
    auto levels = SampleLevels::eightBit(kLinear);
    c.spoil(picture, regions, levels);
    MacbethChartData chart;
    try {
      chart.CollectRGBData(picture, regions, levels);
      ADD_FAILURE() << "accepted";
    } catch (const std::invalid_argument& error) {
      EXPECT_THAT(error.what(), HasSubstr(c.complaint));
    }
    EXPECT_EQ(chart.m_RGB, PatchTable{});
  }
}

}  // namespace
}  // namespace greycard
