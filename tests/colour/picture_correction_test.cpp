#include "greycard/picture_correction.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <random>

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
  const std::vector<double> straight{0.0, 1.0};
  const auto grey = correctPicture({256, 1, 1, 8}, SampleLevels::eightBit(SampleEncoding::linear),
                                   kUnit, kIdentity, {straight, straight, straight});
  EXPECT_EQ(grey.channels, 3);
  EXPECT_EQ(grey.samples, std::vector<std::uint16_t>(3 * 256, 0));
}

// The same from the formulas, in code units before rounding.
Vector3 slowly(const std::uint16_t* rgb, const Vector3& gains, const Matrix3& m,
               const std::function<double(double)>& curve) {
  Vector3 codes;
  for (std::size_t i = 0; i < 3; ++i) {
    double v = 0.0;
    for (std::size_t j = 0; j < 3; ++j)
      v += m[i][j] * gains[j] * (rgb[j] - 512.0) / (60000.0 - 512.0);
    codes[i] = 255.0 * std::clamp(curve(std::clamp(v, 0.0, 1.0)), 0.0, 1.0);
  }
  return codes;
}

TEST(PictureCorrection, IsTheFormulaToTheNearestCode) {
  Picture picture(300, 20, 3, 16);
  std::mt19937 random(7);
  std::uniform_int_distribution<int> code(0, 60000), dark(0, 2000);
  for (std::size_t i = 0; i < picture.samples.size(); ++i)
    picture.samples[i] = static_cast<std::uint16_t>(i % 4 == 0 ? dark(random) : code(random));
  const SampleLevels levels{512, 60000, 1.0, SampleEncoding::linear};
  const Vector3 gains{1.9, 1.0, 1.4};
  const Matrix3 matrix{{{1.6, -0.4, -0.2}, {-0.3, 1.5, -0.2}, {0.0, -0.6, 1.6}}};

  // A curve of 256 values is joined by chords.
  std::vector<double> square(256);
  for (std::size_t i = 0; i < 256; ++i)
    square[i] = std::min(1.2 * std::pow(static_cast<double>(i) / 255, 2), 1.0);
  const auto chords = [&](double v) {
    const double at = v * 255.0, below = std::min(std::floor(at), 254.0);
    const auto i = static_cast<std::size_t>(below);
    return square[i] + (at - below) * (square[i + 1] - square[i]);
  };
  const auto sRGB = [](double v) {
    return v <= 0.0031308 ? 12.92 * v : 1.055 * std::pow(v, 1 / 2.4) - 0.055;
  };
  const struct {
    ToneCurves curves;
    std::function<double(double)> formula;
  } cases[] = {{{square, square, square}, chords}, {{}, sRGB}};
  for (const auto& c : cases) {
    const auto corrected = correctPicture(picture, levels, gains, matrix, c.curves);
    ASSERT_EQ(corrected.bits, 8);
    for (int y = 0; y < picture.height; ++y)
      for (int x = 0; x < picture.width; ++x) {
        const auto exact = slowly(picture.pixel(x, y), gains, matrix, c.formula);
        for (std::size_t i = 0; i < 3; ++i) ASSERT_NEAR(corrected.pixel(x, y)[i], exact[i], 0.51);
      }
  }
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
}

}  // namespace
}  // namespace greycard
