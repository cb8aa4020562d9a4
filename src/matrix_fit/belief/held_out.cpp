#include "belief/held_out.h"

#include <cmath>
#include <numeric>
#include <stdexcept>

#include "belief/fit_figures.h"
#include "greycard/delta_e.h"

namespace greycard {
namespace {

constexpr std::size_t kFolds = 6;

}  // namespace

std::vector<PatchMask> singlePatches() {
  std::vector<PatchMask> folds(kPatchCount);
  for (std::size_t i = 0; i < kPatchCount; ++i) folds[i][i] = true;
  return folds;
}

std::vector<PatchMask> sixDiagonals() {
  std::vector<PatchMask> folds(kFolds);
  for (std::size_t i = 0; i < kPatchCount; ++i) folds[(i % kFolds + i / kFolds) % kFolds][i] = true;
  return folds;
}

FitState warmStart(const FitUnknowns& unknowns, const FitSetup& setup, const FitState& found) {
  FitState state = found;
  state.light = setup.start.light;
  if (!unknowns.freedom().gains) state.gains = setup.start.gains;
  for (std::size_t k = 0; k < state.exposure.size(); ++k)
    if (!unknowns.exposureFree(k)) state.exposure[k] = setup.start.exposure[k];
  return state;
}

bool HeldOut::add(const PatchMask& fold) {
  FitSetup setup;
  try {
    setup = context_.setup(context_.input.photographs, fold, &found_);
  } catch (const std::invalid_argument&) {
    return false;  // too few greys are left for a curve
  }
  if (!isEnough(context_.unknowns, setup.samples)) return false;
  const FitEnd end = fitSearch(context_.cost(setup), warmStart(context_.unknowns, setup, found_));
  evaluations_ += end.evaluations;
  for (const FitSample& sample : setup.samples) {
    if (!fold[sample.patch] || !(context_.weightOf(sample.photograph, sample.patch) > 0.0) ||
        context_.input.photographs[sample.photograph].clipped[sample.patch])
      continue;
    errors_.push_back(deltaE2000(context_.input.referenceLab[sample.patch],
                                 context_.shownLab(linearRgb(end.state, sample))));
    // A light field without light at the patch predicts nothing.
    if (!std::isfinite(errors_.back())) return false;
  }
  return true;
}

HeldOutFigures HeldOut::figures() const {
  if (errors_.empty()) return {};
  return {
      std::accumulate(errors_.begin(), errors_.end(), 0.0) / static_cast<double>(errors_.size()),
      percentile(errors_, 0.95)};
}

}  // namespace greycard
