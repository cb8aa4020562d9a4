#include "delta_e_color_calc.h"

#include <gtest/gtest.h>

#include <cmath>

namespace greycard {
namespace {

TEST(MeasuredChart, OnlyTheMeasurementCounts) {
  MacbethChartData chart, other;
  for (std::size_t i = 0; i < kPatchCount; ++i)
    chart.m_RGB[i] = {0.01 * static_cast<double>(i), 0.3, 0.5};
  other.m_RGB = chart.m_RGB;
  EXPECT_TRUE(chart.LoadMCCCIELAB(illum_D65));
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
