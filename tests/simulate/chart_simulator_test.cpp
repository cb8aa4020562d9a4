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

}  // namespace
}  // namespace greycard
