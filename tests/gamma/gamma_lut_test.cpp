#include "greycard/gamma_lut.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "gamma_lut_matrix.h"

namespace greycard {
namespace {

using Curve = std::vector<std::int32_t>;

TEST(GammaLUT, TakesTitlesOfSevenCharacters) {
  GammaLUT lut;
  EXPECT_TRUE(lut.SetTitle("outdoor"));
  EXPECT_STREQ(lut.m_szTitle.data(), "outdoor");
  EXPECT_FALSE(lut.SetTitle("outdoors"));
  EXPECT_STREQ(lut.m_szTitle.data(), "");
  EXPECT_FALSE(lut.SetTitle(nullptr));
}

TEST(GammaLUTBuilders, TakeEveryFourthEntry) {
  Curve curve(1024);
  for (std::size_t i = 0; i < curve.size(); ++i) curve[i] = static_cast<std::int32_t>(3 * i);
  using Builder = bool (*)(CDoubleMatrix&, std::span<const std::int32_t>);
  for (const auto& [build, divisor] : {std::pair<Builder, double>{GenerateGammaLUT255, 1.0},
                                       {GenerateGammaLUT255_14bit, 62.4},
                                       {GenerateGammaLUTNorm, 255.0}}) {
    CDoubleMatrix column(256, 1);
    ASSERT_TRUE(build(column, curve));
    for (std::int32_t r = 0; r < 256; ++r) EXPECT_EQ(column[r][0], 12.0 * r / divisor);
    EXPECT_FALSE(build(column, Curve(1023)));
    CDoubleMatrix wide(256, 2);
    EXPECT_FALSE(build(wide, curve));
    EXPECT_TRUE(wide == CDoubleMatrix(256, 2));
  }
}

TEST(GammaLUT12bit, ExpandsLevelsAtQuarterStepsAndWrapsTheRest) {
  std::array<std::int16_t, 4096> lut;
  lut.fill(-7);
  ASSERT_TRUE(GenerateGammaLUT12bit(lut, Curve(1024)));
  for (std::size_t i = 0; i < 4096; ++i) ASSERT_EQ(lut[i], i < 4095 ? 0 : -7) << i;

  // 0, 63.75, 127.5 and 191.25 levels, then 255; the last 0 is only the end of an interval.
  Curve steps(1024, 255);
  steps.front() = steps.back() = 0;
  ASSERT_TRUE(GenerateGammaLUT12bit(lut, steps));
  EXPECT_EQ(Curve(lut.begin(), lut.begin() + 5), (Curve{0, 1024, 2048, 3071, 4095}));
  EXPECT_EQ(Curve(lut.begin() + 4088, lut.end()),
            (Curve{4095, 3071, 2048, 1024, 1024, 1024, 1024, -7}));

  ASSERT_TRUE(GenerateGammaLUT12bit(lut, Curve(1024, 4335)));
  EXPECT_EQ(lut[0], 69615 - 65536);
  steps[0] = std::numeric_limits<std::int32_t>::min();
  steps[1] = std::numeric_limits<std::int32_t>::max();
  EXPECT_TRUE(GenerateGammaLUT12bit(lut, steps));
  EXPECT_FALSE(GenerateGammaLUT12bit(lut, Curve(1025)));
}

}  // namespace
}  // namespace greycard
