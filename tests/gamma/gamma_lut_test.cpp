#include "greycard/gamma_lut.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "gamma_lut_matrix.h"

namespace greycard {
namespace {

using Curve = std::vector<std::int32_t>;

Curve ramp(std::int32_t step) {
  Curve curve(1024);
  for (std::size_t i = 0; i < curve.size(); ++i) curve[i] = static_cast<std::int32_t>(i) * step;
  return curve;
}

TEST(GammaLUT, StartsAtZeroAndTakesTitlesOfSevenCharacters) {
  GammaLUT lut;
  EXPECT_EQ(lut.m_pLUTr, (std::array<std::int32_t, 1024>{}));
  EXPECT_TRUE(lut.SetTitle("outdoor"));
  EXPECT_STREQ(lut.m_szTitle.data(), "outdoor");
  EXPECT_TRUE(lut.SetTitle("dark"));
  EXPECT_STREQ(lut.m_szTitle.data(), "dark");
  for (const char* refused :
       {"outdoors", "much longer than that", static_cast<const char*>(nullptr)}) {
    lut.SetTitle("before");
    EXPECT_FALSE(lut.SetTitle(refused));
    EXPECT_STREQ(lut.m_szTitle.data(), "");
  }
}

TEST(GammaLUTBuilders, TakeEveryFourthEntry) {
  struct Case {
    bool (*build)(CDoubleMatrix&, std::span<const std::int32_t>);
    double divisor;
  };
  for (const auto& [build, divisor] : {Case{GenerateGammaLUT255, 1.0},
                                       {GenerateGammaLUT255_14bit, 62.4},
                                       {GenerateGammaLUTNorm, 255.0}}) {
    CDoubleMatrix column(256, 1);
    ASSERT_TRUE(build(column, ramp(3)));
    for (std::int32_t r = 0; r < 256; ++r) EXPECT_EQ(column[r][0], 12.0 * r / divisor);

    for (const auto& [rows, cols] : {std::pair{255, 1}, {256, 2}, {1, 256}, {0, 0}}) {
      CDoubleMatrix wrong(rows, cols), before(rows, cols);
      EXPECT_FALSE(build(wrong, ramp(3)));
      EXPECT_TRUE(wrong == before);
    }
    EXPECT_FALSE(build(column, Curve(1023)));
    EXPECT_EQ(column[255][0], 12.0 * 255 / divisor);
  }
}

TEST(GammaLUT12bit, ExpandsLevelsAtQuarterSteps) {
  std::array<std::int16_t, 4096> lut;
  lut.fill(-7);
  ASSERT_TRUE(GenerateGammaLUT12bit(lut, Curve(1024)));
  for (std::size_t i = 0; i < 4095; ++i) ASSERT_EQ(lut[i], 0) << i;
  EXPECT_EQ(lut[4095], -7);

  // 255 at full scale everywhere but the first entry: 0, 63.75, 127.5, 191.25 levels, then 255.
  Curve step(1024, 255);
  step[0] = 0;
  step[1023] = 0;  // only the end of the last interval
  ASSERT_TRUE(GenerateGammaLUT12bit(lut, step));
  EXPECT_EQ((std::vector<int>{lut[0], lut[1], lut[2], lut[3], lut[4]}),
            (std::vector<int>{0, 1024, 2048, 3071, 4095}));
  EXPECT_EQ((std::vector<int>(lut.begin() + 4087, lut.end())),
            (std::vector<int>{4095, 4095, 3071, 2048, 1024, 1024, 1024, 1024, -7}));
}

TEST(GammaLUT12bit, WrapsLevelsBeyondItAndRefusesOtherLengths) {
  std::array<std::int16_t, 4096> lut{};
  // 4335 levels are 69615 codes, 4079 above 65536.
  ASSERT_TRUE(GenerateGammaLUT12bit(lut, Curve(1024, 4335)));
  EXPECT_EQ(lut[0], 4079);
  Curve extremes(1024, std::numeric_limits<std::int32_t>::min());
  extremes[1] = std::numeric_limits<std::int32_t>::max();
  EXPECT_TRUE(GenerateGammaLUT12bit(lut, extremes));
  EXPECT_FALSE(GenerateGammaLUT12bit(lut, Curve(1025)));
}

}  // namespace
}  // namespace greycard
