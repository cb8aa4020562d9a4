// What a simulated photograph shows, against sums and projections worked here.

#include "greycard/chart_simulator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

#include "color_calc.h"
#include "spectral_tables.h"

namespace greycard {
namespace {

ChartSimulator simulate(const SimulationSettings& settings) {
  ChartSimulator simulator;
  simulator.m_settings = settings;
  EXPECT_TRUE(simulator.Simulate());
  return simulator;
}

SimulationSettings linear16(Illum light, ModelSensor sensor) {
  SimulationSettings settings;
  settings.light = light;
  settings.sensor = sensor;
  settings.bits = 16;
  settings.encoding = SampleEncoding::linear;
  settings.width = 400;
  settings.height = 300;
  return settings;
}

const std::uint16_t* pixelAt(const Picture& picture, const Point2& point) {
  return picture.pixel(static_cast<int>(std::lround(point.x)),
                       static_cast<int>(std::lround(point.y)));
}

// The bells of the ordinary sensor and the sum over wavelengths as the header states them; F2 and
// D50 straight from the published tables.
TEST(SimulatedColour, IsTheSumOverWavelengths) {
  struct Light {
    Illum light;
    const SpectralTable& table;
    int column;
  };
  constexpr double kPeak[] = {600, 540, 460}, kSigma[] = {35, 38, 28},
                   kEfficiency[] = {0.75, 1, 0.8};
  const auto value = [](const SpectralTable& table, int column, int nm) {
    for (std::size_t i = 0; i < table.wavelengthNm.size(); ++i)
      if (std::lround(table.wavelengthNm[i]) == nm)
        return table
            .values[i * static_cast<std::size_t>(table.columns) + static_cast<std::size_t>(column)];
    ADD_FAILURE() << nm;
    return 0.0;
  };
  for (const Light& light :
       {Light{illum_D50, kIlluminantTable, 1}, Light{illum_CoolWhite, kFluorescentTable, 1},
        Light{illum_TL84, kFluorescentTable, 10}}) {
    SCOPED_TRACE(illumName(light.light));
    PatchTable expected{};
    for (int nm = 400; nm <= 700; nm += 5)
      for (std::size_t patch = 0; patch < kPatchCount; ++patch)
        for (std::size_t c = 0; c < 3; ++c)
          expected[patch][c] +=
              value(light.table, light.column, nm) * kEfficiency[c] *
              std::exp(-std::pow(nm - kPeak[c], 2) / (2 * kSigma[c] * kSigma[c])) *
              value(kChartReflectanceTable, static_cast<int>(patch), nm);
    const double gain = 0.8 / std::max({expected[18][0], expected[18][1], expected[18][2]});
    const auto shot = simulate(linear16(light.light, ModelSensor::Ordinary));
    for (std::size_t patch = 0; patch < kPatchCount; ++patch) {
      const auto* pixel = pixelAt(shot.m_picture, shot.m_truth.centres[patch]);
      for (std::size_t c = 0; c < 3; ++c) {
        EXPECT_NEAR(shot.m_truth.rgb[patch][c], gain * expected[patch][c], 1e-12);
        EXPECT_NEAR(pixel[c], gain * expected[patch][c] * 65535, 0.501);
      }
    }
  }
}

// A Luther sensor: white balance in its own channels and one fixed matrix give the reference XYZ.
TEST(SimulatedColour, ColorimetricSensorIsExactUnderEveryLight) {
  // Inverse of the CAT02 matrix as printed in CIE 159:2004 (six decimals).
  constexpr Matrix3 kToXyz{{{1.096124, -0.278869, 0.182745},
                            {0.454369, 0.473533, 0.072098},
                            {-0.009628, -0.005698, 1.015326}}};
  const auto d65 = simulate(linear16(illum_D65, ModelSensor::Colorimetric)).m_truth.whiteRgb;
  const double d65Y = kToXyz[1][0] * d65[0] + kToXyz[1][1] * d65[1] + kToXyz[1][2] * d65[2];
  for (const Illum light : {illum_A, illum_D65, illum_TL84, illum_D50, illum_Horizon}) {
    SCOPED_TRACE(illumName(light));
    const auto truth = simulate(linear16(light, ModelSensor::Colorimetric)).m_truth;
    const ColorCalc reference(light, 0);
    for (int patch = 0; patch < kPatchCount; ++patch)
      for (std::size_t i = 0; i < 3; ++i) {
        double xyz = 0.0;
        for (std::size_t c = 0; c < 3; ++c)
          xyz += kToXyz[i][c] * truth.rgb[static_cast<std::size_t>(patch)][c] / truth.whiteRgb[c] *
                 d65[c];
        EXPECT_NEAR(100.0 * xyz / d65Y, reference.targetXyz()[patch][i], 2e-4) << patch;
      }
  }
}

TEST(SimulatedColour, EncodedSamplesAreTheStandardsCurve) {
  SimulationSettings settings;
  settings.width = 400, settings.height = 300;
  for (const int bits : {8, 16}) {
    settings.bits = bits;
    const auto shot = simulate(settings);
    for (std::size_t patch = 0; patch < kPatchCount; ++patch)
      for (std::size_t c = 0; c < 3; ++c) {
        const double x = shot.m_truth.rgb[patch][c];
        const double v = x <= 0.0031308 ? 12.92 * x : 1.055 * std::pow(x, 1 / 2.4) - 0.055;
        EXPECT_NEAR(pixelAt(shot.m_picture, shot.m_truth.centres[patch])[c],
                    v * shot.m_picture.ceiling(), 0.505);
      }
  }
}

TEST(SimulatedColour, LevelsAndClipping) {
  auto settings = linear16(illum_D65, ModelSensor::Ordinary);
  settings.blackLevel = 64;
  settings.whiteLevel = 4095;
  settings.whiteShare = 1.5;
  const auto shot = simulate(settings);
  const auto& truth = shot.m_truth;
  EXPECT_EQ(pixelAt(shot.m_picture, truth.centres[18])[1], 4095);
  EXPECT_NEAR(pixelAt(shot.m_picture, truth.centres[23])[2], 64 + truth.rgb[23][2] * (4095 - 64),
              0.501);
  EXPECT_NEAR(truth.rgb[18][1], 1.5, 1e-12);
}

TEST(ChartPlacement, ObeysPerspectiveAndShift) {
  SimulationSettings settings;
  settings.tiltDeg = 30;
  auto truth = simulate(settings).m_truth;
  const auto length = [&](std::size_t a, std::size_t b) {
    return std::hypot(truth.centres[a].x - truth.centres[b].x,
                      truth.centres[a].y - truth.centres[b].y);
  };
  // Seen from 18 pitches, rows at 1.5 pitches above and below the centre, z = 1.5 sin 30.
  EXPECT_NEAR(length(0, 5) / length(18, 23), (18 - 0.75) / (18 + 0.75), 1e-9);
  settings = {};
  settings.yawDeg = 40;
  truth = simulate(settings).m_truth;
  EXPECT_NEAR(length(5, 23) / length(0, 18),
              (18 - 2.5 * std::sin(40 * std::numbers::pi / 180)) /
                  (18 + 2.5 * std::sin(40 * std::numbers::pi / 180)),
              1e-9);
  EXPECT_GT(truth.sideRatio, 1.2);
  settings = {};
  const auto before = simulate(settings).m_truth.centres[0];
  settings.offsetX = 0.1;
  settings.offsetY = -0.05;
  const auto after = simulate(settings).m_truth.centres[0];
  EXPECT_NEAR(after.x - before.x, 160, 1e-9);
  EXPECT_NEAR(after.y - before.y, -60, 1e-9);
}

TEST(SimulationSettings, OutOfRangeIsOneSentenceAndChangesNothing) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  struct Case {
    const char* what;
    std::function<void(SimulationSettings&)> spoil;
  };
  const Case cases[] = {
      {"light", [](auto& s) { s.light = illum_LED; }},
      {"sensor", [](auto& s) { s.sensor = static_cast<ModelSensor>(99); }},
      {"width", [](auto& s) { s.width = 15; }},
      {"height", [](auto& s) { s.height = -1; }},
      {"100 million", [](auto& s) { s.width = s.height = 20000; }},
      {"rotation", [nan](auto& s) { s.rotationDeg = nan; }},
      {"tilt", [](auto& s) { s.tiltDeg = 90; }},
      {"share", [](auto& s) { s.sizeShare = 0; }},
      {"surround in green", [](auto& s) { s.surround[1] = 1.1; }},
      {"exposure", [](auto& s) { s.whiteShare = INFINITY; }},
      {"vignetting", [](auto& s) { s.vignetting = 1; }},
      {"blur", [](auto& s) { s.blurSigma = 51; }},
      {"shot noise", [](auto& s) { s.shotNoise = -0.1; }},
      {"bits", [](auto& s) { s.bits = 12; }},
      {"white level", [](auto& s) { s.whiteLevel = 256; }},
      {"black level", [nan](auto& s) { s.blackLevel = nan; }},
      {"black level", [](auto& s) { s.blackLevel = 255; }},
  };
  SimulationSettings small;
  small.width = small.height = 16;
  auto simulator = simulate(small);
  const auto pixels = simulator.m_picture.samples;
  for (const auto& [what, spoil] : cases) {
    SCOPED_TRACE(what);
    simulator.m_settings = small;
    spoil(simulator.m_settings);
    try {
      simulator.Simulate();
      ADD_FAILURE() << "accepted";
    } catch (const std::invalid_argument& error) {
      EXPECT_THAT(error.what(), testing::HasSubstr(what));
    }
    EXPECT_EQ(simulator.m_picture.samples, pixels);
  }
  simulator.m_settings = {};
  EXPECT_FALSE(simulator.Simulate([](double) { return false; }));
  EXPECT_EQ(simulator.m_picture.samples, pixels);
}

}  // namespace
}  // namespace greycard
