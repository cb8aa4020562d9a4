#pragma once

#include <vector>

#include "fit_context.h"

namespace greycard {

/// Where a search ended.
struct FitEnd {
  FitState state;
  double objective = 0.0;
  RowLimits limits;        ///< with the multipliers at the end
  double smoothing = 0.0;  ///< of the last search
  int evaluations = 0;
  bool converged = false;
};

/// One search from a state. Norms above 2 start from the minimum of 2; norms below 2 are smoothed
/// where dE reaches 0, less and less; row limits are kept by multipliers.
FitEnd fitSearch(FitCost cost, const FitState& start);

/// The states that a fit starts from: least squares in two weightings, the first with more and with
/// less chroma, and with three other exponents of a power curve.
std::vector<FitState> fitStarts(const FitContext& context, const FitSetup& setup);

}  // namespace greycard
