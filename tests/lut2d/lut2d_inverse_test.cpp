#include <gmock/gmock.h>

#include <cmath>
#include <numbers>
#include <string>

#include "greycard/diagnostics.h"
#include "greycard/two_d_lut_helper.h"
#include "lut_fixtures.h"

namespace greycard {
namespace {

using testing::HasSubstr;

// What the inverse prints on the way.
std::string inverted(TwoDLutHelper& helper, Lut2DConfig config, float flag = 1.0F) {
  config.inverse_flag = flag;
  helper.SetConfig(config);
  std::string text;
  setOutputChannel([&](std::string_view part) { text += part; });
  EXPECT_TRUE(helper.CalInverseLut2dCfg());
  setOutputChannel({});
  return text;
}

// A table whose changes vary slowly, so that a triangle is nearly flat.
Lut2DConfig smoothTable(double hue, double sat) {
  Lut2DConfig config = identityTable();
  for (std::size_t i = 0; i < 24; ++i)
    for (std::size_t j = 0; j < 16; ++j) {
      const double angle = static_cast<double>(i) * std::numbers::pi / 12.0;
      const double strength = std::sin(static_cast<double>(j) * std::numbers::pi / 15.0);
      config.lut_2d_h[16 * i + j] = hue * std::sin(angle);
      config.lut_2d_s[16 * i + j] = sat * std::cos(angle) * strength;
    }
  return config;
}

TEST(InverseTable, NothingWithoutTheFlagOrTheRecord) {
  TwoDLutHelper helper;
  EXPECT_FALSE(helper.CalInverseLut2dCfg());
  const std::string text = inverted(helper, smoothTable(5.0, 0.05), 0.0F);
  EXPECT_EQ(text, "start inverse_flag 0.000000\n normal 2D_LUT processing...\n");
  EXPECT_EQ(helper.record()->delta[3][3].h,
            static_cast<float>(smoothTable(5.0, 0.05).lut_2d_h[51]));
}

TEST(InverseTable, RemarksGoToWhoeverAsks) {
  TwoDLutHelper helper;
  Lut2DConfig config = smoothTable(5.0, 0.05);
  const std::string expected = inverted(helper, config);
  config.inverse_flag = 1.0F;
  helper.SetConfig(config);
  std::string process, own;
  setOutputChannel([&](std::string_view part) { process += part; });
  EXPECT_TRUE(helper.CalInverseLut2dCfg([&](std::string_view part) { own += part; }));
  EXPECT_TRUE(helper.CalInverseLut2dCfg({}));
  setOutputChannel({});
  EXPECT_EQ(own, expected);
  EXPECT_EQ(process, "");
}

TEST(InverseTable, ReadsReplacedChanges) {
  TwoDLutHelper helper;
  Lut2DConfig config = identityTable();
  config.lut_2d_h.fill(-4.0);  // every node lies in a triangle of targets but those of row 0
  // Targets are 4 degrees up: a node reads its own change and, with 4/15, the one before it, which
  // has been replaced already.
  std::array<double, 25> expected{};
  for (std::size_t i = 1; i < 24; ++i)
    expected[i] = 11.0 / 15.0 * 4.0 - 4.0 / 15.0 * expected[i - 1];
  const std::string text = inverted(helper, config);
  EXPECT_EQ(helper.UncoveredNodes(), 15);
  for (std::size_t i = 0; i <= 24; ++i)
    for (std::size_t j = 0; j < 16; ++j)
      EXPECT_NEAR(helper.record()->delta[i][j].h, expected[i], 1e-4) << i << " " << j;
  EXPECT_THAT(text, HasSubstr("start inverse_flag 1.000000\n inverse 2D_LUT processing, will "
                              "calculate new delta H and deltaS...\n\n start calculate new delta "
                              "H, delta S...\n\n ---------- error: can't find triangle ret=0 "
                              "H:0.000000,S:0.000000, h_idx:0, s_idx:0 ---------\n"));
  EXPECT_THAT(text, HasSubstr("find triangle- new_h_delta=2.9333"));
  EXPECT_THAT(text, HasSubstr("\n new diff map calculate delta H \n 0.000000,  0.000000, "));
  EXPECT_TRUE(text.ends_with(" 0.000000, \n"));
}

TEST(InverseTable, InterpolatesTheNegatedChanges) {
  // With changes only in hue and rows 0 to 22 all the same, each node's change is its negated
  // neighbour's: worked by hand for the two nodes next to a single changed row.
  TwoDLutHelper helper;
  Lut2DConfig config = identityTable();
  for (std::size_t j = 0; j < 16; ++j) config.lut_2d_h[16 * 8 + j] = -5.0;  // target 125, not 120
  inverted(helper, config);
  // Between targets 105 (row 7) and 125 (row 8) node 120 takes 15/20 of row 8's +5.
  EXPECT_NEAR(helper.record()->delta[8][7].h, 3.75F, 1e-5F);
  EXPECT_EQ(helper.record()->delta[7][7].h, 0.0F);
  EXPECT_EQ(helper.record()->delta[9][7].h, 0.0F);
  EXPECT_EQ(helper.UncoveredNodes(), 0);
  EXPECT_EQ(helper.record()->target[8][7].h, 125.0F);  // not changed
}

TEST(InverseTable, UndoesSmoothChangesToFirstOrder) {
  TwoDLutHelper helper;
  inverted(helper, smoothTable(2.0, 0.02));
  double worstHue = 0.0, worstSat = 0.0;
  for (std::size_t i = 0; i < 24; ++i)
    for (std::size_t j = 1; j < 14; ++j) {
      const auto& delta = helper.record()->delta[i][j];
      const Lut2DConfig forward = smoothTable(2.0, 0.02);
      worstHue = std::max(worstHue, std::fabs(delta.h + forward.lut_2d_h[16 * i + j]));
      worstSat = std::max(worstSat, std::fabs(delta.s / 256.0 + forward.lut_2d_s[16 * i + j]));
    }
  // A neighbour that was replaced before counts with the wrong sign: twice its change times its
  // weight, at most 2 / 15 across hue and 0.02 * 15 across saturation.
  EXPECT_LT(worstHue, 0.55);
  EXPECT_LT(worstSat, 2.0 * 0.02 * (2.0 / 15.0 + 0.02 * 15.0));
}

TEST(InverseTable, DegenerateTrianglesGiveTheHueTwice) {
  TwoDLutHelper helper;
  Lut2DConfig config = identityTable();
  config.lut_1d_s.fill(0.5);  // all targets on a line
  inverted(helper, config);
  EXPECT_EQ(helper.record()->delta[5][3].h, 75.0F);
  EXPECT_EQ(helper.record()->delta[5][3].s, 75.0F);
  inverted(helper, {});  // nothing but zeros
  EXPECT_EQ(helper.record()->delta[5][3].h, 0.0F);
}

}  // namespace
}  // namespace greycard
