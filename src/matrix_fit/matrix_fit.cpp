#include "greycard/matrix_fit.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

#include "belief/error_propagation.h"
#include "belief/fit_figures.h"
#include "belief/held_out.h"
#include "belief/stated_fit.h"
#include "belief/trade_off.h"
#include "fit_check.h"
#include "fit_search.h"
#include "greycard/delta_e.h"
#include "light_table.h"
#include "svd.h"
#include "table_conversion.h"
#include "text.h"

namespace greycard {
namespace {

constexpr int kMostRounds = 4;  // of gains and curve, which depend on each other

double conditionNumber(const Matrix3& matrix) {
  const std::vector<double> values = svdcmp(toMatrix(matrix)).w;
  const auto [least, most] = std::minmax_element(values.begin(), values.end());
  return *most / *least;
}

/// One fit: what has been found so far, and how much is still to do.
class Run {
 public:
  Run(const MatrixFitSamples& samples, const FitOptions& options, const ProgressCallback& progress)
      : context_(samples, options),
        options_(options),
        photographs_(samples.photographs),
        progress_(progress) {}

  std::optional<MatrixFitResult> fit() {
    setup_ = context_.setup(photographs_, {}, nullptr);
    if (!isEnough(context_.unknowns, setup_.samples))
      throw std::invalid_argument(
          "too few patches are left to fit " + std::to_string(context_.unknowns.count()) +
          " unknowns; six patches that neither clip nor have the weight 0 are needed, and more "
          "numbers than unknowns");
    result_.greyResidual = setup_.greyResidual;
    const std::vector<FitState> starts = fitStarts(context_, setup_);
    countSteps(starts.size());
    if (!search(starts) || !judge() || !step()) return std::nullopt;
    describe();
    return std::move(result_);
  }

 private:
  void countSteps(std::size_t starts) {
    steps_ = starts + photographs_.size() * (options_.compareStated ? 1U : 0U) +
             static_cast<std::size_t>(options_.tradeOffSteps) + 1;
    if (options_.heldOut) steps_ += singlePatches().size() + sixDiagonals().size();
    if (options_.uncertainty) steps_ += photographs_.size();
  }
  // False when the host cancels.
  bool step() {
    const double done = static_cast<double>(done_++) / static_cast<double>(steps_ - 1);
    return !progress_ || progress_(std::min(done, 1.0));
  }

  bool search(const std::vector<FitState>& starts) {
    result_.starts = static_cast<int>(starts.size());
    end_.objective = std::numeric_limits<double>::infinity();
    for (std::size_t k = 0; k < starts.size(); ++k) {
      if (!step()) return false;
      FitEnd end = fitSearch(context_.cost(setup_), starts[k]);
      result_.evaluations += end.evaluations;
      // A later start must be better by more than rounding.
      if (!(end.objective < end_.objective * (1.0 - 1e-9))) continue;
      end_ = std::move(end);
      result_.bestStart = static_cast<int>(k);
    }
    if (!std::isfinite(end_.objective))
      throw std::invalid_argument(
          "no search found a finite colour error; check the samples and the references");
    settleGains();
    return true;
  }

  // Gains and exposure that come from patches depend on a curve that the search has found.
  void settleGains() {
    const FitFreedom& freedom = context_.unknowns.freedom();
    if (freedom.curveTerms == 0 || (freedom.gains && freedom.exposure)) return;
    for (int round = 0; round < kMostRounds; ++round) {
      setup_ = context_.setup(photographs_, {}, &end_.state);
      FitEnd end =
          fitSearch(context_.cost(setup_), warmStart(context_.unknowns, setup_, end_.state));
      result_.evaluations += end.evaluations;
      end_ = std::move(end);
    }
  }

  bool judge() { return predictHeldOut() && addTradeOff() && compareStated() && addUncertainty(); }

  bool predictHeldOut() {
    if (!options_.heldOut) return true;
    const std::pair<std::vector<PatchMask>, std::optional<HeldOutFigures>*> kinds[] = {
        {singlePatches(), &result_.leaveOneOut}, {sixDiagonals(), &result_.sixFold}};
    for (const auto& [folds, figures] : kinds) {
      HeldOut heldOut(context_, end_.state);
      bool possible = true;
      for (const PatchMask& fold : folds) {
        if (!step()) return false;
        possible = possible && heldOut.add(fold);
      }
      result_.evaluations += heldOut.evaluations();
      if (possible) *figures = heldOut.figures();
    }
    return true;
  }

  bool addTradeOff() {
    TradeOff tradeOff(context_, setup_, end_);
    for (int k = 0; k < options_.tradeOffSteps; ++k) {
      if (!step()) return false;
      result_.tradeOff.push_back(tradeOff.next(options_.tradeOffSteps));
    }
    result_.evaluations += tradeOff.evaluations();
    return true;
  }

  bool compareStated() {
    result_.photographs.resize(photographs_.size());
    if (!options_.compareStated) return true;
    for (std::size_t k = 0; k < photographs_.size(); ++k) {
      if (!step()) return false;
      StatedFit stated = statedFit(context_, k);
      result_.photographs[k].stated = stated.figures;
      result_.photographs[k].statedRefusal = std::move(stated.refusal);
    }
    return true;
  }

  bool addUncertainty() {
    if (!options_.uncertainty) return true;
    ErrorPropagation propagation(context_, end_);
    bool determined = true;
    for (std::size_t k = 0; k < photographs_.size(); ++k) {
      if (!step()) return false;
      determined = determined && propagation.add(k);
    }
    if (determined) result_.uncertainty = propagation.errors();
    return true;
  }

  void describe() {
    const FitState state = withUnitGain(context_.unknowns, end_.state);
    result_.matrix = state.matrix;
    result_.gains = state.gains;
    result_.converged = end_.converged;
    for (std::size_t c = 0; c < 3; ++c) result_.rowNoise[c] = rowNoise(state.matrix[c]);
    result_.conditionNumber = conditionNumber(state.matrix);
    result_.curveNumbers = state.curve.numbers;
    result_.toneCurve = curveTerms(options_.toneCurve) > 0 ? tableOf(state.curve) : setup_.table;
    const std::vector<ShownPhotograph> shown = shownPhotographs(context_, setup_, state);
    result_.figures = figuresOf(context_, shown);
    result_.metamerismBasis =
        "CIE 1976 dE of patches 1 to 18 that took part, with the matrix of this fit";
    for (const ShownPhotograph& photograph : shown) describePhotograph(photograph, state);
    addNotes();
  }

  void describePhotograph(const ShownPhotograph& shown, const FitState& state) {
    FittedPhotograph& out = result_.photographs[shown.number];
    const PatchTable& reference = context_.input.referenceLab;
    out.exposure = state.exposure[shown.number];
    out.lab = shown.lab;
    for (std::size_t i = 0; i < kPatchCount; ++i) {
      out.dE2000[i] = deltaE2000(reference[i], shown.lab[i]);
      out.split[i] = differenceSplit(reference[i], shown.lab[i]);
      if (photographs_[shown.number].clipped[i])
        out.leftOut[i] = "it clips in the photograph";
      else if (!shown.counts[i])
        out.leftOut[i] = "its weight is 0";
    }
    out.light = lightOver(setup_, state, shown.number);
    out.lightRange = lightRange(out.light);
    const LightCoefficients& light = state.light[shown.number];
    out.lightCoefficients.assign(
        light.begin(), light.begin() + static_cast<std::ptrdiff_t>(lightTerms(options_.light)));
    out.figures = figuresOf(context_, {&shown, 1});
  }

  void addNotes() {
    for (std::size_t k = 0; k < photographs_.size(); ++k) {
      std::string list;
      for (std::size_t i = 0; i < kPatchCount; ++i)
        if (photographs_[k].clipped[i]) list += (list.empty() ? "" : ", ") + std::to_string(i + 1);
      if (!list.empty())
        result_.notes.push_back("photograph " + std::to_string(k + 1) +
                                ": left out because they clip: patches " + list);
    }
    if (result_.greyResidual && *result_.greyResidual > MatrixFitResult::kGreysDisagree)
      result_.notes.push_back("the greys miss one tone curve by " +
                              formatFixed(*result_.greyResidual, 1) +
                              " L*, so the estimated curve is not to be relied on: uneven light, "
                              "glare or a curve of another kind");
    if (!result_.converged)
      result_.notes.push_back(
          "the search stopped at its largest number of steps; the result may not be the best");
    if (options_.uncertainty && !result_.uncertainty)
      result_.notes.push_back(
          "there are no standard errors, for the samples don't determine all that is free");
  }

  FitContext context_;
  const FitOptions& options_;
  const std::vector<FitPhotograph>& photographs_;
  const ProgressCallback& progress_;
  std::size_t steps_ = 0, done_ = 0;
  FitSetup setup_;
  FitEnd end_;
  MatrixFitResult result_;
};

}  // namespace

double curveLight(std::span<const double> toneCurve, double measured) {
  return tableLight(toneCurve, measured);
}

MatrixFit::MatrixFit(FitOptions options) : options_(std::move(options)) {
  checkFitOptions(options_);
}

std::optional<MatrixFitResult> MatrixFit::fit(const MatrixFitSamples& samples,
                                              const ProgressCallback& progress) const {
  checkFitSamples(samples, options_);
  return Run(samples, options_, progress).fit();
}

}  // namespace greycard
