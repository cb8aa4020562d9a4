#pragma once

#include "fit_search.h"
#include "greycard/matrix_fit.h"

namespace greycard {

/// Error against noise: fits with one limit for all rows, from the noisiest row of the fit that was
/// found down to the quietest that can be asked for, in equal ratios. Each starts from the one
/// before.
class TradeOff {
 public:
  TradeOff(const FitContext& context, const FitSetup& setup, const FitEnd& found);

  /// The next of `steps` rows of the table.
  FitTradeOff next(int steps);
  int evaluations() const { return evaluations_; }

 private:
  const FitContext& context_;
  const FitSetup& setup_;
  FitEnd end_;
  double first_;
  int done_ = 0, evaluations_ = 0;
};

}  // namespace greycard
