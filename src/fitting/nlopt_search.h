#pragma once

#include <limits>
#include <span>

#include "greycard/nlopt_helper.h"

namespace greycard {

/// NLopt's callback: dimension, point, gradient (null for the search used here) and the data
/// pointer, which leads to the run.
using NloptFunction = double (*)(unsigned n, const double* x, double* gradient, void* data);

/// What to minimise, where, under which constraints c(x) <= 0 (kept to 1e-8).
struct NloptProblem {
  std::span<const double> lowerBound, upperBound;
  NloptFunction objective;
  std::span<const NloptFunction> constraints;
  void* data;
  double stopValue = -std::numeric_limits<double>::infinity();
};

struct NloptOutcome {
  int result = 0;  ///< NLopt's code
  double minimum = 1e6;
  int evaluations = 0;
  double seconds = 0.0;
};

inline constexpr double kConstraintTolerance = 1e-8;

/// Searches from x, and leaves the best point in it, with relative tolerance 1e-8 on x and absolute
/// tolerance 1e-8 on the objective. An objective that is not a number counts as infinite. An
/// exception of a callback stops the search and is thrown again outside NLopt's C code.
NloptOutcome minimise(const NloptProblem& problem, const SearchOptions& options,
                      std::span<double> x);

}  // namespace greycard
