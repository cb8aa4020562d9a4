// The colours of a simulated photograph, against sums worked here.

#include "greycard/chart_simulator.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "spectral_tables.h"

namespace greycard {
namespace {

// The sum over wavelengths as the header states it, with the sensors' bells or, for the
// colorimetric one, the CIE 1931 functions times the CAT02 matrix; lights straight from the
// published tables.
TEST(SimulatedColour, IsTheSumOverWavelengths) {
  struct Light {
    Illum light;
    const SpectralTable& table;
    int column;
  };
  const Light lights[] = {
      {illum_D50, kIlluminantTable, 1},        {illum_A, kIlluminantTable, 0},
      {illum_D65, kIlluminantTable, 2},        {illum_Horizon, kHorizonTable, 0},
      {illum_CoolWhite, kFluorescentTable, 1}, {illum_TL84, kFluorescentTable, 10}};
  constexpr double kPeak[] = {600, 540, 460}, kEfficiency[] = {0.75, 1, 0.8};
  constexpr double kSigma[][3] = {{35, 38, 28}, {18, 18, 18}, {60, 60, 50}};
  constexpr double kCones[][3] = {
      {0.7328, 0.4296, -0.1624}, {-0.7036, 1.6975, 0.0061}, {0.0030, 0.0136, 0.9834}};
  const auto value = [](const SpectralTable& table, int column, int nm) {
    for (std::size_t i = 0; i < table.wavelengthNm.size(); ++i)
      if (std::lround(table.wavelengthNm[i]) == nm)
        return table
            .values[i * static_cast<std::size_t>(table.columns) + static_cast<std::size_t>(column)];
    ADD_FAILURE() << nm;
    return 0.0;
  };
  const auto sensitivity = [&](int sensor, std::size_t c, int nm) {
    double sum = 0.0;
    for (int k = 0; sensor == 3 && k < 3; ++k) sum += kCones[c][k] * value(kObserverTable, k, nm);
    return sensor == 3
               ? sum
               : kEfficiency[c] * std::exp(-0.5 * std::pow((nm - kPeak[c]) / kSigma[sensor][c], 2));
  };
  for (const Light& light : lights)
    for (int sensor = 0; sensor < 4; ++sensor) {
      SCOPED_TRACE(std::string(illumName(light.light)) + " " + std::to_string(sensor));
      PatchTable expected{};
      Vector3 white{};
      for (int nm = 400; nm <= 700; nm += 5)
        for (std::size_t c = 0; c < 3; ++c) {
          const double response = value(light.table, light.column, nm) * sensitivity(sensor, c, nm);
          white[c] += response;
          for (std::size_t patch = 0; patch < kPatchCount; ++patch)
            expected[patch][c] +=
                response * value(kChartReflectanceTable, static_cast<int>(patch), nm);
        }
      ChartSimulator simulator;
      simulator.m_settings.light = light.light;
      simulator.m_settings.sensor = static_cast<ModelSensor>(sensor);
      simulator.m_settings.width = simulator.m_settings.height = 16;
      ASSERT_TRUE(simulator.Simulate());
      const double gain = 0.8 / std::max({expected[18][0], expected[18][1], expected[18][2]});
      for (std::size_t c = 0; c < 3; ++c) {
        EXPECT_NEAR(simulator.m_truth.whiteRgb[c], gain * white[c], 1e-12);
        for (std::size_t patch = 0; patch < kPatchCount; ++patch)
          EXPECT_NEAR(simulator.m_truth.rgb[patch][c], gain * expected[patch][c], 1e-12);
      }
    }
}

}  // namespace
}  // namespace greycard
