#pragma once

// Cubic spline through n points: spline() fits, splint() evaluates.

#include <cstddef>
#include <span>

namespace greycard {

/// An end derivative above this means a natural end (zero second derivative).
inline constexpr double kNaturalEndAbove = 9.9e29;
inline constexpr double kNaturalEnd = 1e30;
/// Text of the NumericError about a segment without width.
inline constexpr const char* kBadAbscissae = "Bad xa input to routine splint";

/// Fills y2 with the second derivatives of the cubic spline through (x, y), x strictly increasing,
/// with first derivatives yp1 and ypn at the ends. `work` holds n doubles.
/// \throws ShapeError when y, y2 or work is shorter than x, or x holds fewer than 2 points
void spline(std::span<const double> x, std::span<const double> y, double yp1, double ypn,
            std::span<double> y2, std::span<double> work);
/// The same with a work vector of its own.
/// \throws NumericError("allocation failure in vector()") when there is no memory for that
void spline(std::span<const double> x, std::span<const double> y, double yp1, double ypn,
            std::span<double> y2);

/// Index klo of the segment [xa[klo], xa[klo + 1]] that evaluates x: the last one whose start is
/// not above x, within 0..n-2 (the end segments extrapolate). Found by bisection. At least two
/// points.
std::size_t splineSegment(std::span<const double> xa, double x);

/// The cubic of one segment, which runs from (x0, y0) to (x1, y1) with second derivatives m0 and
/// m1.
struct SplineCubic {
  double x0, x1, y0, y1, m0, m1;

  double operator()(double x) const {
    const double h = x1 - x0;
    const double a = (x1 - x) / h;
    const double b = (x - x0) / h;
    return a * y0 + b * y1 + ((a * a * a - a) * m0 + (b * b * b - b) * m1) * (h * h) / 6.0;
  }
};

/// The cubic of the segment that starts at xa[klo].
/// \throws NumericError("Bad xa input to routine splint") when the segment has no width
SplineCubic splineCubic(std::span<const double> xa, std::span<const double> ya,
                        std::span<const double> y2a, std::size_t klo);

/// The spline's value at x; outside the points the end cubic is extrapolated.
/// \throws NumericError("Bad xa input to routine splint") when the segment has no width, as it has
///         none between fewer than two points
double splint(std::span<const double> xa, std::span<const double> ya, std::span<const double> y2a,
              double x);

}  // namespace greycard
