#include "double_matrix.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

#include "greycard/errors.h"
#include "row_array.h"

namespace greycard {
namespace {

TEST(DoubleMatrix, InitKeepsEntriesOnlyAtTheSameSize) {
  CDoubleMatrix m(2, 3);
  m.Init(7.0);
  m.Init(2, 3);
  EXPECT_EQ(m[1][2], 7.0);
  EXPECT_THROW(m.Init3x3(1, 2, 3, 4, 5, 6, 7, 8, 9), ShapeError);
  CDoubleMatrix square(3, 3);
  square.Init3x3(1, 2, 3, 4, 5, 6, 7, 8, 9);
  for (std::size_t i = 0; i < 9; ++i) EXPECT_EQ(square.data()[i], static_cast<double>(i + 1));
  m.Init(3, 2);
  EXPECT_EQ(m.rows(), 3);
  EXPECT_EQ(m[2][1], 0.0);
  for (const auto& [rows, cols] : {std::pair{0, 5}, {5, 0}, {-1, 4}}) {
    m.Init(rows, cols);
    EXPECT_EQ(m.rows(), 0);
    EXPECT_EQ(m.cols(), 0);
    EXPECT_EQ(m.size(), 0u);
  }
}

TEST(DoubleMatrix, RangeIncludesAnEndOnTheGrid) {
  const CDoubleMatrix quarters(0, 0.25, 1);
  ASSERT_EQ(quarters.rows(), 5);
  EXPECT_EQ(quarters.cols(), 1);
  EXPECT_EQ(quarters[3][0], 0.75);
  EXPECT_EQ(CDoubleMatrix(400, 5, 700).rows(), 61);
  EXPECT_EQ(CDoubleMatrix(5.0, -2.0, 0.0)[2][0], 1.0);
  EXPECT_EQ(CDoubleMatrix(1.0, 1.0, 0.0).rows(), 0);
  EXPECT_THROW(CDoubleMatrix(0.0, 0.0, 1.0), ShapeError);
  EXPECT_THROW(CDoubleMatrix(0.0, std::nan(""), 1.0), ShapeError);
}

TEST(DoubleMatrix, OnlyATemporaryOrAMoveEmptiesItsSource) {
  CDoubleMatrix source(2, 2);
  source.Init(3.0);
  const CDoubleMatrix copy = source;
  EXPECT_EQ(source.rows(), 2);
  source.setTemporary(true);
  CDoubleMatrix target(1, 1);
  target = std::as_const(source);
  EXPECT_EQ(target, copy);
  EXPECT_FALSE(target.temporary());
  EXPECT_EQ(source.rows(), 0);
  EXPECT_FALSE(source.temporary());

  const CDoubleMatrix moved = std::move(target);
  EXPECT_EQ(moved, copy);
  EXPECT_TRUE((moved + 1.0).temporary());
  EXPECT_EQ((moved + 1.0)[1][1], 4.0);
  EXPECT_EQ(moved[1][1], 3.0);
}

TEST(DoubleMatrix, EqualityIsBitwise) {
  CDoubleMatrix a(1, 2), b(1, 2);
  a[0][0] = b[0][0] = std::nan("");
  EXPECT_EQ(a, b);
  b[0][1] = -0.0;
  EXPECT_FALSE(a == b);
  EXPECT_FALSE(CDoubleMatrix(2, 1) == CDoubleMatrix(1, 2));
}

TEST(RowArray, RowsOfOneZeroBlock) {
  MatrixType<std::int32_t> array(3, 2);
  array[1][1] = 7;
  EXPECT_EQ(&array[2][0], array[0] + 4);
  EXPECT_THAT(std::vector(array[0], array[0] + 6), testing::ElementsAre(0, 0, 0, 7, 0, 0));
  free_MatrixType(array);
  EXPECT_TRUE(array.empty());
  EXPECT_EQ(Create2DArray<double>(2, 3), (std::vector<std::vector<double>>{{0, 0, 0}, {0, 0, 0}}));
}

}  // namespace
}  // namespace greycard
