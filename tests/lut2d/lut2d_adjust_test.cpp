#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <stdexcept>

#include "greycard/two_d_lut_helper.h"

namespace greycard {
namespace {

constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();

// A host's tables, with every node on itself.
struct Targets {
  std::int32_t rows = 24, columns = 16;
  std::vector<double> sat;
  std::vector<std::int32_t> hue;

  explicit Targets(std::int32_t rows_ = 24, std::int32_t columns_ = 16)
      : rows(rows_), columns(columns_) {
    for (std::int32_t i = 0; i < rows * columns; ++i) {
      hue.push_back(360 / rows * (i / columns));
      sat.push_back((i % columns) / 15.0);
    }
  }
  void drag(std::int32_t row, std::int32_t column, double dH, double dS, std::int32_t rangeH,
            std::int32_t rangeS, bool movesHit = true, std::int32_t originalHue = 0) {
    TwoDLutHelper::Adjust(0.0, originalHue, dS, dH, rangeS, rangeH, row, column, sat, hue, rows,
                          columns, movesHit);
  }
  std::size_t at(std::int32_t row, std::int32_t column) const {
    return static_cast<std::size_t>(row * columns + column);
  }
  bool operator==(const Targets&) const = default;
};

// Node by node as it is defined, for ranges of less than a turn.
Targets draggedSlowly(const Targets& old, std::int32_t row, std::int32_t column, double dH,
                      double dS, std::int32_t rangeH, std::int32_t rangeS, bool movesHit,
                      std::int32_t original) {
  Targets t = old;
  const auto trunc = [](double v) { return static_cast<std::int32_t>(v); };
  const double sStep = 1.0 / (t.columns - 1), hStep = 360 / t.rows;
  std::int32_t sLo = -rangeS, sHi = rangeS, hLo = -rangeH, hHi = rangeH;
  if (dS < 0)
    sLo += trunc(dS / sStep - 0.5);
  else
    sHi = trunc(dS / sStep + 0.5) + rangeS;
  const bool ahead = old.hue[old.at(row, column)] - original < 180;
  if (dH < 0)
    ahead ? hLo -= trunc(-dH / hStep + 0.5) : hHi = trunc(-dH / hStep + 0.5) + rangeH;
  else
    ahead ? hHi = rangeH - trunc(dH / hStep + 0.5) : hLo -= trunc(-dH / hStep + 0.5);
  if (column + sLo <= 0) sLo = 1 - column;
  if (column + sHi >= t.columns - 1) sHi = t.columns - column - 1;
  for (std::int32_t ds = sLo; ds <= sHi; ++ds)
    for (std::int32_t dh = hLo; dh <= hHi; ++dh) {
      const std::int32_t c = column + ds, r = (row + dh + t.rows) % t.rows;
      if (c <= 0 || c >= t.columns || (ds == 0 && dh == 0 && !movesHit)) continue;
      const double ws = 1.0 - std::abs(ds) / (ds <= 0 ? 1.0 - sLo : sHi + 1.0);
      const double wh = 1.0 - std::abs(dh) / (dh <= 0 ? 1.0 - hLo : hHi + 1.0);
      const double w = std::sqrt(std::clamp(wh * ws, 0.0, 1.0));
      std::int32_t& hue = t.hue[t.at(r, c)];
      hue = old.hue[t.at(r, c)] + trunc(w * dH);
      hue += hue < 0 ? 360 : hue >= 360 ? -360 : 0;
      t.sat[t.at(r, c)] = std::clamp(old.sat[t.at(r, c)] + w * dS, 0.0, 1.0);
    }
  return t;
}

// Both signs of the drag, to both sides of the original hue and at exactly 180 degrees from it.
TEST(Adjust, FollowsItsDefinition) {
  std::mt19937 random(3);
  for (int round = 0; round < 4000; ++round) {
    const auto below = [&](std::uint32_t n) { return static_cast<std::int32_t>(random() % n); };
    Targets t(round % 5 == 0 ? 18 : 24, 16);
    for (std::int32_t& hue : t.hue) hue = (hue + below(9)) % 360;
    const std::int32_t row = below(18), column = below(16), rangeH = below(5), rangeS = below(5);
    const double dH = (below(241) - 120) / 2.0, dS = (below(201) - 100) / 200.0;
    const std::int32_t apart[] = {0, 179, 180, 181, -200, 350};
    const std::int32_t original = t.hue[t.at(row, column)] - apart[below(6)];
    const bool movesHit = round % 2 == 0;
    const Targets wanted =
        draggedSlowly(t, row, column, dH, dS, rangeH, rangeS, movesHit, original);
    t.drag(row, column, dH, dS, rangeH, rangeS, movesHit, original);
    ASSERT_EQ(t.hue, wanted.hue) << round;
    for (std::size_t i = 0; i < t.sat.size(); ++i) ASSERT_NEAR(t.sat[i], wanted.sat[i], 1e-15);
  }
}

TEST(Adjust, RunsRoundTheCircle) {
  Targets t;
  t.drag(0, 5, -30.0, 2.0, 3, 0, true, 0);
  EXPECT_EQ(t.hue[t.at(0, 5)], 330);
  EXPECT_GT(t.hue[t.at(1, 5)], 340);  // 15 - 25
  EXPECT_LT(t.hue[t.at(23, 5)], 345);
  EXPECT_EQ(t.sat[t.at(0, 5)], 1.0);
  // The range goes round many times: the last turn counts, as a loop over all of it would find.
  Targets huge, large;
  huge.drag(6, 6, -9.0, 0.0, kMost, kMost, false);
  for (std::size_t i = 0; i < huge.hue.size(); ++i)
    EXPECT_TRUE(huge.hue[i] == large.hue[i] || huge.hue[i] == (large.hue[i] + 352) % 360 ||
                huge.hue[i] == (large.hue[i] + 351) % 360)
        << i;
}

TEST(Adjust, OddCallsHaveOneResult) {
  Targets one(1, 16), wide(360, 2), single(24, 1);
  const Targets same = single;
  one.drag(0, 5, 20.0, 0.1, 3, 2);
  EXPECT_EQ(one.hue[5], 10);  // met seven times; the last, at three nodes, has the weight 1/4
  wide.drag(100, 1, 20.0, 0.1, 3, 2);
  single.drag(3, 0, 20.0, 0.1, 3, 2);
  EXPECT_TRUE(single == same);
  Targets t;
  const Targets before = t;
  t.drag(3, 3, 20.0, 0.1, kLeast, kLeast);
  EXPECT_TRUE(t == before);
  t.drag(3, 3, 1e300, -1e300, 2, 2, true, kLeast);
  t.drag(3, 3, -1e300, 1e300, kLeast, kMost, true, kMost);

  const double nan = std::nan("");
  EXPECT_THROW(t.drag(3, 3, nan, 0.0, 1, 1), std::invalid_argument);
  EXPECT_THROW(t.drag(3, 3, 0.0, -HUGE_VAL, 1, 1), std::invalid_argument);
  for (const auto& [row, column] : {std::pair{-1, 0}, {24, 0}, {0, -1}, {0, 16}})
    EXPECT_THROW(t.drag(row, column, 1.0, 0.1, 1, 1), std::out_of_range);
  for (const auto& [rows, columns] : {std::pair{0, 16}, {-1, 16}, {361, 1}, {24, 0}, {24, 15}}) {
    t.rows = rows, t.columns = columns;
    EXPECT_THROW(t.drag(0, 0, 1.0, 0.1, 1, 1), std::invalid_argument) << rows << " " << columns;
  }
}

}  // namespace
}  // namespace greycard
