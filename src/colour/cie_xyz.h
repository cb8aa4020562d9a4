#pragma once

#include "double_matrix.h"

namespace greycard {

/// Tristimulus values of reflecting samples, one row X, Y, Z each, Y = 100 for a perfect reflector:
/// k = 100 / sum(S ybar), XYZ = transpose(k C' diag(S) R). Source: CIE 15:2004, section 7.1.
/// \param spectrum      S, n x 1: relative spectral power of the light
/// \param observer      C, n x 3: colour-matching functions
/// \param reflectances  R, n x m: one sample per column
/// \throws ShapeError when the row counts differ
CDoubleMatrix CIE_XYZ(const CDoubleMatrix& spectrum, const CDoubleMatrix& observer,
                      const CDoubleMatrix& reflectances);

}  // namespace greycard
