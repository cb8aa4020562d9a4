#include "cholesky.h"

#include <cmath>

namespace greycard {

bool solvePositiveDefinite(std::span<double> a, std::span<double> x) {
  const std::size_t n = x.size();
  // A = L L', L in the lower triangle
  for (std::size_t j = 0; j < n; ++j) {
    double* const row = &a[j * n];
    double pivot = row[j];
    for (std::size_t k = 0; k < j; ++k) pivot -= row[k] * row[k];
    if (!(pivot > 0.0 && std::isfinite(pivot))) return false;
    row[j] = std::sqrt(pivot);
    for (std::size_t i = j + 1; i < n; ++i) {
      double* const below = &a[i * n];
      double sum = below[j];
      for (std::size_t k = 0; k < j; ++k) sum -= below[k] * row[k];
      below[j] = sum / row[j];
    }
  }
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t k = 0; k < i; ++k) x[i] -= a[i * n + k] * x[k];
    x[i] /= a[i * n + i];
  }
  for (std::size_t i = n; i-- > 0;) {
    for (std::size_t k = i + 1; k < n; ++k) x[i] -= a[k * n + i] * x[k];
    x[i] /= a[i * n + i];
  }
  return true;
}

}  // namespace greycard
