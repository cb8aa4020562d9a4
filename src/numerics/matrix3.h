#pragma once

// Products, inverses and projections by 3 x 3 matrices, which are row by row.

#include "greycard/types.h"

namespace greycard {

inline constexpr Matrix3 kIdentity3{{{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}}};

/// m * column.
inline Vector3 multiply(const Matrix3& m, const Vector3& v) {
  return {m[0][0] * v[0] + m[0][1] * v[1] + m[0][2] * v[2],
          m[1][0] * v[0] + m[1][1] * v[1] + m[1][2] * v[2],
          m[2][0] * v[0] + m[2][1] * v[1] + m[2][2] * v[2]};
}

/// a * b: what b and then a do to a column.
Matrix3 product(const Matrix3& a, const Matrix3& b);

/// Inverse to the bits of minv.
/// \throws NumericError as minv does for a row of zeros; any other singular matrix gives very large
///         entries
Matrix3 inverse(const Matrix3& m);

/// The image of a point of the plane under a homography, m * (x, y, 1) brought to w = 1.
inline Point2 project(const Matrix3& m, const Point2& point) {
  const Vector3 p = multiply(m, {point.x, point.y, 1.0});
  return {p[0] / p[2], p[1] / p[2]};
}

}  // namespace greycard
