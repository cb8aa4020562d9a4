#pragma once

// Minimum of a function of several variables by Powell's direction-set method, without derivatives.

#include <span>
#include <string_view>
#include <vector>

#include "function_ref.h"

namespace greycard {

using CostFunction = FunctionRef<double(std::span<const double> point)>;

struct PowellOptions {
  /// The search stops when an iteration lowers the cost by no more than this fraction of it.
  double tolerance = 1e-6;
  int maxIterations = 200;
  /// First trial step along each axis: the distance over which the cost varies.
  double initialStep = 1.0;
  /// Accuracy of a line minimum, as a fraction of the step that the direction took last.
  double lineTolerance = 1e-3;
  /// A direction's first trial step is what it moved last, but no less than this share of its trial
  /// step before ...
  double maxStepShrink = 0.1;
  /// ... and than this share of initialStep.
  double smallestStep = 1e-10;
};

enum class PowellStop {
  Converged,  ///< the last iteration lowered the cost by no more than the tolerance
  AtMinimum,  ///< the last iteration found nothing lower along any direction
};
std::string_view describe(PowellStop stop);

struct PowellResult {
  std::vector<double> point;
  double firstValue = 0.0,
         lastValue = 0.0;  ///< cost at the start and at `point`; never higher at `point`
  int iterations = 0;      ///< of one line minimisation per direction each
  int evaluations = 0;     ///< calls of the cost
  PowellStop stop = PowellStop::Converged;
};

/// Minimises `cost` from `start`. The directions are the axes at first; after each iteration the
/// net displacement may replace the direction along which the cost fell most. Source: M. J. D.
/// Powell, An efficient method for finding the minimum of a function of several variables without
/// calculating derivatives, Computer Journal 7 (1964) 155.
///
/// No state outlives the call. Nothing is allocated between two calls of `cost`.
/// \throws NumericError("powell exceeding maximum iterations."), ("Too many iterations in brent"),
///         or naming the point where the cost was not a number or minus infinity, or where it still
///         fell far away along a line (it has no minimum)
PowellResult powell(CostFunction cost, std::span<const double> start,
                    const PowellOptions& options = {});

}  // namespace greycard
