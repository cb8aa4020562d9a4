#pragma once

// Free functions over CDoubleMatrix. Each returns a new matrix that the caller owns; a product or
// stack of shapes that don't fit is a ShapeError.

#include <cstdint>

#include "double_matrix.h"

namespace greycard {

CDoubleMatrix MatrixMultiply(const CDoubleMatrix& a, const CDoubleMatrix& b);
CDoubleMatrix MatrixMultiply(const CDoubleMatrix& a, double factor);
CDoubleMatrix MatrixTranspose(const CDoubleMatrix& a);
/// a stacked over b; both have the same number of columns.
CDoubleMatrix MatrixAppendRows(const CDoubleMatrix& a, const CDoubleMatrix& b);
/// n x n identity.
CDoubleMatrix meye(std::int32_t n);
CDoubleMatrix mones(std::int32_t rows, std::int32_t cols);
/// The matrix of the rows * cols doubles at `data`, row-major.
CDoubleMatrix mLoadMem(std::int32_t rows, std::int32_t cols, const double* data);
/// a * transpose(b).
CDoubleMatrix mmABt(const CDoubleMatrix& a, const CDoubleMatrix& b);
/// min(max(entry, lo), hi): the lower bound first, so lo > hi gives hi everywhere.
CDoubleMatrix mclip(const CDoubleMatrix& a, double lo, double hi);
/// Columns c0..c1 inclusive. \throws ShapeError when they aren't columns of a
CDoubleMatrix submat_col(const CDoubleMatrix& a, std::int32_t c0, std::int32_t c1);

/// Inverse by LU decomposition (lu.h).
/// \throws ShapeError(" the matrix should be square! ")
/// \throws NumericError("Singular matrix in routine ludcmp") for a row of zeros; any other singular
///         matrix gives very large entries.
CDoubleMatrix minv(const CDoubleMatrix& a);

/// Moore-Penrose pseudo-inverse (n x m of an m x n matrix) by singular value decomposition (svd.h).
/// Singular values up to 1e-10, an absolute threshold, count as zero.
/// \throws NumericError("no convergence in 30 svdcmp iterations"), also when an entry isn't finite
CDoubleMatrix pinv(const CDoubleMatrix& a);

/// Clamped cubic spline of every column of y over the column x, at the first column of xi.
/// The end slopes are those of the end segments. x increases strictly.
/// \throws ShapeError("The x input should be a column vector")
/// \throws NumericError("Bad xa input to routine splint") at a segment without width
CDoubleMatrix interp1(const CDoubleMatrix& x, const CDoubleMatrix& y, const CDoubleMatrix& xi);

/// The end slope of these splines: that of the segment from (x0, y0) to (x1, y1), with both parts
/// increased by 1e-14 so that a flat or degenerate end stays finite.
double endSlope(double x0, double y0, double x1, double y1);

/// One such spline, of the column y, at every entry of xi; the result has the shape of xi.
/// \throws ShapeError as above, or "input should be a column vector" for y
CDoubleMatrix interp1_gamma(const CDoubleMatrix& x, const CDoubleMatrix& y,
                            const CDoubleMatrix& xi);

/// One spline per column of xi: yR for column 0, yG for column 1, yB for the rest.
CDoubleMatrix interp1_gamma(const CDoubleMatrix& x, const CDoubleMatrix& yR,
                            const CDoubleMatrix& yG, const CDoubleMatrix& yB,
                            const CDoubleMatrix& xi);

}  // namespace greycard
