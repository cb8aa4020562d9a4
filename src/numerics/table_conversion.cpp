#include "table_conversion.h"

#include <algorithm>
#include <string>

#include "greycard/errors.h"

namespace greycard {
namespace {

template <std::size_t kRows>
CDoubleMatrix fromRows(const std::array<Vector3, kRows>& rows) {
  CDoubleMatrix matrix(static_cast<std::int32_t>(kRows), 3);
  for (std::size_t i = 0; i < kRows; ++i)
    std::copy(rows[i].begin(), rows[i].end(), matrix[static_cast<std::int32_t>(i)]);
  return matrix;
}

template <std::size_t kRows>
std::array<Vector3, kRows> toRows(const CDoubleMatrix& matrix) {
  if (matrix.rows() != kRows || matrix.cols() != 3)
    throw ShapeError("a table of " + std::to_string(kRows) + " rows of 3 is needed, not " +
                     std::to_string(matrix.rows()) + " of " + std::to_string(matrix.cols()));
  std::array<Vector3, kRows> rows;
  for (std::size_t i = 0; i < kRows; ++i)
    std::copy_n(matrix[static_cast<std::int32_t>(i)], 3, rows[i].begin());
  return rows;
}

}  // namespace

CDoubleMatrix toMatrix(const PatchTable& table) {
  return fromRows(table);
}
CDoubleMatrix toMatrix(const Matrix3& matrix) {
  return fromRows(matrix);
}
CDoubleMatrix toMatrix(const Vector3& row) {
  return fromRows<1>({row});
}
PatchTable toPatchTable(const CDoubleMatrix& matrix) {
  return toRows<kPatchCount>(matrix);
}
Matrix3 toMatrix3(const CDoubleMatrix& matrix) {
  return toRows<3>(matrix);
}
Vector3 toVector3(const CDoubleMatrix& matrix) {
  return toRows<1>(matrix)[0];
}

}  // namespace greycard
