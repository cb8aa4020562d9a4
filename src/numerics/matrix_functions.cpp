#include "matrix_functions.h"

#include <algorithm>

#include "greycard/errors.h"
#include "lu.h"
#include "svd.h"

namespace greycard {
namespace {

constexpr double kZeroSingularValue = 1e-10;

void requireShape(bool fits, const char* what) {
  if (!fits) throw ShapeError(what);
}

}  // namespace

CDoubleMatrix MatrixMultiply(const CDoubleMatrix& a, const CDoubleMatrix& b) {
  requireShape(a.cols() == b.rows(), "a product A * B needs as many columns of A as rows of B");
  CDoubleMatrix product(a.rows(), b.cols());
  for (std::int32_t i = 0; i < a.rows(); ++i)
    for (std::int32_t k = 0; k < a.cols(); ++k)
      for (std::int32_t j = 0; j < b.cols(); ++j) product[i][j] += a[i][k] * b[k][j];
  return product;
}

CDoubleMatrix MatrixMultiply(const CDoubleMatrix& a, double factor) {
  CDoubleMatrix product(a);
  product *= factor;
  return product;
}

CDoubleMatrix MatrixTranspose(const CDoubleMatrix& a) {
  CDoubleMatrix transposed(a);
  transposed.Transpose();
  return transposed;
}

CDoubleMatrix MatrixAppendRows(const CDoubleMatrix& a, const CDoubleMatrix& b) {
  requireShape(a.cols() == b.cols(), "stacked matrices need the same number of columns");
  CDoubleMatrix stack(a.rows() + b.rows(), a.cols());
  std::copy(a.data(), a.data() + a.size(), stack.data());
  std::copy(b.data(), b.data() + b.size(), stack.data() + a.size());
  return stack;
}

CDoubleMatrix meye(std::int32_t n) {
  CDoubleMatrix identity(n, n);
  for (std::int32_t i = 0; i < identity.rows(); ++i) identity[i][i] = 1.0;
  return identity;
}

CDoubleMatrix mones(std::int32_t rows, std::int32_t cols) {
  CDoubleMatrix ones(rows, cols);
  ones.Init(1.0);
  return ones;
}

CDoubleMatrix mLoadMem(std::int32_t rows, std::int32_t cols, const double* data) {
  CDoubleMatrix loaded(rows, cols);
  std::copy(data, data + loaded.size(), loaded.data());
  return loaded;
}

CDoubleMatrix mmABt(const CDoubleMatrix& a, const CDoubleMatrix& b) {
  requireShape(a.cols() == b.cols(), "a product A * transpose(B) needs equally long rows");
  CDoubleMatrix product(a.rows(), b.rows());
  for (std::int32_t i = 0; i < a.rows(); ++i)
    for (std::int32_t j = 0; j < b.rows(); ++j) {
      double sum = 0.0;
      for (std::int32_t k = 0; k < a.cols(); ++k) sum += a[i][k] * b[j][k];
      product[i][j] = sum;
    }
  return product;
}

CDoubleMatrix mclip(const CDoubleMatrix& a, double lo, double hi) {
  CDoubleMatrix clipped(a);
  for (std::size_t i = 0; i < clipped.size(); ++i)
    clipped.data()[i] = std::min(std::max(clipped.data()[i], lo), hi);
  return clipped;
}

CDoubleMatrix submat_col(const CDoubleMatrix& a, std::int32_t c0, std::int32_t c1) {
  requireShape(0 <= c0 && c0 <= c1 && c1 < a.cols(), "a column range must lie inside the matrix");
  CDoubleMatrix columns(a.rows(), c1 - c0 + 1);
  for (std::int32_t i = 0; i < a.rows(); ++i) std::copy(a[i] + c0, a[i] + c1 + 1, columns[i]);
  return columns;
}

CDoubleMatrix minv(const CDoubleMatrix& a) {
  requireShape(a.rows() == a.cols(), " the matrix should be square! ");
  const LuDecomposition decomposition = ludcmp(a);
  const std::int32_t n = decomposition.lu.rows();
  CDoubleMatrix inverse(n, n);
  for (std::int32_t j = 0; j < n; ++j) {
    std::vector<double> column(static_cast<std::size_t>(n));
    column[static_cast<std::size_t>(j)] = 1.0;
    lubksb(decomposition, column);
    for (std::int32_t i = 0; i < n; ++i) inverse[i][j] = column[static_cast<std::size_t>(i)];
  }
  return inverse;
}

// V * diag(1 / w) * transpose(U), column k left out where w_k counts as zero.
CDoubleMatrix pinv(const CDoubleMatrix& a) {
  SingularValues svd = svdcmp(a);
  for (std::int32_t k = 0; k < svd.v.cols(); ++k) {
    const double w = svd.w[static_cast<std::size_t>(k)];
    const double inverse = w > kZeroSingularValue ? 1.0 / w : 0.0;
    for (std::int32_t i = 0; i < svd.v.rows(); ++i) svd.v[i][k] *= inverse;
  }
  return mmABt(svd.v, svd.u);
}

}  // namespace greycard
