#pragma once

#include "greycard/types.h"

namespace greycard {

/// Moore-Penrose pseudo-inverse of a matrix rounded to single precision; the result is rounded to
/// single precision too. A singular value is not inverted when it is at most 1e-20, or when it is
/// what rounding to single precision leaves of columns that depend on each other.
/// \return false, outM untouched, when an entry of inM or of the result does not fit a float
bool compute_pseudo_inverse(const Matrix3& inM, Matrix3& outM);

}  // namespace greycard
