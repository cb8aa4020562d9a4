#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "greycard/macbeth_chart_data.h"

namespace greycard {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr int kSide = 10;  // pixels of a square patch
constexpr auto kLinear = SampleEncoding::linear;

// 6 x 4 patches side by side, without gaps.
PatchRegions chartRegions() {
  PatchRegions regions;
  for (std::size_t i = 0; i < regions.size(); ++i)
    regions[i] = {static_cast<double>(i % 6 * kSide), static_cast<double>(i / 6 * kSide), kSide,
                  kSide};
  return regions;
}

template <typename CodeAt>
Picture pictureOf(int bits, int channels, CodeAt code) {
  Picture picture(6 * kSide, 4 * kSide, channels, bits);
  for (int y = 0; y < picture.height; ++y)
    for (int x = 0; x < picture.width; ++x)
      for (int c = 0; c < channels; ++c)
        picture.pixel(x, y)[c] = static_cast<std::uint16_t>(code(x, y, c));
  return picture;
}

TEST(PatchSampler, MeanAndDeviationOfAKnownPattern) {
  for (const auto& levels :
       {SampleLevels::eightBit(kLinear), SampleLevels::twelveBit(kLinear),
        SampleLevels::sixteenBit(kLinear), SampleLevels{256, 4095, 0.5, kLinear}}) {
    // Half of the pixels 6 codes above the middle of the scale, half below; red 30 codes brighter.
    const int middle = static_cast<int>(levels.whiteLevel / 2);
    const auto picture =
        pictureOf(levels.whiteLevel > 255 ? 16 : 8, 3, [&](int x, int y, int channel) {
          return middle + ((x + y) % 2 == 0 ? 6 : -6) + (channel == 0 ? 30 : 0);
        });
    MacbethChartData chart;
    const auto report = chart.CollectRGBData(picture, chartRegions(), levels);
    const double perCode = levels.scale / (levels.whiteLevel - levels.blackLevel);
    EXPECT_NEAR(chart.m_RGB[23][0], (middle + 30 - levels.blackLevel) * perCode, 1e-14);
    EXPECT_NEAR(chart.m_RGB[7][2], (middle - levels.blackLevel) * perCode, 1e-14);
    EXPECT_NEAR(chart.m_Noise[0][1], 6.0 * std::sqrt(100.0 / 99.0) * perCode, 1e-13);
    EXPECT_EQ(report.clippedPatches().size(), 0u);
  }
}

TEST(PatchSampler, EncodedPixelsAreDecodedBeforeAveraging) {
  const auto picture = pictureOf(8, 1, [](int x, int, int) { return x % 2 == 0 ? 255 : 51; });
  MacbethChartData chart;
  chart.CollectRGBData(picture, chartRegions(), SampleLevels::eightBit(SampleEncoding::sRGB));
  const double dark = std::pow((0.2 + 0.055) / 1.055, 2.4);
  for (const double v : chart.m_RGB[3])  // one channel stands for all three
    EXPECT_NEAR(v, 0.5 * (1.0 + dark), 1e-14);
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
    EXPECT_EQ(chart.m_Noise[11][0] == 0.0, c.pixels == 1);
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

void expectRefused(const std::string& complaint, const Picture& picture,
                   const PatchRegion& lastRegion, const SampleLevels& levels) {
  auto regions = chartRegions();
  regions[23] = lastRegion;
  MacbethChartData chart;
  try {
    chart.CollectRGBData(picture, regions, levels);
    ADD_FAILURE() << "accepted: " << complaint;
  } catch (const std::invalid_argument& error) {
    EXPECT_THAT(error.what(), HasSubstr(complaint));
  }
  EXPECT_EQ(chart.m_RGB, PatchTable{});
}

TEST(PatchSampler, RefusalsLeaveTheTablesAlone) {
  const double nan = std::nan("");
  const Picture good(60, 40, 3, 8);
  Picture cut = good, negative = good;
  cut.samples.pop_back();
  negative.width = -60;
  const PatchRegion in{50, 30, 5, 5};
  const auto levels = SampleLevels::eightBit(kLinear);
  expectRefused(
      "patch 24: its region (left 60, top 0, 5 x 5) has no pixel inside the picture of "
      "60 x 40",
      good, {60, 0, 5, 5}, levels);
  expectRefused("patch 24", good, {5, 5, -3, 3}, levels);
  expectRefused("(left nan", good, {nan, 5, 5, 5}, levels);
  expectRefused("not finite", good, {5, 5, 5, HUGE_VAL}, levels);
  expectRefused("white level (10) must be above the black level (10)", good, in, {10, 10});
  expectRefused("white level", good, in, {-1e308, 1e308});
  expectRefused("white level", good, in, {0, nan});
  expectRefused("scale", good, in, {0, 255, nan});
  expectRefused("samples", cut, in, levels);
  expectRefused("samples", negative, in, levels);
  expectRefused("samples", Picture(), in, levels);
}

}  // namespace
}  // namespace greycard
