// The spectral tables, the lights' whites and the chart's target colours.

#include <gtest/gtest.h>

#include <cmath>

#include "color_calc.h"
#include "greycard/errors.h"
#include "spectral_tables.h"
#include "white_adaptation.h"

namespace greycard {
namespace {

// data/README.md, "Sanity figures".
const struct {
  Illum light;
  Vector3 narrow;     // sums over 400-700 nm, three decimals, computed apart from this library
  Vector3 published;  // CIE 15:2004, sums over 380-780 nm; horizon: the same sums
} kWhites[] = {{illum_A, {109.680, 100.0, 35.575}, {109.85, 100.0, 35.58}},
               {illum_D50, {96.320, 100.0, 82.429}, {96.42, 100.0, 82.51}},
               {illum_D65, {94.939, 100.0, 108.706}, {95.04, 100.0, 108.88}},
               {illum_TL84, {100.941, 100.0, 64.345}, {100.96, 100.0, 64.35}},
               {illum_Horizon, {119.148, 100.0, 21.477}, {119.384, 100.0, 21.461}}};

TEST(Lights, WhitesAgreeWithThePublishedOnes) {
  for (const auto& c : kWhites) {
    SCOPED_TRACE(illumName(c.light));
    const auto white = whitePoint(c.light);
    for (std::size_t i = 0; i < 3; ++i) {
      EXPECT_NEAR(white[i], c.narrow[i], 0.00051);  // three printed decimals
      EXPECT_NEAR(white[i], c.published[i], 0.24);  // what lies outside 400-700 nm
    }
  }
}

TEST(Lights, NamesRoundTripAndUnknownOnesAreEmpty) {
  for (int code = illum_A; code <= illum_LED2; ++code)
    EXPECT_EQ(illumFromName(illumName(static_cast<Illum>(code))), static_cast<Illum>(code));
  EXPECT_EQ(illumFromName("tl84"), illum_TL84);
  for (const char* text : {"", static_cast<const char*>(nullptr)})
    EXPECT_EQ(illumFromName(text), std::nullopt);
  EXPECT_EQ(illumFromName("D6"), std::nullopt);
  EXPECT_STREQ(illumName(illum_unknown), "unknown");
  EXPECT_EQ(illumTitle(illum_D50), "D50");
  EXPECT_EQ(illumTitle(illum_Lowlight), "Lowlight (reference colours of TL84)");
  EXPECT_EQ(illumTitle(illum_LED2), "LED2 (reference colours of D65)");
}

TEST(WhiteAdaptation, RefusesAWhiteWithoutResponse) {
  EXPECT_THROW(DeltaECWhiteAdapt({0, 0, 0}, {95, 100, 108}, 1.0), NumericError);
}

TEST(WhiteAdaptation, InvertsAndMultipliesMatrices) {
  constexpr Matrix3 kHalf{{{0, 0.5, 0}, {0, 0, 0.5}, {0.5, 0, 0}}},
      kTwice{{{0, 0, 2}, {2, 0, 0}, {0, 2, 0}}};
  EXPECT_EQ(DeltaECWhiteAdapt::Matrix3x3Invert(kHalf), kTwice);
  EXPECT_EQ(DeltaECWhiteAdapt::Matrix3x3Multiply(kHalf, kHalf),
            (Matrix3{{{0, 0, 0.25}, {0.25, 0, 0}, {0, 0.25, 0}}}));
}

}  // namespace
}  // namespace greycard
