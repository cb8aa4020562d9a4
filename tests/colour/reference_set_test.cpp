// The spectral tables, the lights' whites and the chart's target colours.

#include <gtest/gtest.h>

#include <cmath>

#include "color_calc.h"
#include "greycard/delta_e.h"
#include "greycard/errors.h"
#include "greycard/macbeth_chart_data.h"
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
}

TEST(SpectralTables, TheGridLandsOnTheTablesOwnValues) {
  const auto grid = wavelengthGrid();
  ASSERT_EQ(grid.rows(), 61);
  const auto reflectances = chartReflectances(grid);
  for (std::int32_t i = 0; i < 61; ++i) {
    const auto row = static_cast<std::size_t>(i) + 4;  // the table begins four steps before 400 nm
    EXPECT_EQ(kChartReflectanceTable.wavelengthNm[row], grid[i][0]);
    for (std::size_t patch = 0; patch < kPatchCount; ++patch)
      EXPECT_EQ(reflectances[i][patch], kChartReflectanceTable.values[row * 24 + patch]);
  }
}

// data/README.md: L*a*b* under D65 from sums over 380-780 nm, computed apart from this library.
const Vector3 kChartLabD65[kPatchCount] = {
    {37.30, 13.69, 15.56},  {66.20, 14.47, 17.74},   {50.78, -1.47, -21.27}, {42.74, -16.30, 22.34},
    {56.47, 11.52, -24.40}, {71.37, -31.39, 1.98},   {61.07, 31.13, 57.16},  {40.83, 15.40, -41.89},
    {50.95, 45.92, 15.09},  {30.70, 23.90, -22.07},  {72.00, -27.18, 58.03}, {71.64, 15.32, 65.88},
    {29.99, 24.61, -50.87}, {55.66, -41.68, 34.77},  {40.94, 52.85, 25.61},  {81.64, -1.58, 79.47},
    {51.00, 49.42, -15.04}, {51.69, -24.73, -25.98}, {95.46, -0.36, 0.78},   {80.95, 0.14, 0.13},
    {66.38, 0.05, -0.07},   {52.18, 0.06, -0.09},    {36.48, -0.19, -0.47},  {21.41, -0.03, -0.95}};

TEST(ReferenceSet, ChartUnderD65) {
  MacbethChartData chart;
  ASSERT_TRUE(chart.LoadMCCCIELAB(illum_D65));
  for (std::size_t i = 0; i < kPatchCount; ++i)
    // 0.15 is the most that leaving out what is below 400 and above 700 nm changes a patch.
    EXPECT_LT(deltaE76(chart.m_RefLab[i], kChartLabD65[i]), 0.16) << patchName(static_cast<int>(i));
}

TEST(ReferenceSet, LightsWithoutASpectrumAreD65ToTheBit) {
  const auto d65 = ColorCalc(illum_D65, 0).targetLab();
  for (const int code : {-1, 3, 5, 6, 9, 10, 11, 12, 99})
    EXPECT_EQ(ColorCalc(static_cast<Illum>(code), 0).targetLab(), d65) << code;
  EXPECT_EQ(ColorCalc(illum_Lowlight, 0).targetLab(), ColorCalc(illum_TL84, 0).targetLab());
}

TEST(ReferenceSet, AdaptedGreysStayGrey) {
  for (const Illum light : {illum_A, illum_D50, illum_Horizon, illum_TL84}) {
    const auto lab = ColorCalc(light, 0).targetLab();
    for (std::size_t i = 18; i < kPatchCount; ++i)
      // The neutral reflectances are flat to 3 %, so their chroma is small in any light.
      EXPECT_LT(std::hypot(lab[i][1], lab[i][2]), 2.0) << illumName(light) << " " << i;
    EXPECT_NE(lab, ColorCalc(illum_D65, 0).targetLab()) << "metamerism should show";
  }
}

TEST(WhiteAdaptation, WhiteGoesToWhiteAndBack) {
  const auto a = whitePoint(illum_A), d65 = whitePoint(illum_D65);
  const Vector3 colour{30.0, 20.0, 10.0};
  Vector3 white, there, back, untouched;
  const DeltaECWhiteAdapt full(a, d65, 1.0);
  full.AdaptXYZ(white, a);
  full.AdaptXYZ(there, colour);
  DeltaECWhiteAdapt(d65, a, 1.0).AdaptXYZ(back, there);
  DeltaECWhiteAdapt(a, d65, 0.0).AdaptXYZ(untouched, colour);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_NEAR(white[i], d65[i], 1e-10);
    EXPECT_NEAR(back[i], colour[i], 1e-10);
    EXPECT_NEAR(untouched[i], colour[i], 1e-10);
  }
  EXPECT_THROW(DeltaECWhiteAdapt({0, 0, 0}, d65, 1.0), NumericError);
}

}  // namespace
}  // namespace greycard
