#include "control_point_reduction.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

#include "greycard/diagnostics.h"

namespace greycard {
namespace {

struct Points {
  std::vector<double> x, y;
  int n = -1;
};

// Reduces in place, as the curve editor does.
Points reduced(Points points, int ninterp) {
  Interpolator interpolator(16383);
  points.n = static_cast<int>(points.x.size());
  findMinimumControlPoints(interpolator, ninterp, points.x, points.y, points.x, points.y, points.n);
  points.x.resize(static_cast<std::size_t>(points.n));
  points.y.resize(static_cast<std::size_t>(points.n));
  return points;
}

Points pointsOf(std::size_t n, double (*f)(double)) {
  Points points;
  for (std::size_t i = 0; i < n; ++i) {
    points.x.push_back(static_cast<double>(i));
    points.y.push_back(f(static_cast<double>(i)));
  }
  return points;
}

TEST(FindMinimumControlPoints, ALineEndsWithItsFirstTwoPoints) {
  const Points line = reduced(pointsOf(32, [](double x) { return 10.0 * x; }), 32);
  EXPECT_EQ(line.x, (std::vector<double>{0, 1}));
  EXPECT_EQ(line.y, (std::vector<double>{0, 10}));
}

TEST(FindMinimumControlPoints, FiveOrFewerPointsAreLeftAlone) {
  Interpolator interpolator(16383);
  const std::vector<double> in{0, 1, 2, 3, 4};
  std::vector<double> out(5, 7.0);
  int n = 42;
  findMinimumControlPoints(interpolator, 5, in, in, out, out, n);
  EXPECT_EQ(n, 42);
  EXPECT_EQ(out, std::vector<double>(5, 7.0));
}

TEST(FindMinimumControlPoints, RoundsHalvesToEven) {
  const auto bent = [](double x) { return 100.0 * x * x + 0.5; };  // no place is straight
  const Points points = reduced(pointsOf(8, bent), 8);
  EXPECT_EQ(points.y, (std::vector<double>{0, 100, 400, 900, 1600, 2500, 3600, 4900}));
}

// The sharp corner of two straight stretches: only the corner and the ends are not straight, and
// few points can't follow it. Each pass puts back the sample that its trace names (8 times the
// index, and the reference); the seventh comes too late for a trial.
TEST(FindMinimumControlPoints, PutsBackAtMostOnePointPerPassAndTracesIt) {
  std::vector<int> failed;
  setDebugLog([&](int, std::string_view category, std::string_view text) {
    int eightfold = 0, reference = 0;
    EXPECT_EQ(category, "DebugPrint");
    EXPECT_EQ(std::sscanf(std::string(text).c_str(), "::%d,%d\n", &eightfold, &reference), 2);
    EXPECT_EQ(reference, 5 * eightfold) << "on the slope of 40";
    failed.push_back(eightfold / 8);
  });
  const auto corner = [](double x) { return x < 16.0 ? 40.0 * x : 640.0 + 2.0 * (x - 16.0); };
  const Points points = reduced(pointsOf(32, corner), 32);
  setDebugLog({});
  ASSERT_EQ(failed.size(), 7u);
  EXPECT_EQ(failed.front(), 1);
  std::vector<double> expected(failed.begin(), failed.end() - 1);
  expected.insert(expected.end(), {0, 16, 31});
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(points.x, expected);
}

// What is reduced without using up the passes reproduces the full curve to 4 units.
TEST(FindMinimumControlPoints, ReproducesASmoothCurve) {
  const auto curve = [](double x) { return 255.0 * std::pow(x / 31.0, 0.9); };
  const Points full = pointsOf(32, curve), few = reduced(full, 32);
  EXPECT_LT(few.n, 16);
  Interpolator interpolator(16383);
  std::vector<std::int32_t> reference(32), trial(32);
  interpolator.Interpolate(full.x, full.y, reference);
  interpolator.Interpolate(few.x, few.y, trial);
  for (std::size_t k = 0; k < 32; ++k) EXPECT_NEAR(trial[k], reference[k], 5.0) << k;
}

TEST(FindMinimumControlPoints, RefusesWhatWouldReadOutside) {
  Interpolator interpolator(16383);
  std::vector<double> six(6), five(5), many(513);
  int n = 0;
  const auto call = [&](int ninterp, std::vector<double>& x, std::vector<double>& out) {
    findMinimumControlPoints(interpolator, ninterp, x, x, out, out, n);
  };
  EXPECT_THROW(call(7, six, six), std::invalid_argument);
  EXPECT_THROW(call(-1, six, six), std::invalid_argument);
  EXPECT_THROW(call(6, six, five), std::invalid_argument);
  EXPECT_THROW(call(6, many, many), std::invalid_argument);
}

}  // namespace
}  // namespace greycard
