#include "greycard/picture_correction.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "light_table.h"
#include "srgb_transfer.h"

namespace greycard {
namespace {

constexpr Matrix3 kIdentity{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
constexpr Vector3 kUnit{1, 1, 1};

TEST(PictureCorrection, NothingToCorrectChangesNothing) {
  Picture picture(256, 1, 3, 8);
  for (int code = 0; code < 256; ++code)
    for (int c = 0; c < 3; ++c)
      picture.pixel(code, 0)[c] = static_cast<std::uint16_t>((code + 80 * c) % 256);
  EXPECT_EQ(correctPicture(picture, SampleLevels::eightBit(SampleEncoding::sRGB), kUnit, kIdentity)
                .samples,
            picture.samples);
  const auto grey = correctPicture({256, 1, 1, 8}, SampleLevels::eightBit(SampleEncoding::linear),
                                   kUnit, kIdentity);
  EXPECT_EQ(grey.channels, 3);
  EXPECT_EQ(grey.samples, std::vector<std::uint16_t>(3 * 256, 0));
}

TEST(PictureCorrection, IsTheFormulaToTheNearestCode) {
  Picture picture(300, 20, 3, 16);
  std::mt19937 random(7);
  std::uniform_int_distribution<int> code(0, 60000), dark(0, 2000);
  for (std::size_t i = 0; i < picture.samples.size(); ++i)
    picture.samples[i] = static_cast<std::uint16_t>(i % 4 == 0 ? dark(random) : code(random));
  const Vector3 gains{1.9, 1.0, 1.4};
  const Matrix3 m{{{1.6, -0.4, -0.2}, {-0.3, 1.5, -0.2}, {0.0, -0.6, 1.6}}};

  // Two values make a straight line, none the sRGB curve.
  const std::vector<double> line{0.0, 1.0};
  for (const bool encoded : {false, true}) {
    const auto corrected = correctPicture(picture, {512, 60000, 1.0, SampleEncoding::linear}, gains,
                                          m, encoded ? ToneCurves{} : ToneCurves{line, line, line});
    for (std::size_t i = 0; i < picture.samples.size(); ++i) {
      const std::uint16_t* rgb = &picture.samples[i - i % 3];
      double v = 0.0;
      for (std::size_t j = 0; j < 3; ++j)
        v += m[i % 3][j] * gains[j] * (rgb[j] - 512.0) / (60000.0 - 512.0);
      v = std::clamp(v, 0.0, 1.0);
      const double sRGB = v <= 0.0031308 ? 12.92 * v : 1.055 * std::pow(v, 1 / 2.4) - 0.055;
      ASSERT_NEAR(corrected.samples[i], 255.0 * (encoded ? sRGB : v), 0.51);
    }
  }
}

// Between the entries of its table, which stand at even steps of the sRGB code; beyond them the
// last step goes on.
TEST(PictureCorrection, LightGoesThroughItsOwnCurve) {
  const std::vector<double> curve{0.0, 0.2, 1.0}, line{0.0, 1.0};
  const std::pair<double, double> cases[] = {{0.25, 0.1}, {0.5, 0.2},  {0.75, 0.6},
                                             {1.0, 1.0},  {1.25, 1.4}, {-0.25, -0.1}};
  for (const auto& [code, light] : cases)
    EXPECT_NEAR(tableLight(curve, sRGBDecode(code)), light, 1e-6) << code;
  Picture picture(3, 1, 1, 8);
  picture.samples = {51, 153, 255};
  EXPECT_EQ(correctPicture(picture, SampleLevels::eightBit(SampleEncoding::sRGB), kUnit, kIdentity,
                           {line, line, line}, curve)
                .samples,
            (std::vector<std::uint16_t>{20, 20, 20, 92, 92, 92, 255, 255, 255}));
}

TEST(PictureCorrection, RefusesWhatMakesNoPicture) {
  const Picture good(2, 2, 3, 8);
  Picture short_of_samples = good;
  short_of_samples.samples.pop_back();
  const auto levels = SampleLevels::eightBit(SampleEncoding::sRGB);
  const double nan = std::nan("");
  const std::vector<double> one{1.0}, bad{0.0, nan, 1.0};
  EXPECT_THROW(correctPicture(short_of_samples, levels, kUnit, kIdentity), std::invalid_argument);
  EXPECT_THROW(correctPicture(good, {255, 0}, kUnit, kIdentity), std::invalid_argument);
  EXPECT_THROW(correctPicture(good, levels, {1, nan, 1}, kIdentity), std::invalid_argument);
  EXPECT_THROW(correctPicture(good, levels, kUnit, {{{HUGE_VAL}}}), std::invalid_argument);
  EXPECT_THROW(correctPicture(good, levels, kUnit, kIdentity, {one}), std::invalid_argument);
  EXPECT_THROW(correctPicture(good, levels, kUnit, kIdentity, {bad}), std::invalid_argument);
  EXPECT_THROW(correctPicture(good, levels, kUnit, kIdentity, {}, one), std::invalid_argument);
  for (const SampleLevels& extreme :
       {SampleLevels{0, 255, 1.1e20}, SampleLevels{1e300, std::nextafter(1e300, HUGE_VAL), 1e305}})
    EXPECT_THROW(correctPicture(good, extreme, kUnit, kIdentity), std::invalid_argument);
  EXPECT_NO_THROW(correctPicture(good, {0, 255, 1e20}, kUnit, kIdentity));
  EXPECT_NO_THROW(correctPicture(good, levels, {1e6, 1, 1}, kIdentity));
  EXPECT_THROW(correctPicture(good, levels, {1.01e6, 1, 1}, kIdentity), std::invalid_argument);
}

}  // namespace
}  // namespace greycard
