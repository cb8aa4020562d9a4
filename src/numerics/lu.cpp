#include "lu.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

#include "numeric_error.h"

// Crout, column by column. With row scales s_i = 1 / max_j |a_ij|, column j becomes
//   u_ij = a_ij - sum_{k<i} l_ik u_kj            for i < j
//   v_ij = a_ij - sum_{k<j} l_ik u_kj            for i >= j
// the row with the largest s_i |v_ij| comes up as the pivot row, and l_ij = v_ij / u_jj below it.

namespace greycard {
namespace {

constexpr double kTinyPivot = 1e-20;

std::vector<double> rowScales(const CDoubleMatrix& a) {
  std::vector<double> scales;
  for (std::int32_t i = 0; i < a.rows(); ++i) {
    double largest = 0.0;
    for (std::int32_t j = 0; j < a.cols(); ++j) largest = std::max(largest, std::abs(a[i][j]));
    if (largest == 0.0) nrerror("Singular matrix in routine ludcmp");
    scales.push_back(1.0 / largest);
  }
  return scales;
}

// a_ij less the sum over the first `terms` products of row i and column j.
double reduced(const CDoubleMatrix& lu, std::int32_t i, std::int32_t j, std::int32_t terms) {
  double sum = lu[i][j];
  for (std::int32_t k = 0; k < terms; ++k) sum -= lu[i][k] * lu[k][j];
  return sum;
}

}  // namespace

LuDecomposition ludcmp(const CDoubleMatrix& a) {
  LuDecomposition result{a, {}, 1.0};  // a temporary is empty from here on
  CDoubleMatrix& lu = result.lu;
  const std::int32_t n = lu.rows();
  result.order.resize(static_cast<std::size_t>(n));
  std::iota(result.order.begin(), result.order.end(), 0);
  std::vector<double> scales = rowScales(lu);

  for (std::int32_t j = 0; j < n; ++j) {
    for (std::int32_t i = 0; i < j; ++i) lu[i][j] = reduced(lu, i, j, i);

    std::int32_t pivot = j;
    double largest = -1.0;
    for (std::int32_t i = j; i < n; ++i) {
      lu[i][j] = reduced(lu, i, j, j);
      const double weight = scales[static_cast<std::size_t>(i)] * std::abs(lu[i][j]);
      if (weight > largest) {
        largest = weight;
        pivot = i;
      }
    }
    if (pivot != j) {
      std::swap_ranges(lu[j], lu[j] + n, lu[pivot]);
      std::swap(scales[static_cast<std::size_t>(j)], scales[static_cast<std::size_t>(pivot)]);
      std::swap(result.order[static_cast<std::size_t>(j)],
                result.order[static_cast<std::size_t>(pivot)]);
      result.parity = -result.parity;
    }
    if (lu[j][j] == 0.0) lu[j][j] = kTinyPivot;
    for (std::int32_t i = j + 1; i < n; ++i) lu[i][j] /= lu[j][j];
  }
  return result;
}

void lubksb(const LuDecomposition& decomposition, std::vector<double>& b) {
  const CDoubleMatrix& lu = decomposition.lu;
  const std::int32_t n = lu.rows();
  std::vector<double> x;
  for (const std::int32_t row : decomposition.order) x.push_back(b[static_cast<std::size_t>(row)]);
  const auto at = [&x](std::int32_t i) -> double& { return x[static_cast<std::size_t>(i)]; };

  for (std::int32_t i = 0; i < n; ++i)
    for (std::int32_t k = 0; k < i; ++k) at(i) -= lu[i][k] * at(k);
  for (std::int32_t i = n - 1; i >= 0; --i) {
    for (std::int32_t k = i + 1; k < n; ++k) at(i) -= lu[i][k] * at(k);
    at(i) /= lu[i][i];
  }
  b = std::move(x);
}

}  // namespace greycard
