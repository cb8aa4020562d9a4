#include "colour_space.h"

#include <gtest/gtest.h>

#include <cmath>

#include "greycard/delta_e.h"
#include "greycard/errors.h"
#include "greycard/image_utils_ex.h"
#include "greycard/luma.h"
#include "matrix_functions.h"
#include "srgb_transfer.h"

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

// IEC 61966-2-1 and its mirror image below 0.
TEST(SRgbTransfer, IsOddAndHasItsSlope) {
  for (const double v : {0.001, 0.0031, 0.0032, 0.03, 0.041, 0.2, 0.9, 1.0, 1.3}) {
    const double linear = v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    const double encoded = v <= 0.0031308 ? 12.92 * v : 1.055 * std::pow(v, 1.0 / 2.4) - 0.055;
    for (const double sign : {1.0, -1.0}) {
      EXPECT_NEAR(sRGBDecode(sign * v), sign * linear, 1e-15);
      EXPECT_NEAR(sRGBEncode(sign * v), sign * encoded, 1e-6);
      const double slope = (sRGBDecode(sign * v + 1e-6) - sRGBDecode(sign * v - 1e-6)) / 2e-6;
      EXPECT_NEAR(sRGBDecodeSlope(sign * v), slope, 1e-4);
    }
  }
}

// A straight curve, and a matrix that leads beyond white.
TEST(ColourSpace, CameraColoursGoThroughCurveMatrixAndClip) {
  const CDoubleMatrix grid(0.0, 0.25, 1.0);
  CDoubleMatrix rgb(1, 3), curves(5, 3), swapped(3, 3), lab;
  rgb[0][0] = 0.2, rgb[0][1] = 0.3, rgb[0][2] = 0.6;
  for (std::int32_t i = 0; i < 5; ++i)
    for (std::int32_t c = 0; c < 3; ++c) curves[i][c] = 0.25 * i * (c + 1);
  swapped[0][2] = swapped[1][0] = swapped[2][1] = 1.0;
  RGB_to_CIELAB(lab, rgb, grid, curves, swapped);
  ASSERT_EQ(lab.rows(), 1);
  const Vector3 wanted = sRGB_to_CIELab({1.0, 0.2, 0.6});
  for (std::int32_t c = 0; c < 3; ++c)
    EXPECT_NEAR(lab[0][c], wanted[static_cast<std::size_t>(c)], 1e-9);
  EXPECT_THROW(RGB_to_CIELAB(lab, rgb, grid, curves, CDoubleMatrix(2, 3)), ShapeError);
  EXPECT_THROW(XYZ2Lab(CDoubleMatrix(1, 2), rgb), ShapeError);
  EXPECT_THROW(XYZ2Lab(rgb, CDoubleMatrix(2, 3)), ShapeError);
  const CDoubleMatrix grey = XYZ2Lab(rgb, rgb);
  EXPECT_EQ((Vector3{grey[0][0], grey[0][1], grey[0][2]}), (Vector3{100.0, 0.0, 0.0}));
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

}  // namespace
}  // namespace greycard
