#include "matrix3.h"

#include <gtest/gtest.h>

#include <random>

#include "matrix_functions.h"
#include "table_conversion.h"

namespace greycard {
namespace {

TEST(Matrix3, HasTheBitsOfTheDenseMatrices) {
  std::mt19937 random(5);
  const auto randomMatrix = [&random] {
    Matrix3 m;
    for (Vector3& row : m)
      for (double& entry : row) entry = static_cast<double>(random()) / 2147483648.0 - 1.0;
    return m;
  };
  for (int round = 0; round < 50; ++round) {
    const Matrix3 a = randomMatrix(), b = randomMatrix();
    EXPECT_EQ(toMatrix(product(a, b)), MatrixMultiply(toMatrix(a), toMatrix(b)));
    EXPECT_EQ(toMatrix(inverse(a)), minv(toMatrix(a)));
    const Vector3 column = multiply(a, b[0]);
    EXPECT_EQ(toMatrix(column), mmABt(toMatrix(b[0]), toMatrix(a)));
  }
}

TEST(Matrix3, ProjectsByAHomographyAndBack) {
  const Matrix3 h{{{2.0, 0.5, 10.0}, {-0.25, 1.5, 3.0}, {0.001, -0.002, 1.0}}};
  const Point2 there = project(h, {100.0, 50.0});  // (235, 53) over w = 1
  EXPECT_DOUBLE_EQ(there.x, 235.0);
  EXPECT_DOUBLE_EQ(there.y, 53.0);
  const Point2 back = project(inverse(h), there);
  EXPECT_NEAR(back.x, 100.0, 1e-9);
  EXPECT_NEAR(back.y, 50.0, 1e-9);
}

}  // namespace
}  // namespace greycard
