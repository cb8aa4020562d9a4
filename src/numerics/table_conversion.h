#pragma once

// Between the public fixed-size tables and CDoubleMatrix.

#include "double_matrix.h"
#include "greycard/types.h"

namespace greycard {

CDoubleMatrix toMatrix(const PatchTable& table);  ///< 24 x 3
CDoubleMatrix toMatrix(const Matrix3& matrix);    ///< 3 x 3
CDoubleMatrix toMatrix(const Vector3& row);       ///< 1 x 3
/// \throws ShapeError unless the matrix is 24 x 3
PatchTable toPatchTable(const CDoubleMatrix& matrix);
/// \throws ShapeError unless the matrix is 3 x 3
Matrix3 toMatrix3(const CDoubleMatrix& matrix);
/// \throws ShapeError unless the matrix is 1 x 3
Vector3 toVector3(const CDoubleMatrix& matrix);

}  // namespace greycard
