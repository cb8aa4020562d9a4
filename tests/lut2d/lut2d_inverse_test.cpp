#include <gmock/gmock.h>

#include <cmath>
#include <string>

#include "golden.h"
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

TEST(InverseTable, NothingWithoutTheFlagOrTheRecord) {
  TwoDLutHelper helper;
  EXPECT_FALSE(helper.CalInverseLut2dCfg());
  const std::string text = inverted(helper, randomTable(1, 5.0, 0.05), 0.0F);
  EXPECT_EQ(text, "start inverse_flag 0.000000\n normal 2D_LUT processing...\n");
  EXPECT_EQ(helper.record()->delta[3][3].h,
            static_cast<float>(randomTable(1, 5.0, 0.05).lut_2d_h[51]));
}

TEST(InverseTable, RemarksGoToWhoeverAsks) {
  TwoDLutHelper helper;
  Lut2DConfig config = randomTable(1, 5.0, 0.05);
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

// The whole record as the debugger log shows it, after the inverse of an uneven table.
TEST(InverseTable, OfAnUnevenTable) {
  Lut2DConfig config = identityTable();
  for (std::size_t i = 0; i < 24; ++i)
    for (std::size_t j = 0; j < 16; ++j) {
      const auto x = static_cast<double>(i), y = static_cast<double>(j);
      config.lut_2d_h[16 * i + j] = 9.0 * std::sin(x + 0.5 * y);
      config.lut_2d_s[16 * i + j] = 0.05 * std::cos(2.0 * x - 0.7 * y);
    }
  TwoDLutHelper helper;
  inverted(helper, config);
  std::string text;
  setDebugLog([&](int level, std::string_view category, std::string_view part) {
    text += part.ends_with('\n') && part.size() > 1 ? std::to_string(level) + std::string(category)
                                                    : "";
    text += part;
  });
  helper.DebugPrint();
  setDebugLog({});
  expectGolden("lut2d/golden/inverse.txt",
               text + std::to_string(helper.UncoveredNodes()) + " uncovered\n");
}

}  // namespace
}  // namespace greycard
