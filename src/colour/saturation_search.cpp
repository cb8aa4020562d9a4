#include "saturation_search.h"

#include <algorithm>
#include <cmath>

namespace greycard {
namespace {

constexpr int kCoarseSteps = 250;
constexpr double kCoarseEnd = 4.0;
constexpr int kPasses = 11;
constexpr int kWideSteps = 50, kNarrowSteps = 25;
constexpr double kWideHalf = 0.5, kNarrowHalf = 0.25;
constexpr double kNearEnough = 0.05;
constexpr int kMostRuns = kCoarseSteps + kPasses * (kWideSteps + kNarrowSteps);

// 0.5, 0.6, ... 1.0, 1.2, ... 2.0 for the passes 10 down to 0.
double hueWeightOfPass(int k) {
  return k >= 6 ? 1.0 - (k - 5) * 0.1 : 2.0 - k / 5.0;
}

}  // namespace

std::optional<MatrixSearchResult> SaturationSearch::run(const MatrixParameters& start) {
  current_.parameters = start;
  cost_.saturationPressure = 0.0;
  if (!coarseSweep() || !hueWeightLoop()) return std::nullopt;
  return MatrixSearchResult{chosen_->parameters, chosen_->hueWeight, chosen_->saturationPressure,
                            chosen_->stop,       powellRuns_,        evaluations_};
}

double SaturationSearch::distance(const Candidate& candidate) const {
  return std::abs(candidate.chromaChange - wanted_);
}

// One minimisation from the current point; false when the host cancels.
bool SaturationSearch::minimise() {
  if (progress_ && !progress_(static_cast<double>(stepsDone_++) / kMostRuns)) return false;
  const PowellResult found = powell(cost_, current_.parameters, kMatrixPowell);
  std::copy(found.point.begin(), found.point.end(), current_.parameters.begin());
  current_.chromaChange = cost_.chromaChange(current_.parameters);
  current_.hueWeight = cost_.hueWeight;
  current_.saturationPressure = cost_.saturationPressure;
  current_.stop = found.stop;
  ++powellRuns_;
  evaluations_ += found.evaluations;
  return true;
}

// The pressure stays one step past the best: deliberate, the fine sweeps are centred there.
bool SaturationSearch::coarseSweep() {
  Candidate best;
  for (int n = 0; n < kCoarseSteps; ++n) {
    if (!minimise()) return false;
    if (n > 0 && !(distance(current_) < distance(best))) break;
    best = current_;
    cost_.saturationPressure += kCoarseEnd / (kCoarseSteps - 1);
  }
  current_ = best;
  return true;
}

// Leaves the pressure one step past `hi`, so the next sweep is centred where this one ended.
bool SaturationSearch::fineSweep(double lo, double hi, int steps) {
  Candidate best = current_;
  cost_.saturationPressure = lo;
  for (int n = 0; n < steps; ++n) {
    if (!minimise()) return false;
    if (distance(current_) < distance(best)) best = current_;
    cost_.saturationPressure += (hi - lo) / (steps - 1);
  }
  current_ = best;
  return true;
}

// The nearest of the passes' ends is chosen, the earliest of equals.
bool SaturationSearch::hueWeightLoop() {
  for (int k = kPasses - 1; k >= 0; --k) {
    stepsDone_ = kCoarseSteps + (kPasses - 1 - k) * (kWideSteps + kNarrowSteps);
    cost_.hueWeight = hueWeightOfPass(k);
    const bool reached = distance(current_) <= kNearEnough;
    if (!reached) {
      const double g = cost_.saturationPressure;
      if (!fineSweep(g - kWideHalf, g + kWideHalf, kWideSteps)) return false;
    }
    if (distance(current_) > kNearEnough) {
      const double g = cost_.saturationPressure;
      if (!fineSweep(g - kNarrowHalf, g + kNarrowHalf, kNarrowSteps)) return false;
    }
    if (!chosen_ || distance(current_) < distance(*chosen_)) chosen_ = current_;
    if (reached) break;
  }
  return true;
}

}  // namespace greycard
