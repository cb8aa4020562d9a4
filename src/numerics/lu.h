#pragma once

#include <vector>

#include "double_matrix.h"

namespace greycard {

/// P * A = L * U of a square matrix: L (unit diagonal, below) and U (above) share one matrix.
struct LuDecomposition {
  CDoubleMatrix lu;
  std::vector<std::int32_t> order;  ///< row i of P * A is row order[i] of A
  double parity = 1.0;              ///< +1 for an even number of row exchanges, -1 for an odd one
};

/// Crout's method with implicit row scaling and partial pivoting. A zero pivot becomes 1e-20.
/// \throws NumericError("Singular matrix in routine ludcmp") for a row of zeros
LuDecomposition ludcmp(const CDoubleMatrix& a);

/// Solves A * x = b in place: forward, then back substitution. `b` holds as many entries as A rows.
void lubksb(const LuDecomposition& decomposition, std::vector<double>& b);

}  // namespace greycard
