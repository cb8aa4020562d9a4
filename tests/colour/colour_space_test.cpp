#include "colour_space.h"

#include <gtest/gtest.h>

#include <cmath>

#include "greycard/delta_e.h"
#include "greycard/image_utils_ex.h"
#include "greycard/luma.h"
#include "matrix_functions.h"

namespace greycard {
namespace {

// Widely published L*a*b* (D65) of the sRGB primaries and of middle grey, two decimals; the usual
// tables are made with whites that differ from ours in the fifth digit.
const struct {
  const char* name;
  Vector3 sRGB, lab;
} kPrimaries[] = {
    {"red", {1, 0, 0}, {53.24, 80.09, 67.20}},    {"green", {0, 1, 0}, {87.73, -86.18, 83.18}},
    {"blue", {0, 0, 1}, {32.30, 79.19, -107.86}}, {"grey", {0.5, 0.5, 0.5}, {53.39, 0.0, 0.0}},
    {"white", {1, 1, 1}, {100.0, 0.0, 0.0}},      {"black", {0, 0, 0}, {0.0, 0.0, 0.0}}};

TEST(ColourSpace, PrimariesHaveTheirPublishedLab) {
  for (const auto& c : kPrimaries) {
    SCOPED_TRACE(c.name);
    EXPECT_LT(deltaE76(sRGB_to_CIELab(c.sRGB), c.lab), 0.05);
    Vector3 back, lab;
    ImageUtilsEx::CIELabTosRGB(back, c.lab);
    ImageUtilsEx::sRGBToCIELab(lab, c.sRGB);
    EXPECT_EQ(lab, sRGB_to_CIELab(c.sRGB));
    for (std::size_t i = 0; i < 3; ++i)
      // 0.005 of L* near black is worth 0.0006; the two matrices are inverse to four decimals.
      EXPECT_NEAR(back[i], c.sRGB[i], 0.004);
  }
}

TEST(Luma, OfSamplesIsRoundedInWholeNumbers) {
  const std::pair<std::array<std::uint16_t, 3>, int> cases[] = {
      {{255, 0, 0}, 76},   // 76.245
      {{0, 0, 250}, 29},   // 28.5, halves up
      {{0, 500, 0}, 294},  // 293.5
      {{10, 10, 10}, 10},
      {{65535, 65535, 65535}, 65535}};
  for (const auto& [rgb, luma] : cases) EXPECT_EQ(luma601(rgb.data()), luma);
  EXPECT_NEAR(luma601({255.0, 0.0, 0.0}), 76.245, 1e-12);
}

TEST(SRgbTransfer, OddMonotoneAndNearlyInverse) {
  double previous = -INFINITY, worst = 0.0;
  for (int i = -1500; i <= 1500; ++i) {
    const double v = i / 1000.0;
    EXPECT_EQ(sRGBEncode(-v), -sRGBEncode(v)) << v;
    EXPECT_EQ(sRGBDecode(-v), -sRGBDecode(v)) << v;
    EXPECT_GT(sRGBEncode(v), previous) << v;
    previous = sRGBEncode(v);
    worst = std::max(worst, std::fabs(sRGBDecode(sRGBEncode(v)) - v));
  }
  EXPECT_GT(worst, 1e-9) << "the shortened exponent should show";
  // Branch points of the two directions differ by 4e-8, the exponents by 3.3e-8.
  EXPECT_LT(worst, 1e-6);
  EXPECT_NEAR(sRGBDecode(0.5), 0.21404114, 5e-9);  // IEC 61966-2-1 at half scale
  EXPECT_TRUE(std::isnan(sRGBEncode(NAN)) && std::isnan(sRGBDecode(NAN)));
}

TEST(ColourSpace, TablesFollowTheFormulaOnBothBranches) {
  // Worked by hand: cube roots of 1 and 1/8; the straight line at t = 0.001.
  const double xyz[] = {100, 100, 100, 12.5, 12.5, 100, 0.1, 0.1, 0.1};
  const double expected[] = {100, 0, 0, 42, 0, -100, 116 * 0.007787, 0, 0};
  const auto lab = XYZ2Lab(mLoadMem(3, 3, xyz), mones(1, 3) + 99.0);
  for (std::size_t i = 0; i < 9; ++i) EXPECT_NEAR(lab.data()[i], expected[i], 1e-12) << i;
  EXPECT_THROW(XYZ2Lab(meye(2), mones(1, 3)), std::invalid_argument);
}

TEST(ColourSpace, CameraPipelineAppliesGammaMatrixAndClip) {
  // A curve that squares red; a matrix that swaps red and twice green.
  const CDoubleMatrix grid(0.0, 1.0 / 255.0, 1.0 + 1e-9);
  CDoubleMatrix curves(256, 3), swap(3, 3), lab;
  for (std::int32_t i = 0; i < 256; ++i)
    for (std::int32_t c = 0; c < 3; ++c) curves[i][c] = std::pow(grid[i][0], c == 0 ? 2.0 : 1.0);
  swap.Init3x3(0, 2, 0, 1, 0, 0, 0, 0, 1);
  const double rgb[] = {0.5, 0.3, 0.2, 0.4, 0.9, 0.1};
  RGB_to_CIELAB(lab, mLoadMem(2, 3, rgb), grid, curves, swap);
  const Vector3 expected[] = {sRGB_to_CIELab({0.6, 0.25, 0.2}), sRGB_to_CIELab({1.0, 0.16, 0.1})};
  for (std::size_t i = 0; i < 6; ++i) EXPECT_NEAR(lab.data()[i], expected[i / 3][i % 3], 1e-6);
}

}  // namespace
}  // namespace greycard
