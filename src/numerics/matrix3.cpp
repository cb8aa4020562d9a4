#include "matrix3.h"

#include "matrix_functions.h"
#include "table_conversion.h"

namespace greycard {

Matrix3 product(const Matrix3& a, const Matrix3& b) {
  Matrix3 sums{};
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j)
      for (std::size_t k = 0; k < 3; ++k) sums[i][j] += a[i][k] * b[k][j];
  return sums;
}

Matrix3 inverse(const Matrix3& m) {
  return toMatrix3(minv(toMatrix(m)));
}

}  // namespace greycard
