#include "fit_search.h"

#include <algorithm>
#include <cmath>

#include "colour_space.h"

namespace greycard {
namespace {

constexpr double kSmoothing[] = {0.3, 0.03, 0.003, 3e-4};  // of dE, for norms below 2
constexpr DampedOptions kRough{.tolerance = 1e-6, .maxEvaluations = 60};
constexpr DampedOptions kFine{.tolerance = 1e-12, .maxEvaluations = 400};

constexpr int kMostLimitRounds = 30;
constexpr double kFirstPenalty = 10.0;   // of the cost per squared excess of a row's noise
constexpr double kExcessAllowed = 1e-7;  // of a row's noise over its limit
constexpr double kPenaltyGrowth = 4.0;

void add(FitEnd& end, DampedResult<FitState>&& part) {
  end.state = std::move(part.state);
  end.evaluations += part.evaluations;
  end.converged = part.converged;
}

bool isLimited(const RowLimits& limits) {
  return std::any_of(limits.limit.begin(), limits.limit.end(),
                     [](double limit) { return std::isfinite(limit); });
}

double largestExcess(const RowLimits& limits, const Matrix3& matrix) {
  double excess = 0.0;
  for (std::size_t c = 0; c < 3; ++c)
    excess = std::max(excess, rowNoise(matrix[c]) - limits.limit[c]);
  return excess;
}

// Hestenes and Powell: after each minimum the multipliers become the forces there.
void searchWithin(FitCost& cost, FitEnd& end) {
  LocalModel model;
  if (!cost.evaluate(end.state, model)) return;
  cost.limits.penalty = kFirstPenalty * std::max(model.value, 1.0);
  double before = largestExcess(cost.limits, end.state.matrix);
  for (int round = 0; round < kMostLimitRounds; ++round) {
    add(end, dampedSearch(cost, end.state, kFine));
    for (std::size_t c = 0; c < 3; ++c)
      if (std::isfinite(cost.limits.limit[c]))
        cost.limits.multiplier[c] = std::max(
            0.0, cost.limits.multiplier[c] +
                     cost.limits.penalty * (rowNoise(end.state.matrix[c]) - cost.limits.limit[c]));
    const double excess = largestExcess(cost.limits, end.state.matrix);
    if (excess <= kExcessAllowed) return;
    if (excess > 0.25 * before) cost.limits.penalty *= kPenaltyGrowth;
    before = excess;
  }
  end.converged = false;
}

// Chroma times `factor`, at the same luminance.
Matrix3 withChroma(const Matrix3& matrix, const Vector3& luminance, double factor) {
  Matrix3 out = matrix;
  for (std::size_t j = 0; j < 3; ++j) {
    double grey = 0.0;
    for (std::size_t c = 0; c < 3; ++c) grey += luminance[c] * matrix[c][j];
    for (std::size_t c = 0; c < 3; ++c) out[c][j] = grey + factor * (matrix[c][j] - grey);
  }
  return out;
}

}  // namespace

FitEnd fitSearch(FitCost cost, const FitState& start) {
  FitEnd end;
  end.state = start;
  const double norm = cost.norm;
  if (norm > 2.0) {
    cost.norm = 2.0;
    add(end, dampedSearch(cost, end.state, kRough));
    cost.norm = norm;
  }
  if (norm < 2.0) {
    for (const double smoothing : kSmoothing) {
      cost.smoothing = smoothing;
      add(end, dampedSearch(cost, end.state, smoothing == kSmoothing[3] ? kFine : kRough));
    }
  } else if (!isLimited(cost.limits)) {
    add(end, dampedSearch(cost, end.state, kFine));
  }
  if (isLimited(cost.limits)) searchWithin(cost, end);
  end.limits = cost.limits;
  end.smoothing = cost.smoothing;
  end.objective = cost.objective(end.state);
  return end;
}

std::vector<FitState> fitStarts(const FitContext& context, const FitSetup& setup) {
  const Matrix3& toXyz = context.options.rgbToXyz;
  const double sum = toXyz[1][0] + toXyz[1][1] + toXyz[1][2];
  const Vector3 luminance{toXyz[1][0] / sum, toXyz[1][1] / sum, toXyz[1][2] / sum};
  std::vector<FitState> starts(4, setup.start);
  starts[1].matrix = context.leastSquares(setup.start, setup.samples, false);
  starts[2].matrix = withChroma(setup.start.matrix, luminance, 1.3);
  starts[3].matrix = withChroma(setup.start.matrix, luminance, 0.7);
  std::vector<std::array<double, 2>> numbers;
  const FitToneCurve family = setup.start.curve.family;
  if (family == FitToneCurve::power) numbers = {{0.6, 0.0}, {1.0, 0.0}, {1.7, 0.0}};
  if (family == FitToneCurve::powerOffset)
    numbers = {{0.6, 0.0}, {1.0, 0.0}, {1.7, 0.0}, {1.3, 0.02}};
  for (const std::array<double, 2>& curve : numbers) {
    FitState start = setup.start;
    start.curve.numbers = curve;
    start.matrix = context.leastSquares(start, setup.samples, true);
    starts.push_back(std::move(start));
  }
  return starts;
}

}  // namespace greycard
