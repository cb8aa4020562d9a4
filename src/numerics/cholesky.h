#pragma once

#include <cstddef>
#include <span>

namespace greycard {

/// Solves A x = b for a symmetric positive definite A (n x n, row by row; only its lower triangle
/// is read) by Cholesky's decomposition in place, without allocation.
///
/// \param a  A, overwritten; \param x  b, then x
/// \return false when A is not positive definite in double precision; x is then of no use
bool solvePositiveDefinite(std::span<double> a, std::span<double> x);

}  // namespace greycard
