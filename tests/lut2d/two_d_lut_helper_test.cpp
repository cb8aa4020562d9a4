#include "greycard/two_d_lut_helper.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <stdexcept>

#include "greycard/diagnostics.h"
#include "lut_fixtures.h"

namespace greycard {
namespace {

using testing::HasSubstr;

TEST(TwoDLutHelper, RefusesOnlyWhatIsNotFiniteAndOddShifts) {
  const double nan = std::nan("");
  const struct {
    const char* says;
    std::function<void(Lut2DConfig&)> spoil;
  } cases[] = {
      {"lut_1d_h[3] is nan", [=](Lut2DConfig& c) { c.lut_1d_h[3] = nan; }},
      {"lut_1d_s[15] is inf", [](Lut2DConfig& c) { c.lut_1d_s[15] = HUGE_VAL; }},
      {"lut_2d_h[383] is -inf; it must be a finite number",
       [](Lut2DConfig& c) { c.lut_2d_h[383] = -HUGE_VAL; }},
      {"lut_2d_s[0] is nan", [=](Lut2DConfig& c) { c.lut_2d_s[0] = nan; }},
      {"h_shift is -1; it must be a number from 0 to 24",
       [](Lut2DConfig& c) { c.h_shift = -1.0F; }},
      {"s_shift is 25", [](Lut2DConfig& c) { c.s_shift = 25.0F; }},
      {"l_boundary_start_a",
       [=](Lut2DConfig& c) { c.l_boundary_start_a = static_cast<float>(nan); }},
      {"l_boundary_end_b", [](Lut2DConfig& c) { c.l_boundary_end_b = -HUGE_VALF; }},
      {"y_blend_factor", [](Lut2DConfig& c) { c.y_blend_factor = HUGE_VALF; }},
      {"inverse_flag", [=](Lut2DConfig& c) { c.inverse_flag = static_cast<float>(nan); }},
  };
  for (const auto& [says, spoil] : cases) {
    TwoDLutHelper helper;
    Lut2DConfig config = identityTable();
    spoil(config);
    try {
      helper.SetConfig(config);
      ADD_FAILURE() << says;
    } catch (const std::invalid_argument& error) {
      EXPECT_THAT(error.what(), HasSubstr(says));
    }
    EXPECT_EQ(helper.record(), nullptr);
  }
}

// Coordinates, changes and where these lead to; the last row is the first one a turn further, and
// greys have no saturation to change.
TEST(TwoDLutHelper, TheRecordHoldsTheTableAndARowMore) {
  Lut2DConfig config = identityTable();
  for (std::size_t i = 0; i < config.lut_2d_h.size(); ++i) {
    config.lut_2d_h[i] = 0.25 * static_cast<double>(i % 50) - 5.0;
    config.lut_2d_s[i] = 0.125 - static_cast<double>(i % 32) / 128.0;
  }
  config.y_blend_factor = 0.5F;
  config.l_boundary_end_a = 0.75F;
  config.h_shift = 3.0F;
  TwoDLutHelper helper;
  helper.SetConfig(config);
  const lut2d_cfg& record = *helper.record();
  constexpr float kUnits = 256.0F;
  for (std::size_t i = 0; i <= 24; ++i)
    for (std::size_t j = 0; j < 16; ++j) {
      const std::size_t entry = i % 24 * 16 + j;
      const auto hue = static_cast<float>(config.lut_1d_h[i]);
      const float sat = static_cast<float>(config.lut_1d_s[j]) * kUnits;
      const auto byHue = static_cast<float>(config.lut_2d_h[entry]);
      const float bySat = static_cast<float>(config.lut_2d_s[entry]) * kUnits;
      EXPECT_EQ(record.node[i][j].h, hue);
      EXPECT_NEAR(record.node[i][j].s, sat, 1e-3);
      EXPECT_EQ(record.delta[i][j].h, byHue);
      EXPECT_NEAR(record.delta[i][j].s, j == 0 ? 0.0F : bySat, 1e-3);
      EXPECT_NEAR(record.target[i][j].h, hue - byHue, 1e-3);
      EXPECT_NEAR(record.target[i][j].s, j == 0 ? sat : sat - bySat, 1e-3) << i;
    }
  EXPECT_EQ(record.y_blend_factor, 0.5F);
  EXPECT_EQ(record.l_boundary_end_a, 0.75F);
  EXPECT_EQ(record.h_shift, 3.0F);
}

TEST(TwoDLutHelper, TakesEveryFiniteNumber) {
  constexpr float kLargest = std::numeric_limits<float>::max();
  Lut2DConfig config = identityTable();
  config.lut_1d_h[24] = 1e300;
  config.lut_1d_s[15] = -1e300;
  config.lut_2d_h.fill(-1e300);
  config.lut_2d_s[100] = -100.7;
  config.lut_2d_s[101] = 1e300;
  for (float* value : {&config.l_boundary_start_a, &config.l_boundary_end_b, &config.y_blend_factor,
                       &config.inverse_flag})
    *value = kLargest;
  TwoDLutHelper helper;
  helper.SetConfig(config);
  const lut2d_cfg& record = *helper.record();
  EXPECT_EQ(record.node[24][0].h, kLargest);
  EXPECT_EQ(record.node[0][15].s, -kLargest);
  EXPECT_EQ(record.delta[6][4].s, -100.7F * 256.0F);
  EXPECT_EQ(record.delta[6][5].s, kLargest);
  EXPECT_EQ(record.target[3][3].h, kLargest);
  Planes planes = noisePlanes(1, 1000);
  EXPECT_TRUE(helper.ProcessImage(planes.r, planes.g, planes.b, 40, 25, 10));
  EXPECT_TRUE(helper.CalInverseLut2dCfg([](std::string_view) {}));
  EXPECT_TRUE(helper.ProcessImage(planes.r, planes.g, planes.b, 40, 25, 10));
  EXPECT_LE(std::ranges::max(planes.g), 1023);
}

TEST(TwoDLutHelper, ConvertsColours) {
  const struct {
    double r, g, b, h, s, l;
  } cases[] = {{1, 1, 1, 0, 0, 1},        {0.5, 0.5, 0.5, 0, 0, 0.5},
               {0, 0, 0, 0, 0, 0},        {1, 0, 0, 0, 1, 0.5},
               {1, 0, 1, 300, 1, 0.5},    {0, 0.5, 0, 120, 1, 0.25},
               {0.5, 1, 1, 180, 1, 0.75}, {0.4, 0.3, 0.2, 30, 1 / 3.0, 0.3}};
  for (const auto& c : cases) {
    const auto hls = TwoDLutHelper::RGBtoHLS(c.r, c.g, c.b);
    EXPECT_NEAR(hls.h, c.h, 1e-12);
    EXPECT_NEAR(hls.s, c.s, 1e-12);
    EXPECT_NEAR(hls.l, c.l, 1e-12);
    const auto rgb = TwoDLutHelper::HLStoRGB(hls.h, hls.s, hls.l);
    EXPECT_NEAR(rgb[0], c.r, 1e-12);
    EXPECT_NEAR(rgb[1], c.g, 1e-12);
    EXPECT_NEAR(rgb[2], c.b, 1e-12);
  }
  // Next to black, to white and to grey there is neither hue nor saturation.
  const auto saturationOf = [](double r, double g, double b) {
    return TwoDLutHelper::RGBtoHLS(r, g, b).s;
  };
  EXPECT_EQ(saturationOf(1.9e-8, 0, 0) + saturationOf(1, 1, 1 - 1.9e-8), 0.0);
  EXPECT_NEAR(saturationOf(2.1e-8, 0, 0) + saturationOf(1, 1, 1 - 2.1e-8), 2.0, 1e-6);
  EXPECT_EQ(TwoDLutHelper::RGBtoHLS(0.5, 0.5, 0.5 + 0.9e-8).h, 0.0);
  EXPECT_EQ(TwoDLutHelper::RGBtoHLS(0.5, 0.5, 0.5 + 1.1e-8).h, 240.0);
  EXPECT_EQ(TwoDLutHelper::HLStoRGB(240.0, 0.9e-8, 0.5)[0], 0.5);
  EXPECT_NE(TwoDLutHelper::HLStoRGB(240.0, 1e-8, 0.5)[0], 0.5);
  EXPECT_EQ(TwoDLutHelper::HLStoRGB(360.0, 0.7, 0.4), TwoDLutHelper::HLStoRGB(0.0, 0.7, 0.4));
  for (const double odd : {std::nan(""), HUGE_VAL, -1e300, 1e300}) {
    TwoDLutHelper::HLStoRGB(odd, odd, odd);
    TwoDLutHelper::RGBtoHLS(odd, 0.5, -odd);
  }
}

}  // namespace
}  // namespace greycard
