#include "lattice/working_picture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace greycard {
namespace {

Picture noisy(int width, int height, int channels, int bits, int ceiling) {
  Picture picture(width, height, channels, bits);
  std::mt19937 random(5);
  for (auto& sample : picture.samples)
    sample = static_cast<std::uint16_t>(random() % (static_cast<unsigned>(ceiling) + 1));
  return picture;
}

// Mean of the samples that a working pixel stands for.
double meanOf(const Picture& picture, const PixelWindow& window, int factor, int x, int y, int c) {
  double sum = 0.0;
  for (int dy = 0; dy < factor; ++dy)
    for (int dx = 0; dx < factor; ++dx)
      sum += picture.pixel(window.left + x * factor + dx, window.top + y * factor + dy)[c];
  return sum / (factor * factor);
}

TEST(WorkingPicture, IsTheMeanOfBlocksInAnyDepth) {
  const PixelWindow window{3, 2, 41, 29};
  for (const int channels : {1, 3}) {
    for (const int bits : {8, 16}) {
      const auto picture = noisy(50, 33, channels, bits, bits == 8 ? 255 : 65535);
      const WorkingPictures pictures(picture, window, std::nullopt);
      for (const int factor : {1, 2, 3, 5, 8, 11, 29}) {
        const auto working = pictures.reduced(factor);
        ASSERT_EQ(working.width, 41 / factor);
        ASSERT_EQ(working.height, 29 / factor);
        ASSERT_EQ(working.planes, channels);
        const double toLevels = 255.0 / picture.ceiling();
        for (int c = 0; c < channels; ++c)
          for (int y = 0; y < working.height; ++y)
            for (int x = 0; x < working.width; ++x)
              ASSERT_NEAR(working.row(c, y)[x], toLevels * meanOf(picture, window, factor, x, y, c),
                          0.51)
                  << channels << " channels of " << bits << " bits, factor " << factor;
        const auto place = working.toPicture(0.0, 0.0);
        EXPECT_DOUBLE_EQ(place.x, 3 + 0.5 * (factor - 1));
        EXPECT_NEAR(working.toWorking(place).x, 0.0, 1e-12);
      }
    }
  }
}

TEST(WorkingPicture, DarkAndLinearPicturesBecomeBrightAndEncoded) {
  // A tenth of the scale is brought to where bright parts are elsewhere, 200 of 255.
  const auto dark = noisy(60, 60, 3, 8, 25);
  const auto bright = WorkingPictures(dark, {0, 0, 60, 60}, std::nullopt).reduced(1);
  EXPECT_NEAR(bright.gain, 8.0, 1e-12);
  EXPECT_EQ(bright.row(1, 7)[9], dark.pixel(9, 7)[1] * 8);

  Picture linear(30, 30, 1, 16);
  linear.samples.assign(linear.samples.size(), 32768);
  const SampleLevels levels{0, 65535, 1, SampleEncoding::linear};
  const auto encoded = WorkingPictures(linear, {0, 0, 30, 30}, levels).reduced(3);
  EXPECT_NEAR(encoded.row(0, 0)[0], 255.0 * std::pow(0.5, 1 / 2.2), 0.51);
}

TEST(WorkingPicture, ChangesOfSizeKeepPlacesAndSmoothingIsABinomial) {
  // A ramp: every change of size must leave its values at their places.
  Picture ramp(40, 24, 1, 8);
  for (int y = 0; y < 24; ++y)
    for (int x = 0; x < 40; ++x) *ramp.pixel(x, y) = static_cast<std::uint16_t>(40 + 3 * x + 2 * y);
  auto picture = WorkingPictures(ramp, {0, 0, 40, 24}, std::nullopt).reduced(1);
  for (const auto& other : {halved(picture), doubled(picture)})
    for (int y = 2; y < other.height - 2; ++y)
      for (int x = 2; x < other.width - 2; ++x) {
        const auto at = other.toPicture(x, y);
        ASSERT_NEAR(other.row(0, y)[x], 40 + 3 * at.x + 2 * at.y, 0.6) << other.factor;
      }

  Picture dot(11, 11, 1, 8);
  *dot.pixel(5, 5) = 255;
  *dot.pixel(0, 0) = 255;  // keeps the rest from being brightened
  auto smoothed = WorkingPictures(dot, {0, 0, 11, 11}, std::nullopt).reduced(1);
  smoothed.gain = 1.0;
  smooth(smoothed);
  const int bell[5] = {1, 4, 6, 4, 1};
  for (int dy = -2; dy <= 2; ++dy)
    for (int dx = -2; dx <= 2; ++dx)
      EXPECT_NEAR(smoothed.row(0, 5 + dy)[5 + dx], 255.0 * bell[dx + 2] * bell[dy + 2] / 256.0,
                  1.0);
}

}  // namespace
}  // namespace greycard
