#include "window/chart_score.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "colour_distance.h"

namespace greycard {
namespace {

// The chart as its colours are published, each channel times a gain.
WindowColours chart(double r = 1.0, double g = 1.0, double b = 1.0) {
  WindowColours colours;
  colours.visible.fill(true);
  colours.recognised.fill(true);
  for (std::size_t i = 0; i < kPatchCount; ++i)
    colours.values[i] = {r * colorchecker_srgb[i][2], g * colorchecker_srgb[i][1],
                         b * colorchecker_srgb[i][0]};
  return colours;
}

int outliersOf(const ChartScore& score) {
  return static_cast<int>(std::count_if(score.deviations.begin(), score.deviations.end(),
                                        [](double deviation) { return deviation > 1.0; }));
}

TEST(ChartScore, LightAndWhiteBalanceDoNotMatter) {
  auto unevenly = chart();
  for (std::size_t i = 0; i < kPatchCount; ++i)
    for (auto& value : unevenly.values[i])
      value *= 1.0 - 0.09 * static_cast<double>(i % 6) - 0.08 * static_cast<double>(i / 6);
  for (const auto& colours :
       {chart(), chart(0.5, 0.5, 0.5), chart(1.0, 0.8, 0.45), chart(0.3, 0.9, 1.2), unevenly}) {
    const auto score = scoreChart(colours);
    EXPECT_GT(score.score, 0.97);
    EXPECT_TRUE(score.neutralsDarken);
    EXPECT_FALSE(score.colourless);
    EXPECT_EQ(outliersOf(score), 0);
  }
}

TEST(ChartScore, GreyIsJudgedByLightness) {
  auto grey = chart();
  for (auto& value : grey.values)
    value.fill(0.299 * value[0] + 0.587 * value[1] + 0.114 * value[2]);
  auto alone = grey;
  alone.grey = true;
  for (auto& value : alone.values) value[1] = value[2] = 0.0;
  for (const auto& colours : {grey, alone}) {
    const auto score = scoreChart(colours);
    EXPECT_TRUE(score.colourless);
    EXPECT_GT(score.score, 0.99);
  }
  for (auto& value : grey.values) value = {128, 128, 128};
  EXPECT_LT(scoreChart(grey).score, 0.0) << "equal squares";
}

TEST(ChartScore, OtherOrdersScoreLittle) {
  auto mirrored = chart(), turned = chart(), rows = chart();
  for (auto row = mirrored.values.begin(); row != mirrored.values.end(); row += 6)
    std::reverse(row, row + 6);
  std::reverse(turned.values.begin(), turned.values.end());
  std::swap_ranges(rows.values.begin(), rows.values.begin() + 6, rows.values.begin() + 12);
  for (const auto& colours : {mirrored, turned, rows}) EXPECT_LT(scoreChart(colours).score, 0.6);
}

TEST(ChartScore, WhatIsUnlikeIsNamed) {
  auto covered = chart(0.9, 1.0, 0.7);
  covered.values[3] = {200, 150, 120};
  auto score = scoreChart(covered);
  EXPECT_GT(score.score, 0.95) << "one patch is pardoned";
  EXPECT_EQ(outliersOf(score), 1);
  EXPECT_GT(score.deviations[3], 1.0);

  // Half of it under grey paper, which is no patch.
  for (std::size_t i = 0; i < 12; ++i) {
    covered.values[i] = {205, 205, 205};
    covered.recognised[i] = false;
  }
  score = scoreChart(covered);
  EXPECT_GE(outliersOf(score), 6);
  for (std::size_t i = 12; i < kPatchCount; ++i) EXPECT_LT(score.deviations[i], 1.0) << i + 1;

  // A part out of view takes nothing from the rest.
  auto cut = chart();
  for (std::size_t i = 0; i < kPatchCount; i += 6) {
    cut.visible[i] = false;
    cut.values[i] = {0, 0, 0};
  }
  EXPECT_GT(scoreChart(cut).score, 0.99);
  cut.visible.fill(false);
  EXPECT_EQ(scoreChart(cut).score, 0.0);
}

}  // namespace
}  // namespace greycard
