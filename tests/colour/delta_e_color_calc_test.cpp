#include "delta_e_color_calc.h"

#include <gtest/gtest.h>

#include <cmath>

namespace greycard {
namespace {

TEST(MeasuredChart, KnownColours) {
  MacbethChartData chart;
  chart.m_RGB[0] = {1, 1, 1};
  chart.m_RGB[1] = {0, 1, 0};
  chart.m_RGB[2] = {0.18418652, 0.18418652, 0.18418652};  // Y of L* = 50
  chart.m_RGB[3] = {2, 2, 2};                             // not clipped: 116 * cbrt(2) - 16
  const auto lab = evaluateMeasuredChart(chart);
  const Vector3 expected[] = {{100, 0, 0},
                              {87.73, -86.18, 83.18},
                              {50, 0, 0},
                              {116 * std::cbrt(2.0) - 16, 0, 0},
                              {0, 0, 0}};
  for (std::size_t i = 0; i < 5; ++i)
    for (std::size_t j = 0; j < 3; ++j)
      EXPECT_NEAR(lab[i][j], expected[i][j], i == 1 ? 0.02 : 1e-6) << i;  // two published decimals
}

TEST(MeasuredChart, OnlyTheMeasurementCounts) {
  MacbethChartData chart, other;
  for (std::size_t i = 0; i < kPatchCount; ++i)
    chart.m_RGB[i] = {0.01 * static_cast<double>(i), 0.3, 0.5};
  other.m_RGB = chart.m_RGB;
  chart.LoadMCCCIELAB(illum_D65);
  for (auto& row : other.m_RefLab) row.fill(std::nan(""));
  other.m_Noise[4] = {-1, HUGE_VAL, 0};
  EXPECT_EQ(evaluateMeasuredChart(chart), evaluateMeasuredChart(other));

  chart.m_RGB[19][1] = std::nan("");  // a chart that no optimiser could be set up for
  const auto lab = evaluateMeasuredChart(chart);
  EXPECT_TRUE(std::isnan(lab[19][0]));
  EXPECT_EQ(lab[18], evaluateMeasuredChart(other)[18]);
}

}  // namespace
}  // namespace greycard
