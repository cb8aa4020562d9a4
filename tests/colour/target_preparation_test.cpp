#include "target_preparation.h"
#include "gtest/gtest.h"

namespace greycard {
namespace {

PatchTable lightTable() {
  PatchTable lab;
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    const double x = static_cast<double>(i);
    lab[i] = {30 + 2 * x, 40 - 3 * x, x - 11.5};
  }
  return lab;
}

TEST(TargetPreparation, NeutralTakesTheChartAndATinyHueTheLight) {
  const PatchTable chart{{{50, 1, 2}}};
  EXPECT_EQ(prepareTarget(lightTable(), chart, {}), chart);
  EXPECT_EQ(prepareTarget(lightTable(), chart, {.saturationG = 1.00009, .hueB = -0.0009}), chart);
  EXPECT_EQ(prepareTarget(lightTable(), chart, {.hueR = 0.005}), lightTable());
  EXPECT_NE(prepareTarget(lightTable(), chart, {.hueR = 0.015}), lightTable());
}

}  // namespace
}  // namespace greycard
