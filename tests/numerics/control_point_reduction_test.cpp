#include "control_point_reduction.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "greycard/diagnostics.h"

namespace greycard {
namespace {

using Values = std::vector<double>;

// Pass by pass as it is defined; the spline is the interpolator's. Appends what is traced.
std::pair<Values, Values> reducedSlowly(const Values& x, const Values& y, std::string& traces) {
  const std::size_t n = x.size();
  Interpolator interpolator(16383);
  std::vector<std::int32_t> ref(n), trial(n);
  std::vector<bool> dropped(n);
  interpolator.Interpolate(x, y, ref);
  for (std::size_t k = 0; k + 2 < n; ++k)
    dropped[k + 1] = std::abs((ref[k + 1] - ref[k]) - (ref[k + 2] - ref[k + 1])) < 4;
  Values wx = x, wy = y;
  std::size_t count = n;
  for (int pass = 0; pass < 7; ++pass) {
    count = n;
    for (std::size_t i = 0, j = 0; i < n && count > 2; ++i)
      if (dropped[i])
        --count;
      else
        wx[j] = x[i], wy[j++] = y[i];
    interpolator.Interpolate(std::span(wx).first(count), std::span(wy).first(count), trial);
    std::size_t k = 0;
    while (k < n && std::abs(ref[k] - trial[k]) <= 4) ++k;
    if (k == n) break;
    traces += "0DebugPrint::" + std::to_string(8 * k) + "," + std::to_string(ref[k]) + "\n";
    dropped[k] = false;
  }
  for (Values* w : {&wx, &wy}) {
    w->resize(count);
    for (double& value : *w) value = std::nearbyint(value);
  }
  return {wx, wy};
}

TEST(FindMinimumControlPoints, FollowsItsDefinition) {
  std::mt19937 random(5);
  for (int round = 0; round < 400; ++round) {
    Values x(6 + random() % 27), y(x.size());
    double level = 0.0, slope = 20.0;
    for (std::size_t i = 0; i < x.size(); ++i) {
      x[i] = static_cast<double>(i);
      y[i] = level += slope +=
          random() % 3 == 0 ? static_cast<double>(random() % 25) / 2.0 - 6.0 : 0.0;
    }
    std::string traces, found;
    const auto expected = reducedSlowly(x, y, traces);
    setDebugLog([&](int level_, std::string_view category, std::string_view text) {
      found += std::to_string(level_) + std::string(category) + std::string(text);
    });
    Interpolator interpolator(16383);
    int count = 0;
    findMinimumControlPoints(interpolator, static_cast<int>(x.size()), x, y, x, y, count);
    setDebugLog({});
    x.resize(static_cast<std::size_t>(count)), y.resize(x.size());
    EXPECT_EQ(std::pair(x, y), expected) << round;
    EXPECT_EQ(found, traces) << round;
  }
}

TEST(FindMinimumControlPoints, LeavesFivePointsAlone) {
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
