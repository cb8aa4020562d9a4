#include <gtest/gtest.h>

#include <cmath>
#include <limits>
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

TEST(Adjust, SpreadsWithTheRootOfTheDistanceWeights) {
  Targets t;
  t.drag(8, 7, -20.0, -0.05, 2, 1);  // from hue 120, seen from 0: both ranges grow downward by 1
  const double s = -0.05;
  // Hue reaches rows 8 - 3 to 8 + 2, saturation columns 7 - 2 to 7 + 1: weights in quarters and
  // thirds below, thirds and halves above.
  EXPECT_EQ(t.hue[t.at(8, 7)], 100);
  EXPECT_EQ(t.hue[t.at(7, 7)], 105 - static_cast<int>(20.0 * std::sqrt(0.75)));
  EXPECT_EQ(t.hue[t.at(5, 7)], 75 - 10);
  EXPECT_EQ(t.hue[t.at(4, 7)], 60);
  EXPECT_EQ(t.hue[t.at(10, 7)], 150 - static_cast<int>(20.0 * std::sqrt(1.0 / 3.0)));
  EXPECT_EQ(t.hue[t.at(11, 7)], 165);
  EXPECT_DOUBLE_EQ(t.sat[t.at(8, 5)], 5 / 15.0 + s * std::sqrt(1.0 / 3.0));
  EXPECT_DOUBLE_EQ(t.sat[t.at(8, 8)], 8 / 15.0 + s * std::sqrt(0.5));
  EXPECT_DOUBLE_EQ(t.sat[t.at(7, 6)], 6 / 15.0 + s * std::sqrt(0.75 * 2.0 / 3.0));
  EXPECT_DOUBLE_EQ(t.sat[t.at(8, 4)], 4 / 15.0);
  EXPECT_DOUBLE_EQ(t.sat[t.at(8, 9)], 9 / 15.0);

  Targets up;
  up.drag(8, 7, 20.0, 0.05, 2, 1);  // the hue range above shrinks to 1
  EXPECT_EQ(up.hue[up.at(9, 7)], 135 + static_cast<int>(20.0 * std::sqrt(0.5)));
  EXPECT_EQ(up.hue[up.at(10, 7)], 150);
  EXPECT_NE(up.hue[up.at(6, 7)], 90);

  Targets same;
  TwoDLutHelper::Adjust({.originalHue = 0,
                         .deltaS = 0.05,
                         .deltaH = 20.0,
                         .rangeS = 1,
                         .rangeH = 2,
                         .hitH = 8,
                         .hitS = 7},
                        {same.sat, same.hue, 24, 16});
  EXPECT_TRUE(same == up);
}

TEST(Adjust, LeavesWhatItShould) {
  Targets t;
  const Targets before = t;
  t.drag(3, 4, 0.0, 0.0, 3, 3);
  EXPECT_TRUE(t == before);
  t.drag(3, 4, 40.0, -0.5, 3, 3, false);
  EXPECT_EQ(t.hue[t.at(3, 4)], before.hue[t.at(3, 4)]);
  EXPECT_EQ(t.sat[t.at(3, 4)], before.sat[t.at(3, 4)]);
  EXPECT_FALSE(t == before);
  for (const std::int32_t column : {0, 1}) t.drag(5, column, -50.0, 0.9, 30, 30);
  for (std::int32_t row = 0; row < 24; ++row) {
    EXPECT_EQ(t.hue[t.at(row, 0)], before.hue[t.at(row, 0)]);
    EXPECT_EQ(t.sat[t.at(row, 0)], 0.0);
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
