// Blur, vignetting and noise against their formulas.

#include <gtest/gtest.h>

#include <cmath>

#include "greycard/chart_simulator.h"

namespace greycard {
namespace {

// A white surround: nearly a flat field, with a small chart in the middle.
SimulationSettings flatField() {
  SimulationSettings settings;
  settings.width = 320, settings.height = 240;
  settings.sizeShare = 0.05;
  settings.surround = {1.0, 1.0, 1.0};
  settings.whiteShare = 0.5;
  settings.bits = 16;
  settings.encoding = SampleEncoding::linear;
  return settings;
}

ChartSimulator simulate(const SimulationSettings& settings) {
  ChartSimulator simulator;
  simulator.m_settings = settings;
  EXPECT_TRUE(simulator.Simulate());
  return simulator;
}

TEST(SimulatedOptics, LightFallsByTheFourthPowerOfTheCosine) {
  auto settings = flatField();
  settings.vignetting = 0.4;
  settings.rotationDeg = 10;
  const auto shot = simulate(settings);
  // cos^4(angle) = 0.6 in the corner gives the tangent there, and that the angle anywhere.
  const double tanCorner = std::tan(std::acos(std::pow(0.6, 0.25)));
  for (const auto& [x, y] : {std::pair{0, 0}, {319, 239}, {319, 120}, {40, 200}}) {
    const double r = std::hypot(x - 159.5, y - 119.5) / std::hypot(159.5, 119.5);
    const double factor = std::pow(std::cos(std::atan(r * tanCorner)), 4);
    EXPECT_NEAR(shot.m_picture.pixel(x, y)[1], 65535 * shot.m_truth.whiteRgb[1] * factor, 0.501);
  }
  EXPECT_NEAR(shot.m_truth.shading[0], 1.0, 0.002);
}

TEST(SimulatedNoise, HasTheStatedDeviation) {
  for (const auto& [shotNoise, readNoise] : {std::pair{0.02, 0.0}, {0.0, 0.01}, {0.02, 0.01}}) {
    auto settings = flatField();
    settings.shotNoise = shotNoise;
    settings.readNoise = readNoise;
    const auto shot = simulate(settings);
    double sum[3]{}, squares[3]{}, lag = 0.0, count = 0.0, previous = 0.0;
    for (int y = 0; y < 60; ++y)
      for (int x = 0; x < 320; ++x, ++count)
        for (std::size_t c = 0; c < 3; ++c) {
          const double d = shot.m_picture.pixel(x, y)[c] / 65535.0 - shot.m_truth.whiteRgb[c];
          sum[c] += d;
          squares[c] += d * d;
          lag += d * previous;
          previous = d;
        }
    for (std::size_t c = 0; c < 3; ++c) {
      const double white = shot.m_truth.whiteRgb[c];
      const double sigma = std::sqrt(shotNoise * shotNoise * white + readNoise * readNoise);
      // 19200 pixels: the mean is known to sigma / 139, the deviation to 0.5 %; four times that.
      EXPECT_NEAR(sum[c] / count, 0.0, 4 * sigma / 138.0);
      EXPECT_NEAR(std::sqrt(squares[c] / count) / sigma, 1.0, 0.021);
    }
    EXPECT_LT(std::abs(lag) / (squares[0] + squares[1] + squares[2]), 4 / std::sqrt(3 * count));
  }
  auto settings = flatField();
  settings.shotNoise = 0.02;
  settings.readNoise = 0.01;
  const auto truth = simulate(settings).m_truth;
  EXPECT_NEAR(truth.noiseSigma[21][0], std::sqrt(0.0004 * truth.rgb[21][0] + 0.0001), 1e-15);
}

TEST(SimulatedNoise, FollowsItsSeed) {
  auto settings = flatField();
  settings.shotNoise = 0.02;
  settings.blurSigma = 0.7;
  const auto first = simulate(settings).m_picture.samples;
  EXPECT_EQ(simulate(settings).m_picture.samples, first);
  settings.seed = 2;
  EXPECT_NE(simulate(settings).m_picture.samples, first);
  settings.shotNoise = 0.0;
  const auto quiet = simulate(settings).m_picture.samples;
  settings.seed = 1;
  EXPECT_EQ(simulate(settings).m_picture.samples, quiet);
}

}  // namespace
}  // namespace greycard
