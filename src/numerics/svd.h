#pragma once

#include <vector>

#include "double_matrix.h"

namespace greycard {

/// A = u * diag(w) * transpose(v), for A of m x n: u is m x n, w holds n values >= 0 in no order,
/// v is n x n. The columns of v are orthonormal, so are those of u that belong to w > 0.
struct SingularValues {
  CDoubleMatrix u;
  std::vector<double> w;
  CDoubleMatrix v;
};

/// Householder reduction to bidiagonal form, then implicit-shift QR.
/// Source: Golub, Van Loan, Matrix Computations, sections 5.4.8 and 8.6.
/// \throws NumericError("no convergence in 30 svdcmp iterations") when a singular value takes more
///         than 30 iterations, also when an entry is not finite
SingularValues svdcmp(const CDoubleMatrix& a);

}  // namespace greycard
