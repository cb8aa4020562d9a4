#include "interpolator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "greycard/errors.h"
#include "spline.h"

namespace greycard {
namespace {

constexpr std::int32_t kNoCeiling = std::numeric_limits<std::int32_t>::max();
using Table = std::vector<std::int32_t>;
using Matrix = std::vector<std::vector<long double>>;

// Gaussian elimination with row pivoting on [A | b].
std::vector<long double> solveDense(Matrix a) {
  const std::size_t n = a.size();
  for (std::size_t c = 0; c < n; ++c) {
    std::size_t pivot = c;
    for (std::size_t r = c; r < n; ++r)
      if (std::abs(a[r][c]) > std::abs(a[pivot][c])) pivot = r;
    std::swap(a[c], a[pivot]);
    for (std::size_t r = 0; r < n; ++r)
      if (const long double f = a[r][c] / a[c][c]; r != c)
        for (std::size_t k = c; k <= n; ++k) a[r][k] -= f * a[c][k];
  }
  std::vector<long double> x(n);
  for (std::size_t r = 0; r < n; ++r) x[r] = a[r][n] / a[r][r];
  return x;
}

// The natural spline as 4 (n - 1) unknown coefficients c0 + c1 t + c2 t^2 + c3 t^3, t = x - x[s],
// from its defining conditions: through the points, first and second derivatives continuous,
// second derivatives zero at the ends.
class DenseSpline {
 public:
  DenseSpline(std::vector<double> x, const std::vector<double>& y) : x_(std::move(x)) {
    const std::size_t segments = x_.size() - 1, n = 4 * segments;
    Matrix a(n, std::vector<long double>(n + 1));
    std::size_t row = 0;
    for (std::size_t s = 0; s < segments; ++s) {
      const long double h = x_[s + 1] - x_[s];
      std::vector<long double>&start = a[row++], &end = a[row++];
      start[4 * s] = 1, start[n] = y[s];
      end[4 * s] = 1, end[4 * s + 1] = h, end[4 * s + 2] = h * h, end[4 * s + 3] = h * h * h;
      end[n] = y[s + 1];
      if (s + 1 == segments) {
        a[row][4 * s + 2] = 2, a[row++][4 * s + 3] = 6 * h;
        continue;
      }
      std::vector<long double>&slope = a[row++], &bend = a[row++];
      slope[4 * s + 1] = 1, slope[4 * s + 2] = 2 * h, slope[4 * s + 3] = 3 * h * h;
      slope[4 * s + 5] = -1;
      bend[4 * s + 2] = 2, bend[4 * s + 3] = 6 * h, bend[4 * s + 6] = -2;
    }
    a[row][2] = 2;
    c_ = solveDense(a);
  }
  double operator()(double x) const {
    std::size_t s = 0;
    while (s + 2 < x_.size() && x_[s + 1] <= x) ++s;
    const long double t = x - x_[s];
    return static_cast<double>(c_[4 * s] +
                               t * (c_[4 * s + 1] + t * (c_[4 * s + 2] + t * c_[4 * s + 3])));
  }

 private:
  std::vector<double> x_;
  std::vector<long double> c_;
};

TEST(Interpolator, SamplesTheNaturalSplineOfItsDefiningConditions) {
  std::mt19937 random(7);
  for (const std::size_t n : {2u, 3u, 5u, 9u, 17u}) {
    SCOPED_TRACE(n);
    std::vector<ControlPoint> points(n);
    std::vector<double> x, y;
    std::int32_t next = static_cast<std::int32_t>(random() % 20) - 5;
    for (ControlPoint& point : points) {
      point = {next, static_cast<std::int32_t>(random() % 256)};
      next += 1 + static_cast<std::int32_t>(random() % 12);
      x.push_back(4.0 * point.X);
      y.push_back(64.0 * point.Y);
    }
    const DenseSpline truth(x, y);
    Interpolator interpolator(16383);
    Table table(1024);
    ASSERT_TRUE(interpolator.GenerateCurve(points, 4, 64, table));
    for (std::size_t i = 0; i < table.size(); ++i) {
      const double v = truth(static_cast<double>(i));
      if (std::abs(v) > 1e6) break;  // far out on an extrapolated cubic
      const double error = 1e-6 * (1.0 + std::abs(v));
      EXPECT_NEAR(interpolator.InterpolatePoint(static_cast<double>(i)), v, error);
      EXPECT_GE(table[i], std::min(16383.0, std::trunc(v - error + 0.5))) << i;
      EXPECT_LE(table[i], std::min(16383.0, std::trunc(v + error + 0.5))) << i;
    }
  }
}

// Walking the segments must give what a bisection per sample gives, to the bit. Levels of 1e9 make
// the integers fine enough to show it. Unsorted and repeated abscissae (which give no numbers) take
// part.
TEST(Interpolator, SamplesEqualTheSplintAtEveryAbscissa) {
  std::mt19937 random(11);
  for (int round = 0; round < 200; ++round) {
    const std::size_t n = 2 + random() % 40;
    std::vector<double> x(n), y(n), y2(n);
    for (std::size_t k = 0; k < n; ++k) {
      x[k] = (static_cast<double>(random() % 60000) - 5000.0) / (round % 3 == 0 ? 50.0 : 49.0);
      y[k] = static_cast<double>(random() % 1000000) * 1e3;
    }
    if (round % 4 != 0) std::sort(x.begin(), x.end());
    SCOPED_TRACE(round);
    Interpolator interpolator(kNoCeiling);
    Table table(1024), expected(1024);
    interpolator.Interpolate(x, y, table);
    spline(x, y, kNaturalEnd, kNaturalEnd, y2);
    for (std::size_t i = 0; i < table.size(); ++i) {
      const double v = splint(x, y, y2, static_cast<double>(i)) + 0.5;
      if (!std::isnan(v))
        expected[i] = static_cast<std::int32_t>(std::clamp(v, -2147483648.0, 2147483647.0));
    }
    EXPECT_EQ(table, expected);
  }
}

TEST(Interpolator, RoundsTowardsZeroAndCapsOnlyAbove) {
  Interpolator interpolator(100);
  Table table(1024);
  // y = (i - 8) / 4: each quarter step from -2 upwards.
  ASSERT_TRUE(interpolator.GenerateCurve(std::vector<ControlPoint>{{0, -2}, {8, 0}}, 1, 1, table));
  EXPECT_EQ(Table(table.begin(), table.begin() + 13),
            (Table{-1, -1, -1, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1}));
  EXPECT_EQ(table[407], 100);  // 99.75
  EXPECT_EQ(table[1023], 100);
  // The line 16 i through (4, 64) and (1020, 16320) goes on beyond both points.
  Interpolator wide(16383);
  ASSERT_TRUE(wide.GenerateCurve(std::vector<ControlPoint>{{1, 1}, {255, 255}}, 4, 64, table));
  EXPECT_EQ((Table{table[0], table[1020], table[1021], table[1022], table[1023]}),
            (Table{0, 16320, 16336, 16352, 16368}));
}

TEST(Interpolator, OrdinatesBeyondIntegersSaturate) {
  Interpolator interpolator(kNoCeiling);
  Table table(3);
  interpolator.Interpolate(std::vector<double>{0, 1}, std::vector<double>{-1e300, 1e300}, table);
  EXPECT_EQ(table, (Table{std::numeric_limits<std::int32_t>::min(), kNoCeiling, kNoCeiling}));
  interpolator.Interpolate(std::vector<double>{0, 1}, std::vector<double>{0, std::nan("")}, table);
  EXPECT_EQ(table[1], 0);
}

TEST(Interpolator, RefusesLengthsAndKeepsTheDestinationAndTheLastFit) {
  Interpolator interpolator(16383);
  EXPECT_EQ(interpolator.InterpolatePoint(3.0), 0.0);
  Table untouched(1024, 77);
  const std::vector<ControlPoint> line{{0, 0}, {10, 20}};
  Table table(1024);
  ASSERT_TRUE(interpolator.GenerateCurve(line, 1, 1, table));

  Table shortTable(1023);
  EXPECT_FALSE(interpolator.GenerateCurve(line, 1, 1, shortTable));
  EXPECT_FALSE(interpolator.GenerateCurve(line, 1, 1, {}));
  EXPECT_FALSE(interpolator.GenerateCurve({}, 1, 1, untouched));
  EXPECT_FALSE(interpolator.GenerateCurve(std::vector<ControlPoint>(513), 1, 1, untouched));
  for (const std::size_t n : {0u, 63u, 100u, 1025u})
    EXPECT_FALSE(interpolator.InterpolateCurve(Table(n), untouched));
  EXPECT_FALSE(interpolator.InterpolateCurve(Table(256), shortTable));
  EXPECT_EQ(untouched, Table(1024, 77));
  EXPECT_EQ(interpolator.InterpolatePoint(3.0), 6.0);
  EXPECT_THROW(interpolator.Interpolate(std::vector<double>(513), std::vector<double>(513), table),
               std::invalid_argument);
}

TEST(Interpolator, ASegmentWithoutWidthFailsOnlyWhereAnEvaluationLandsOnIt) {
  const std::vector<ControlPoint> repeatedAtTheEnd{{0, 0}, {100, 50}, {200, 90}, {200, 99}};
  const std::vector<std::vector<ControlPoint>> failing{
      {{5, 5}}, {{0, 0}, {0, 0}}, repeatedAtTheEnd};
  for (const auto& points : failing) {
    Interpolator interpolator(16383);
    Table untouched(1024, 77);
    try {
      interpolator.GenerateCurve(points, 4, 64, untouched);
      ADD_FAILURE() << points.size();
    } catch (const NumericError& error) {
      EXPECT_STREQ(error.what(), "Bad xa input to routine splint");
    }
    EXPECT_EQ(untouched, Table(1024, 77));
  }
  Interpolator interpolator(16383);
  Table table(1024);
  EXPECT_TRUE(interpolator.GenerateCurve(repeatedAtTheEnd, 6, 64, table)) << "x = 1200 is not met";
}

TEST(Interpolator, ResamplesTablesOfEachLength) {
  for (const std::size_t n : {64u, 256u, 512u}) {
    Table ramp(n);
    for (std::size_t i = 0; i < n; ++i) ramp[i] = static_cast<std::int32_t>(i * 16 * (1024 / n));
    Interpolator interpolator(16350);
    Table table(1024);
    ASSERT_TRUE(interpolator.InterpolateCurve(ramp, table));
    for (std::size_t i = 0; i < 1024; ++i)
      EXPECT_EQ(table[i], std::min<std::int32_t>(static_cast<std::int32_t>(16 * i), 16350)) << i;
  }
  Table source(1024), table(1024);
  std::iota(source.begin(), source.end(), -500);
  Interpolator capped(10);
  ASSERT_TRUE(capped.InterpolateCurve(source, table));
  EXPECT_EQ(table, source);
}

}  // namespace
}  // namespace greycard
