#include "target_preparation.h"

#include <cmath>
#include <numbers>
#include <set>

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

PatchTable chartTable() {
  PatchTable lab;
  lab.fill({50, 1, 2});
  return lab;
}

TEST(TargetPreparation, NeutralAdjustmentTakesTheChart) {
  EXPECT_EQ(prepareTarget(lightTable(), chartTable(), {}), chartTable());
  const TargetAdjustment nearly{.saturationG = 1.00009, .hueB = -0.0009};
  EXPECT_EQ(prepareTarget(lightTable(), chartTable(), nearly), chartTable());
}

// Above the neutral limit, below the smallest rotation: the light's table as it is.
TEST(TargetPreparation, TinyHueSelectsTheLightsTable) {
  EXPECT_EQ(prepareTarget(lightTable(), chartTable(), {.hueR = 0.005}), lightTable());
}

struct RotationCase {
  const char* name;
  TargetAdjustment adjustment;
  double degrees;
  std::set<std::size_t> rows;
};

TEST(TargetPreparation, HueRotatesItsGroup) {
  const RotationCase cases[] = {
      {"R", {.hueR = 10}, 10, {8, 14, 16}},
      {"G", {.hueG = -170}, -170, {3, 10, 13}},
      {"B", {.hueB = 0.02}, 0.02, {2, 5, 7, 12, 17}},
  };
  const PatchTable before = lightTable();
  for (const RotationCase& c : cases) {
    SCOPED_TRACE(c.name);
    const PatchTable after = prepareTarget(before, chartTable(), c.adjustment);
    // As a rotation matrix, with the short pi.
    const double angle = c.degrees * 3.14159 / 180;
    for (std::size_t i = 0; i < kPatchCount; ++i) {
      const bool turns = c.rows.contains(i);
      const double cosine = turns ? std::cos(angle) : 1, sine = turns ? std::sin(angle) : 0;
      EXPECT_EQ(after[i][0], before[i][0]);
      EXPECT_NEAR(after[i][1], cosine * before[i][1] - sine * before[i][2], 1e-12) << i;
      EXPECT_NEAR(after[i][2], sine * before[i][1] + cosine * before[i][2], 1e-12) << i;
    }
  }
  // The short pi is visible: the exact rotation by 10 degrees differs in the seventh digit.
  const PatchTable after = prepareTarget(before, chartTable(), {.hueR = 10});
  const double exact = 10 * std::numbers::pi / 180;
  EXPECT_GT(
      std::abs(after[16][1] - (std::cos(exact) * before[16][1] - std::sin(exact) * before[16][2])),
      1e-7);
}

TEST(TargetPreparation, SaturationScalesChroma) {
  const PatchTable before = lightTable();
  const PatchTable all = prepareTarget(
      before, chartTable(),
      {.saturationAll = 1.2, .saturationR = 1.2, .saturationG = 1.2, .saturationB = 1.2});
  // "All" doesn't count unless the groups agree; row 5 is a green patch here.
  const PatchTable groups =
      prepareTarget(before, chartTable(),
                    {.saturationAll = 9, .saturationR = 2, .saturationG = 3, .saturationB = 0.5});
  const std::set<std::size_t> red{8, 14, 16}, green{3, 5, 10, 13}, blue{2, 7, 12, 17};
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
