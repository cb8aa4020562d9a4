#include "belief/trade_off.h"

#include <algorithm>
#include <cmath>

#include "belief/fit_figures.h"

namespace greycard {
namespace {

constexpr double kQuietest = 0.6;

}  // namespace

TradeOff::TradeOff(const FitContext& context, const FitSetup& setup, const FitEnd& found)
    : context_(context), setup_(setup), end_(found), first_(kQuietest) {
  for (const Vector3& row : found.state.matrix) first_ = std::max(first_, rowNoise(row));
}

FitTradeOff TradeOff::next(int steps) {
  const double share = steps > 1 ? static_cast<double>(done_) / (steps - 1.0) : 0.0;
  FitTradeOff row;
  row.limit = first_ * std::pow(kQuietest / first_, share);
  if (done_++ > 0) {
    FitCost cost = context_.cost(setup_);
    for (double& limit : cost.limits.limit) limit = std::min(limit, row.limit);
    end_ = fitSearch(std::move(cost), end_.state);
    evaluations_ += end_.evaluations;
  }
  for (std::size_t c = 0; c < 3; ++c) row.rowNoise[c] = rowNoise(end_.state.matrix[c]);
  row.figures = figuresOf(context_, shownPhotographs(context_, setup_, end_.state));
  return row;
}

}  // namespace greycard
