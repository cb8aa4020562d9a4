#include "greycard/neutral_row.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace greycard {
namespace {

// CIE 15:2004, 8.2.1, for greys brighter than Y = 0.009.
double lightOf(double lightness) {
  return std::pow((lightness + 16.0) / 116.0, 3.0);
}
double lightnessOf(double light) {
  return 116.0 * std::cbrt(light) - 16.0;
}

struct GreyRow {
  PatchTable reference{}, light{};
  GreyRow() {
    const double lightness[] = {96, 81, 66, 56, 46, 36};
    for (std::size_t i = 0; i < 6; ++i) {
      reference[18 + i] = {lightness[i], 5.0, -5.0};
      light[18 + i].fill(0.7 * lightOf(lightness[i]));
    }
  }
};

TEST(NeutralRow, TellsThePatchThatIsFarthestOff) {
  GreyRow row;
  EXPECT_NEAR(neutralRow(row.light, row.reference, SampleEncoding::linear, {}).largest, 0.0, 1e-4);
  const double mean = row.light[20][0] * 1.3;
  row.light[20] = {mean + 0.05, mean - 0.02, mean - 0.03};
  // The one factor takes a sixth of the logarithm back, from all patches alike.
  const NeutralRow off = neutralRow(row.light, row.reference, SampleEncoding::linear, {});
  EXPECT_EQ(off.patch, 20);
  EXPECT_NEAR(off.largest, lightnessOf(lightOf(66.0) * std::pow(1.3, 5.0 / 6.0)) - 66.0, 1e-3);
  EXPECT_NEAR(neutralRow(row.light, row.reference, SampleEncoding::linear, {20}).largest, 0.0,
              1e-4);
  row.light[18].fill(0.0);
  row.light[23].fill(std::numeric_limits<double>::infinity());
  EXPECT_NEAR(neutralRow(row.light, row.reference, SampleEncoding::linear, {22}).largest,
              lightnessOf(lightOf(66.0) * std::pow(1.3, 2.0 / 3.0)) - 66.0, 1e-3);
  row.reference[19][0] = 0.0;  // two are left
  const NeutralRow none = neutralRow(row.light, row.reference, SampleEncoding::linear, {22});
  EXPECT_EQ(none.largest + none.otherwise, 0.0);
  EXPECT_EQ(none.patch, 18);
}

// IEC 61966-2-1; all greys lie above its straight part.
TEST(NeutralRow, TellsWhetherTheOtherEncodingFits) {
  GreyRow decoded, encoded;
  for (std::size_t i = 18; i < 24; ++i) {
    decoded.light[i].fill(std::pow((decoded.light[i][0] + 0.055) / 1.055, 2.4));
    encoded.light[i].fill(1.055 * std::pow(encoded.light[i][0], 1 / 2.4) - 0.055);
  }
  const NeutralRow wasLinear =
                       neutralRow(decoded.light, decoded.reference, SampleEncoding::sRGB, {}),
                   wasSRgb =
                       neutralRow(encoded.light, encoded.reference, SampleEncoding::linear, {});
  EXPECT_GT(wasLinear.largest, 5.0);
  EXPECT_NEAR(wasLinear.otherwise, 0.0, 0.01);
  EXPECT_GT(wasSRgb.largest, 5.0);
  EXPECT_NEAR(wasSRgb.otherwise, 0.0, 0.01);
}

}  // namespace
}  // namespace greycard
