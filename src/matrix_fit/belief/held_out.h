#pragma once

#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "fit_search.h"
#include "greycard/matrix_fit.h"

namespace greycard {

/// The patches of each fold, which are left out together.
std::vector<PatchMask> singlePatches();
/// Fold k holds the patches with (column + row) mod 6 = k, one of each row of the chart.
std::vector<PatchMask> sixDiagonals();

/// The state to search on from `found` with another setup: what isn't free is the setup's.
FitState warmStart(const FitUnknowns& unknowns, const FitSetup& setup, const FitState& found);

/// CIEDE2000 of the patches that take part, each predicted by a fit without its fold.
class HeldOut {
 public:
  HeldOut(const FitContext& context, const FitState& found) : context_(context), found_(found) {}

  /// Fits without the patches of a fold.
  /// \return false when what is left is too little to fit
  bool add(const PatchMask& fold);
  HeldOutFigures figures() const;
  int evaluations() const { return evaluations_; }

 private:
  const FitContext& context_;
  const FitState& found_;
  std::vector<double> errors_;
  int evaluations_ = 0;
};

}  // namespace greycard
