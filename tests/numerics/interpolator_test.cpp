#include "interpolator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "greycard/errors.h"
#include "spline.h"

namespace greycard {
namespace {

constexpr std::int32_t kNoCeiling = std::numeric_limits<std::int32_t>::max();
constexpr double kLowest = -2147483648.0, kHighest = 2147483647.0;
using Table = std::vector<std::int32_t>;
using Values = std::vector<double>;

// Walking the segments must give what a bisection per sample gives. Levels of 1e9 make the integers
// fine enough to show it. Unsorted and repeated abscissae (which give no numbers) take part.
TEST(Interpolator, SamplesEqualSplintAtEveryAbscissa) {
  std::mt19937 random(11);
  for (int round = 0; round < 200; ++round) {
    const std::size_t n = 2 + random() % 40;
    Values x(n), y(n), y2(n);
    for (double& v : x) v = static_cast<double>(random() % 60000) / 50.0 - 100.0;
    for (double& v : y) v = static_cast<double>(random() % 1000000) * 1e3;
    if (round % 4 != 0) std::sort(x.begin(), x.end());
    Interpolator interpolator(kNoCeiling);
    Table table(1024), expected(1024);
    interpolator.Interpolate(x, y, table);
    spline(x, y, kNaturalEnd, kNaturalEnd, y2);
    for (std::size_t i = 0; i < table.size(); ++i)
      if (const double v = splint(x, y, y2, static_cast<double>(i)) + 0.5; !std::isnan(v))
        expected[i] = static_cast<std::int32_t>(std::clamp(v, kLowest, kHighest));
    EXPECT_EQ(table, expected) << round;
  }
}

TEST(Interpolator, RoundsTowardsZeroAndCapsOnlyAbove) {
  Interpolator interpolator(100);
  Table table(1024);
  // (i - 8) / 4: each quarter step from -2 upwards.
  ASSERT_TRUE(interpolator.GenerateCurve(std::vector<ControlPoint>{{0, -2}, {8, 0}}, 1, 1, table));
  EXPECT_EQ(Table(table.begin(), table.begin() + 13),
            (Table{-1, -1, -1, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1}));
  EXPECT_EQ(table[1023], 100);
  Interpolator uncapped(kNoCeiling);
  uncapped.Interpolate(Values{0, 1}, Values{-1e300, 1e300}, std::span(table).first(2));
  EXPECT_EQ(table[0], std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(table[1], kNoCeiling);
}

TEST(Interpolator, AProportionalTableOfAnyLengthGoesOnBeyondItsEnd) {
  Interpolator interpolator(10000);
  for (const std::int32_t step : {16, 4, 2, 1}) {
    Table source, curve(1024);
    for (std::int32_t i = 0; i < 1024; i += step) source.push_back(10 * i);
    ASSERT_TRUE(interpolator.InterpolateCurve(source, curve));
    for (std::size_t i = 0; i < 1001; ++i) EXPECT_EQ(curve[i], 10 * static_cast<int>(i)) << step;
    EXPECT_EQ(curve[1023], step == 1 ? 10230 : 10000);  // as it is, or below the ceiling
  }
}

TEST(Interpolator, RefusesLengthsAndKeepsDestinationAndLastFit) {
  Interpolator interpolator(16383);
  EXPECT_EQ(interpolator.InterpolatePoint(3.0), 0.0);
  const std::vector<ControlPoint> line{{0, 0}, {10, 20}};
  Table table(1024), untouched(1024, 77), tooShort(1023);
  ASSERT_TRUE(interpolator.GenerateCurve(line, 1, 1, table));
  EXPECT_FALSE(interpolator.GenerateCurve(line, 1, 1, tooShort));
  EXPECT_FALSE(interpolator.GenerateCurve({}, 1, 1, untouched));
  EXPECT_FALSE(interpolator.GenerateCurve(std::vector<ControlPoint>(513), 1, 1, untouched));
  EXPECT_FALSE(interpolator.InterpolateCurve(Table(100), untouched));
  EXPECT_FALSE(interpolator.InterpolateCurve(Table(256), tooShort));
  EXPECT_THROW(interpolator.Interpolate(Values(513), Values(513), table), std::invalid_argument);
  EXPECT_EQ(untouched, Table(1024, 77));
  EXPECT_EQ(interpolator.InterpolatePoint(3.0), 6.0);
}

TEST(Interpolator, ASegmentWithoutWidthFailsWhereAnEvaluationLandsOnIt) {
  Interpolator interpolator(16383);
  const std::vector<ControlPoint> repeated{{0, 0}, {100, 50}, {200, 90}, {200, 99}};
  Table table(1024, 77);
  for (const auto& points : {std::vector<ControlPoint>{{5, 5}}, {{0, 0}, {0, 0}}, repeated}) try {
      interpolator.GenerateCurve(points, 4, 64, table);
      ADD_FAILURE() << points.size();
    } catch (const NumericError& error) {
      EXPECT_STREQ(error.what(), "Bad xa input to routine splint");
    }
  EXPECT_EQ(table, Table(1024, 77));
  EXPECT_TRUE(interpolator.GenerateCurve(repeated, 6, 64, table)) << "1200 is not met";
}

}  // namespace
}  // namespace greycard
