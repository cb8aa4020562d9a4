#include "greycard/quad_sampler.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <utility>
#include <vector>

#include "greycard/macbeth_chart_data.h"

namespace greycard {
namespace {

constexpr SampleLevels kPlain{0.0, 255.0, 1.0, SampleEncoding::linear};

Picture speckled(int width, int height, int bits = 8) {
  Picture picture(width, height, 3, bits);
  for (std::size_t i = 0; i < picture.samples.size(); ++i)
    picture.samples[i] = static_cast<std::uint16_t>(40 + i * 7919 % (bits == 8 ? 97 : 9973));
  return picture;
}

// Leaning quads, each another; a pixel counts when its centre lies on the inner side of all four.
PatchQuads leaningQuads() {
  PatchQuads quads;
  for (std::size_t i = 0; i < quads.size(); ++i) {
    const double x = 12.3 + 40.0 * static_cast<double>(i % 6),
                 y = 9.7 + 40 * static_cast<double>(i / 6);
    const double lean = 0.4 * static_cast<double>(i);
    quads[i] = {{{x + lean, y}, {x + 30, y + lean}, {x + 28, y + 31}, {x, y + 25}}};
  }
  return quads;
}

bool isInside(const PatchQuad& q, double x, double y) {
  for (std::size_t k = 0; k < 4; ++k) {
    const Point2 &a = q[k], &b = q[(k + 1) % 4];
    if ((b.x - a.x) * (y - a.y) - (b.y - a.y) * (x - a.x) < 0.0) return false;
  }
  return true;
}

TEST(QuadSampler, AgreesWithACountOfPixelAfterPixel) {
  const PatchQuads quads = leaningQuads();
  for (const auto& [share, bits] : {std::pair{0.5, 8}, {1.0, 8}, {0.5, 16}, {1.0, 16}}) {
    SCOPED_TRACE(bits);
    const Picture picture = speckled(280, 200, bits);
    const double white = bits == 8 ? 255.0 : 9000.0;
    const QuadSampling seen =
        sampleQuads(picture, quads, {0.0, white, 1.0, SampleEncoding::linear}, share);
    const PatchQuads middles = sampledMiddles(quads, share);
    for (std::size_t patch = 0; patch < quads.size(); ++patch) {
      std::vector<double> values;
      double sum = 0.0, squares = 0.0;
      for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
          if (isInside(middles[patch], x, y))
            values.push_back(std::min(picture.pixel(x, y)[1] / white, 1.0));
      std::ranges::sort(values);
      for (const double value : values) sum += value, squares += value * value;
      const auto n = static_cast<double>(values.size());
      ASSERT_EQ(seen.report.pixels[patch], values.size()) << patch;
      EXPECT_NEAR(seen.report.clipping[patch][1].ceiling,
                  static_cast<double>(std::ranges::count(values, 1.0)) / n, 1e-12);
      EXPECT_NEAR(seen.mean[patch][1], sum / n, 1e-12);
      EXPECT_NEAR(seen.deviation[patch][1], std::sqrt((squares - sum * sum / n) / (n - 1)), 1e-9);
      EXPECT_NEAR(seen.median[patch][1],
                  0.5 * (values[values.size() / 2] + values[(values.size() - 1) / 2]), 1e-12);
    }
  }
}

// Upright quads are the stated regions; a step in a patch is uneven, its clipped part is told.
TEST(QuadSampler, UprightPatchesAreTheStatedRegions) {
  Picture picture = speckled(280, 200);
  PatchRegions regions;
  for (std::size_t i = 0; i < regions.size(); ++i)
    regions[i] = {5.0 + 45.0 * static_cast<double>(i % 6), 4.0 + 45 * static_cast<double>(i / 6),
                  30, 30};
  PatchQuads quads;
  for (std::size_t i = 0; i < quads.size(); ++i) {
    const auto& [left, top, width, height] = regions[i];
    quads[i] = {
        {{left, top}, {left + width, top}, {left + width, top + height}, {left, top + height}}};
  }
  MacbethChartData data;
  const auto report = data.CollectRGBData(picture, regions, kPlain);
  auto seen = sampleQuads(picture, quads, kPlain, 1.0);
  EXPECT_EQ(seen.report.pixels, report.pixels);
  EXPECT_NEAR(seen.mean[7][2], data.m_RGB[7][2], 1e-12);
  EXPECT_LT(seen.unevenness[0][0], 0.02);
  for (int y = 4; y < 34; ++y) std::fill_n(picture.pixel(5, y), 3 * 10, std::uint16_t{255});
  seen = sampleQuads(picture, quads, kPlain, 1.0);
  EXPECT_GT(seen.unevenness[0][0], 0.2);
  EXPECT_NEAR(seen.report.clipping[0][0].ceiling, 1.0 / 3.0, 1e-12);
}

TEST(QuadSampler, RefusesNamingThePatch) {
  const Picture picture = speckled(280, 200);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const PatchQuad wrong[] = {{{{nan, 0}, {9, 0}, {9, 9}, {0, 9}}},
                             {{{0, 0}, {9, 9}, {9, 0}, {0, 9}}},
                             {{{0, 0}, {90, 0}, {40, 40}, {0, 90}}},
                             {{{900, 0}, {909, 0}, {909, 9}, {900, 9}}}};
  for (const PatchQuad& quad : wrong) {
    PatchQuads quads = leaningQuads();
    quads[4] = quad;
    EXPECT_THAT([&] { sampleQuads(picture, quads, kPlain); },
                testing::ThrowsMessage<std::invalid_argument>(testing::HasSubstr("patch 5")));
  }
  for (const double share : {0.0, 1.1, nan})
    EXPECT_THROW(sampleQuads(picture, leaningQuads(), kPlain, share), std::invalid_argument);
}

}  // namespace
}  // namespace greycard
