#pragma once

// Minimum of a function of one variable: bracketing, then Brent's method.

#include "function_ref.h"

namespace greycard {

using LineFunction = FunctionRef<double(double)>;

/// Three points with the middle one between the others and not above either of them.
struct Bracket {
  double a = 0.0, b = 0.0, c = 0.0;
  double fa = 0.0, fb = 0.0, fc = 0.0;
};

/// Brackets a minimum downhill from x0, where the function is known to be f0: golden-section steps,
/// lengthened to the vertex of the parabola through the last three points when it lies ahead.
///
/// \param step  first step, of either sign; not 0
/// \throws NumericError when the function gives NaN or minus infinity, or still falls after
///         kMaxBracketSteps steps (it has no minimum that way)
Bracket bracketMinimum(LineFunction f, double x0, double f0, double step);
inline constexpr int kMaxBracketSteps = 60;

struct BrentTolerance {
  /// Of |x|; below 1.5e-8 (the root of the double's epsilon) gains nothing.
  double relative = 1e-8;
  double absolute = 1e-12;  ///< added to it
  int maxIterations = 100;
};

/// Found to the tolerance: whatever else ends a search is an exception.
struct LineMinimum {
  double x = 0.0, value = 0.0;
  double firstValue = 0.0;  ///< at the bracket's middle point; never below `value`
  int evaluations = 0;      ///< calls of the function, without those of the bracket
};

/// Local minimum inside the bracket by parabolic steps through the three best points so far, with a
/// golden-section step whenever the parabola is not to be trusted.
/// Source: R. P. Brent, Algorithms for Minimization without Derivatives (1973), chapter 5.
///
/// \return the lowest point seen; its distance from the minimum of a smooth function is about
///         relative * |x| + absolute
/// \throws NumericError("Too many iterations in brent"), or when the function gives NaN or minus
///         infinity
LineMinimum brent(LineFunction f, const Bracket& bracket, const BrentTolerance& tolerance = {});

}  // namespace greycard
