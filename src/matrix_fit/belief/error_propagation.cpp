#include "belief/error_propagation.h"

#include <algorithm>
#include <cmath>

#include "belief/colour_scatter.h"
#include "belief/held_out.h"
#include "cholesky.h"

namespace greycard {
namespace {

constexpr int kRounds = 2;         // of a step towards the new minimum ...
constexpr int kRoundsOfCurve = 5;  // ... and where gains depend on a curve that is free

/// The matrix, then the rest of what gets an error by its slopes: the order of errors().
std::vector<double> numbersOf(const FitContext& context, const FitSetup& setup,
                              const FitState& found) {
  const FitState state = withUnitGain(context.unknowns, found);
  std::vector<double> all;
  for (const Vector3& row : state.matrix) all.insert(all.end(), row.begin(), row.end());
  all.insert(all.end(), state.gains.begin(), state.gains.end());
  all.insert(all.end(), state.curve.numbers.begin(), state.curve.numbers.end());
  all.insert(all.end(), state.exposure.begin(), state.exposure.end());
  for (std::size_t k = 0; k < state.light.size(); ++k)
    all.push_back(lightRange(lightOver(setup, state, k)));
  return all;
}

}  // namespace

ErrorPropagation::ErrorPropagation(const FitContext& context, const FitEnd& end)
    : context_(context),
      end_(end),
      rounds_(context.unknowns.freedom().curveTerms > 0 ? kRoundsOfCurve : kRounds),
      photographs_(context.input.photographs) {
  costOf(context.setup(photographs_, {}, &end.state)).evaluate(end.state, atEnd_);
  determined_ = follow(still_);
  variance_.assign(still_.numbers.size(), 0.0);
  covariance_.resize(photographs_.size());
}

FitCost ErrorPropagation::costOf(const FitSetup& setup) const {
  FitCost cost = context_.cost(setup);
  cost.limits = end_.limits;
  cost.smoothing = end_.smoothing;
  return cost;
}

bool ErrorPropagation::follow(Outcome& outcome) const {
  FitSetup setup;
  FitState state = end_.state;
  LocalModel model;
  std::vector<double> step(context_.unknowns.count()), matrix;
  for (int round = 0; round < rounds_; ++round) {
    setup = context_.setup(photographs_, {}, &state);
    state = warmStart(context_.unknowns, setup, state);
    if (!costOf(setup).evaluate(state, model)) return false;
    for (std::size_t i = 0; i < step.size(); ++i) step[i] = atEnd_.gradient[i] - model.gradient[i];
    matrix = atEnd_.curvature;
    if (!solvePositiveDefinite(matrix, step)) return false;
    state = context_.unknowns.moved(state, step);
  }
  outcome.numbers = numbersOf(context_, setup, state);
  outcome.shown = shownPhotographs(context_, setup, state);
  return std::all_of(outcome.numbers.begin(), outcome.numbers.end(),
                     [](double number) { return std::isfinite(number); });
}

bool ErrorPropagation::add(std::size_t photograph) {
  FitPhotograph& moved = photographs_[photograph];
  Outcome up, down;
  for (std::size_t i = 0; i < kPatchCount && determined_; ++i)
    for (std::size_t c = 0; c < 3 && determined_; ++c) {
      const auto pixels = static_cast<double>(std::max<std::size_t>(moved.pixels[i], 1));
      const double sigma = moved.noise[i][c] / std::sqrt(pixels);
      if (moved.clipped[i] || !(sigma > 0.0)) continue;
      const double measured = moved.rgb[i][c];
      moved.rgb[i][c] = measured + sigma;
      determined_ = follow(up);
      moved.rgb[i][c] = measured - sigma;
      determined_ = determined_ && follow(down);
      moved.rgb[i][c] = measured;
      if (determined_) addShift(up, down);
    }
  return determined_;
}

void ErrorPropagation::addShift(const Outcome& up, const Outcome& down) {
  for (std::size_t q = 0; q < variance_.size(); ++q) {
    const double shift = 0.5 * (up.numbers[q] - down.numbers[q]);
    variance_[q] += shift * shift;
  }
  for (std::size_t k = 0; k < covariance_.size(); ++k)
    for (std::size_t i = 0; i < kPatchCount; ++i) {
      Vector3 shift;
      for (std::size_t a = 0; a < 3; ++a)
        shift[a] = 0.5 * (up.shown[k].lab[i][a] - down.shown[k].lab[i][a]);
      for (std::size_t a = 0; a < 3; ++a)
        for (std::size_t b = 0; b < 3; ++b) covariance_[k][i][a][b] += shift[a] * shift[b];
    }
}

FitUncertainty ErrorPropagation::errors() const {
  FitUncertainty out;
  auto next = variance_.begin();
  const auto take = [&next](auto& values) {
    for (double& value : values) value = std::sqrt(*next++);
  };
  for (Vector3& row : out.matrix) take(row);
  take(out.gains);
  take(out.curve);
  out.exposure.resize(photographs_.size());
  take(out.exposure);
  out.lightRange.resize(photographs_.size());
  take(out.lightRange);
  const ColourScatter scatter;
  out.dE2000.resize(photographs_.size());
  for (std::size_t k = 0; k < out.dE2000.size(); ++k)
    for (std::size_t i = 0; i < kPatchCount; ++i)
      out.dE2000[k][i] = scatter.deviation(context_.input.referenceLab[i], still_.shown[k].lab[i],
                                           covariance_[k][i]);
  return out;
}

}  // namespace greycard
