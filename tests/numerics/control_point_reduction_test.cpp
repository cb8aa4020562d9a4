#include "control_point_reduction.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <vector>

namespace greycard {
namespace {

using Values = std::vector<double>;

// The points (i, f(i)), reduced in place as the curve editor does it.
std::pair<Values, Values> reduced(std::size_t n, double (*f)(double)) {
  Values x(n), y(n);
  for (std::size_t i = 0; i < n; ++i) x[i] = static_cast<double>(i);
  std::transform(x.begin(), x.end(), y.begin(), f);
  Interpolator interpolator(16383);
  int count = static_cast<int>(n);
  findMinimumControlPoints(interpolator, count, x, y, x, y, count);
  x.resize(static_cast<std::size_t>(count));
  y.resize(static_cast<std::size_t>(count));
  return {x, y};
}

TEST(FindMinimumControlPoints, SmallCasesByHand) {
  // A line: the early stop at two leaves the first two points.
  const auto line = reduced(32, [](double x) { return 10.0 * x; });
  EXPECT_EQ(line, std::pair(Values{0, 1}, Values{0, 10}));
  // Bent everywhere: nothing goes, halves are rounded to even.
  const auto bent = reduced(6, [](double x) { return 100.0 * x * x + 0.5; });
  EXPECT_EQ(bent.second, (Values{0, 100, 400, 900, 1600, 2500}));

  Interpolator interpolator(16383);
  Values five{0, 1, 2, 3, 4}, out(5, 7.0);
  int count = 42;
  findMinimumControlPoints(interpolator, 5, five, five, out, out, count);
  EXPECT_EQ(count, 42);
  EXPECT_EQ(out, Values(5, 7.0));
}

TEST(FindMinimumControlPoints, RefusesWhatWouldReadOutside) {
  Interpolator interpolator(16383);
  Values six(6), five(5);
  int n = 0;
  for (const int ninterp : {-1, 7})
    EXPECT_THROW(findMinimumControlPoints(interpolator, ninterp, six, six, six, six, n),
                 std::invalid_argument);
  EXPECT_THROW(findMinimumControlPoints(interpolator, 6, six, six, six, five, n),
               std::invalid_argument);
}

}  // namespace
}  // namespace greycard
