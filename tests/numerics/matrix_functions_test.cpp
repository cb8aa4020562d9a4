#include "matrix_functions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <random>
#include <string>

#include "greycard/diagnostics.h"
#include "greycard/errors.h"
#include "lu.h"
#include "svd.h"
#include "table_conversion.h"

namespace greycard {
namespace {

CDoubleMatrix randomMatrix(std::int32_t rows, std::int32_t cols, unsigned seed) {
  std::mt19937 generator(seed);
  CDoubleMatrix m(rows, cols);
  for (std::size_t i = 0; i < m.size(); ++i)
    m.data()[i] = static_cast<double>(generator()) / 2147483648.0 - 1.0;
  return m;
}

void expectNear(const CDoubleMatrix& a, const CDoubleMatrix& b, double tolerance) {
  ASSERT_EQ(a.rows(), b.rows());
  ASSERT_EQ(a.cols(), b.cols());
  for (std::size_t i = 0; i < a.size(); ++i) EXPECT_NEAR(a.data()[i], b.data()[i], tolerance) << i;
}

// The message of the error that `call` throws, with the banner kept off the test's own output.
template <typename Error>
std::string messageOf(const std::function<void()>& call) {
  setErrorChannel({});
  std::string message = "nothing thrown";
  try {
    call();
  } catch (const Error& error) {
    message = error.what();
  }
  return message;
}

TEST(MatrixProducts, AgreeWithEachOtherAndWithNumbersWorkedByHand) {
  const double six[] = {1, 2, 3, 4, 5, 6};
  const CDoubleMatrix a = mLoadMem(2, 3, six), b = mLoadMem(3, 2, six);
  const double product[] = {22, 28, 49, 64};
  EXPECT_EQ(MatrixMultiply(a, b), mLoadMem(2, 2, product));
  EXPECT_EQ(mmABt(a, MatrixTranspose(b)), mLoadMem(2, 2, product));
  EXPECT_EQ(MatrixMultiply(meye(2), a), a);
  EXPECT_EQ(MatrixMultiply(a, 2.0)[1][2], 12.0);
  EXPECT_EQ(MatrixAppendRows(a, mones(1, 3))[2][0], 1.0);
  EXPECT_EQ(submat_col(a, 1, 2)[1][0], 5.0);
  EXPECT_EQ(mclip(a, 2.0, 4.0)[0][0], 2.0);
  EXPECT_EQ(mclip(a, 2.0, 4.0)[1][2], 4.0);
  EXPECT_EQ(mclip(a, 9.0, 1.5)[0][0], 1.5);
  EXPECT_EQ(dot(a, b), 91.0);
  EXPECT_EQ(dot(mones(1, 2), a), 3.0);
}

TEST(MatrixProducts, RefuseShapesThatDoNotFit) {
  const CDoubleMatrix a = mones(2, 3);
  EXPECT_THROW(MatrixMultiply(a, a), ShapeError);
  EXPECT_THROW(mmABt(a, mones(2, 2)), ShapeError);
  EXPECT_THROW(MatrixAppendRows(a, mones(1, 2)), ShapeError);
  EXPECT_THROW(submat_col(a, 1, 3), ShapeError);
  EXPECT_THROW(submat_col(a, -1, 1), ShapeError);
  EXPECT_THROW(submat_col(a, 2, 1), ShapeError);
  EXPECT_THROW(dot(a, mones(1, 5)), ShapeError);
  EXPECT_THROW(interp1(mones(1, 1), mones(1, 1), a), ShapeError);
  EXPECT_EQ(messageOf<ShapeError>([&] { minv(a); }), " the matrix should be square! ");
  EXPECT_EQ(messageOf<ShapeError>([&] { interp1(mones(3, 2), a, a); }),
            "The x input should be a column vector");
  EXPECT_EQ(messageOf<ShapeError>([&] { interp1_gamma(mones(3, 1), mones(3, 2), a); }),
            "input should be a column vector");
}

// The inverse of the Hilbert matrix has integer entries, known in closed form.
TEST(Minv, InvertsTheHilbertMatrix) {
  CDoubleMatrix hilbert(4, 4);
  for (std::int32_t i = 0; i < 4; ++i)
    for (std::int32_t j = 0; j < 4; ++j) hilbert[i][j] = 1.0 / (i + j + 1);
  const double inverse[] = {16,  -120,  240,  -140,  -120, 1200, -2700, 1680,
                            240, -2700, 6480, -4200, -140, 1680, -4200, 2800};
  expectNear(minv(hilbert), mLoadMem(4, 4, inverse), 1e-8);
  expectNear(minv(hilbert + 0.0), mLoadMem(4, 4, inverse), 1e-8);  // of a temporary
}

TEST(Minv, PivotsAndReportsOnlyARowOfZeros) {
  const double swapped[] = {0, 2, 0, 0, 0, 4, 8, 0, 0};
  const double inverse[] = {0, 0, 0.125, 0.5, 0, 0, 0, 0.25, 0};
  const LuDecomposition two = ludcmp(mLoadMem(3, 3, swapped));  // two exchanges
  EXPECT_EQ(two.parity * two.lu[0][0] * two.lu[1][1] * two.lu[2][2], 64.0);
  EXPECT_EQ(minv(mLoadMem(3, 3, swapped)), mLoadMem(3, 3, inverse));

  const double singular[] = {1, 2, 2, 4};
  EXPECT_GT(std::abs(minv(mLoadMem(2, 2, singular))[0][0]), 1e15);
  const double zeroRow[] = {1, 2, 0, 0};
  EXPECT_EQ(messageOf<NumericError>([&] { minv(mLoadMem(2, 2, zeroRow)); }),
            "Singular matrix in routine ludcmp");
}

TEST(Svd, FactorsAreOrthonormalAndGiveTheMatrixBack) {
  for (const auto& [rows, cols] : {std::pair{24, 3}, {3, 3}, {3, 24}, {1, 4}, {4, 1}, {61, 24}}) {
    SCOPED_TRACE(std::to_string(rows) + " x " + std::to_string(cols));
    const CDoubleMatrix a = randomMatrix(rows, cols, static_cast<unsigned>(rows * 100 + cols));
    const SingularValues svd = svdcmp(a);
    CDoubleMatrix scaled = svd.u;
    for (std::int32_t i = 0; i < rows; ++i)
      for (std::int32_t k = 0; k < cols; ++k) scaled[i][k] *= svd.w[static_cast<std::size_t>(k)];
    expectNear(mmABt(scaled, svd.v), a, 1e-13);
    expectNear(mmABt(svd.v, svd.v), meye(cols), 1e-13);
    if (rows >= cols) expectNear(MatrixMultiply(MatrixTranspose(svd.u), svd.u), meye(cols), 1e-13);
  }
}

// The four Penrose conditions hold for exactly one matrix.
TEST(Pinv, MeetsThePenroseConditionsWhateverTheRank) {
  CDoubleMatrix rankTwo = MatrixMultiply(randomMatrix(6, 2, 1), randomMatrix(2, 4, 2));
  CDoubleMatrix zeroOnDiagonal(4, 4);  // splits the bidiagonal form in the middle
  zeroOnDiagonal[0][0] = zeroOnDiagonal[0][1] = zeroOnDiagonal[1][2] = zeroOnDiagonal[2][3] = 1.0;
  CDoubleMatrix zeroInside = zeroOnDiagonal;  // two rows above the end
  zeroInside[2][2] = zeroInside[3][3] = 1.0;
  for (const CDoubleMatrix& a : {randomMatrix(24, 3, 3), randomMatrix(3, 5, 4), rankTwo,
                                 mones(3, 3), zeroOnDiagonal, zeroInside, CDoubleMatrix(3, 2)}) {
    const CDoubleMatrix p = pinv(a);
    const CDoubleMatrix ap = MatrixMultiply(a, p), pa = MatrixMultiply(p, a);
    expectNear(MatrixMultiply(ap, a), a, 1e-12);
    expectNear(MatrixMultiply(pa, p), p, 1e-12);
    expectNear(MatrixTranspose(ap), ap, 1e-12);
    expectNear(MatrixTranspose(pa), pa, 1e-12);
  }
}

TEST(Pinv, SmallSingularValuesCountAsZero) {
  CDoubleMatrix a(2, 2);
  a[0][0] = 4.0;
  a[1][1] = 1e-11;
  EXPECT_NEAR(pinv(a)[0][0], 0.25, 1e-15);
  EXPECT_EQ(pinv(a)[1][1], 0.0);
  // Equal rows leave columns of rounding, whose squares are next to nothing.
  for (std::int32_t n = 1; n < 40; ++n) EXPECT_NEAR(pinv(mones(n, n))[0][0], 1.0 / (n * n), 1e-14);
  a[1][1] = 1.01e-10;
  EXPECT_NEAR(pinv(a)[1][1] * 1.01e-10, 1.0, 1e-12);
  a[1][1] = 0.99e-10;
  EXPECT_EQ(pinv(a)[1][1], 0.0);
  a[1][1] = std::nan("");
  EXPECT_EQ(messageOf<NumericError>([&] { pinv(a); }), "no convergence in 30 svdcmp iterations");
}

// Three points with the slopes of their segments at the ends: the middle's second derivative is
// twice the change of slope, the ends' are minus half of that.
TEST(MatrixInterpolation, EndsHaveTheSlopesOfTheirSegments) {
  const double tent[] = {0, 1, 0}, at[] = {0.5, 1.5, -1};
  const CDoubleMatrix curve =
      interp1(CDoubleMatrix(0, 1, 2), mLoadMem(3, 1, tent), mLoadMem(3, 1, at));
  const double expected[] = {0.5 + 0.125, 0.5 + 0.125, -1 + (6 * 2 + 0 * 4) / 6.0};
  expectNear(curve, mLoadMem(3, 1, expected), 1e-12);
  EXPECT_EQ(endSlope(1, 5, 1, 5), 1.0);  // of no width
  EXPECT_EQ(endSlope(1, 5, 1, 7), (2 + 1e-14) / 1e-14);
}

TEST(MatrixInterpolation, EachColumnHasItsChannelsCurve) {
  const CDoubleMatrix x(0, 1, 2);
  const double tent[] = {0, 1, 0}, line[] = {3, 4, 5}, at[] = {0.5, 0.5, 0.5, 0.25, 1, 1, 1, 2};
  const CDoubleMatrix r = mLoadMem(3, 1, tent), b = mLoadMem(3, 1, line), xi = mLoadMem(2, 4, at);
  const double one[] = {3.5, 3.5, 3.5, 3.25, 4, 4, 4, 5};
  const double three[] = {0.625, 1.25, 3.5, 3.25, 1, 2, 4, 5};
  expectNear(interp1_gamma(x, b, xi), mLoadMem(2, 4, one), 1e-12);
  expectNear(interp1_gamma(x, r, MatrixMultiply(r, 2.0), b, xi), mLoadMem(2, 4, three), 1e-12);
  EXPECT_THROW(interp1_gamma(x, r, r, xi, xi), ShapeError);
  EXPECT_EQ(toVector3(toMatrix(Vector3{1, 2, 3})), (Vector3{1, 2, 3}));
  EXPECT_EQ(messageOf<ShapeError>([&] { toPatchTable(mones(3, 2)); }),
            "a table of 24 rows of 3 is needed, not 3 of 2");
}

}  // namespace
}  // namespace greycard
