#pragma once

#include <span>

#include "interpolator.h"

namespace greycard {

/// Reduces control points to a subset whose spline stays within 4 units of the full set's spline at
/// the abscissae 0 .. ninterp - 1.
///
/// The points of which the reference is straight are dropped in one step, then put back one per
/// pass at the first sample that fails, in at most seven passes. Inputs and outputs may be the same
/// arrays.
///
/// \param ninterp  samples compared, 0..number of points; a sample's index also serves as the index
///        of a point, whatever the points' x (deliberate)
/// \param pinx,piny  the points; with 5 or fewer nothing is written, not even nout
/// \param poutx,pouty  room for as many points as come in; receive the reduced ones, rounded to
///        whole numbers with halves to even
/// \param nout  the number of points written
/// \throws std::invalid_argument for arrays too short, more than 512 points, or ninterp out of
///         range
/// \throws NumericError as Interpolator::GenerateCurve; the outputs are then untouched
void findMinimumControlPoints(Interpolator& interpolator, int ninterp, std::span<const double> pinx,
                              std::span<const double> piny, std::span<double> poutx,
                              std::span<double> pouty, int& nout);

}  // namespace greycard
