#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <vector>

#include "greycard/de_gamma.h"

namespace greycard {
namespace {

using Triple = std::array<double, 3>;

template <typename Curve>
std::vector<double> table(const Curve& curve) {
  std::vector<double> entries;
  for (int i = 0; i < 256; ++i) entries.push_back(curve(i));
  return entries;
}

Triple solve(const std::vector<double>& gamma, const Triple& colour) {
  Triple found{-1.0, -1.0, -1.0};
  EXPECT_TRUE(DeGamma().runDeGamma(gamma, colour, found));
  return found;
}

TEST(DeGamma, PositionsOnStraightTables) {
  const auto identity = table([](int i) { return 4.0 * i; });
  EXPECT_EQ(solve(identity, {0, 128, 255}), (Triple{1.0, 129.0, 256.0}));
  EXPECT_EQ(solve(identity, {0.5, -2, 300}), (Triple{1.5, -1.0, 301.0}));  // beyond the ends
  // Entries 100, 102, ... 610: a level of 50 is 200, which entry 51 holds.
  const auto lifted = table([](int i) { return 100.0 + 2.0 * i; });
  EXPECT_EQ(solve(lifted, {25, 50, 152.5}), (Triple{1.0, 51.0, 256.0}));
}

TEST(DeGamma, FlatStretchesNotNumbersAndShortArrays) {
  const auto clipped = table([](int i) { return std::min(8.0 * i, 800.0); });
  const Triple found = solve(clipped, {100, 200, 250});
  EXPECT_EQ(found[0], 51.0);
  EXPECT_TRUE(std::isnan(found[1]));
  EXPECT_TRUE(std::isnan(found[2]));
  const double nan = std::nan(""), inf = std::numeric_limits<double>::infinity();
  EXPECT_TRUE(std::isnan(solve(clipped, {nan, 1, 2})[0]));
  solve(clipped, {inf, -inf, 1e300});
  solve(std::vector<double>(256, nan), {1, 2, 3});

  Triple untouched{7, 7, 7};
  const Triple colour{1, 2, 3};
  const std::vector<double> tooShort(255);
  EXPECT_THROW(DeGamma().runDeGamma(tooShort, colour, untouched), std::invalid_argument);
  EXPECT_THROW(DeGamma().runDeGamma(clipped, colour, std::span(untouched).first(2)),
               std::invalid_argument);
  EXPECT_EQ(untouched, (Triple{7, 7, 7}));
}

}  // namespace
}  // namespace greycard
