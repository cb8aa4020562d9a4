#include "target_preparation.h"

#include <cmath>
#include <set>

#include "gtest/gtest.h"

namespace greycard {
namespace {

using Rows = std::set<std::size_t>;

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
}

struct RotationCase {
  TargetAdjustment adjustment;
  double degrees;
  Rows rows;
};

TEST(TargetPreparation, HueRotatesItsGroup) {
  const RotationCase cases[] = {{{.hueR = 10}, 10, {8, 14, 16}},
                                {{.hueG = -170}, -170, {3, 10, 13}},
                                {{.hueB = 0.02}, 0.02, {2, 5, 7, 12, 17}}};
  const PatchTable before = lightTable();
  for (const RotationCase& c : cases) {
    const PatchTable after = prepareTarget(before, {}, c.adjustment);
    // As a rotation matrix, with the short pi; the exact one would differ in the seventh digit.
    const double angle = c.degrees * 3.14159 / 180;
    for (std::size_t i = 0; i < kPatchCount; ++i) {
      const double cosine = c.rows.contains(i) ? std::cos(angle) : 1;
      const double sine = c.rows.contains(i) ? std::sin(angle) : 0;
      EXPECT_NEAR(after[i][1], cosine * before[i][1] - sine * before[i][2], 1e-12) << i;
      EXPECT_NEAR(after[i][2], sine * before[i][1] + cosine * before[i][2], 1e-12) << i;
    }
  }
}

TEST(TargetPreparation, SaturationScalesChroma) {
  const PatchTable before = lightTable();
  const PatchTable all = prepareTarget(before, {}, {1.2, 1.2, 1.2, 1.2});
  // "All" doesn't count unless the groups agree; row 5 is a green patch here.
  const PatchTable groups = prepareTarget(before, {}, {9, 2, 3, 0.5});
  const Rows red{8, 14, 16}, green{3, 5, 10, 13}, blue{2, 7, 12, 17};
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    const double factor = red.contains(i) ? 2 : green.contains(i) ? 3 : blue.contains(i) ? 0.5 : 1;
    for (std::size_t c = 1; c < 3; ++c) {
      EXPECT_DOUBLE_EQ(all[i][c], 1.2 * before[i][c]);
      EXPECT_DOUBLE_EQ(groups[i][c], factor * before[i][c]);
    }
  }
}

}  // namespace
}  // namespace greycard
