#pragma once

#include <algorithm>
#include <cmath>
#include <concepts>
#include <cstddef>
#include <limits>
#include <span>
#include <utility>
#include <vector>

#include "cholesky.h"

namespace greycard {

/// A cost around a point: its value, and by the n unknowns its slopes and a positive semi-definite
/// n x n matrix that stands for its second derivatives (Gauss and Newton's, for instance).
struct LocalModel {
  double value = 0.0;
  std::vector<double> gradient, curvature;

  void reset(std::size_t n) {
    value = 0.0;
    gradient.assign(n, 0.0);
    curvature.assign(n * n, 0.0);
  }
};

struct DampedOptions {
  /// Stop when a step is expected to lower the cost by less than this fraction of it.
  double tolerance = 1e-12;
  int maxEvaluations = 200;
};

template <class State>
struct DampedResult {
  State state;
  double value = std::numeric_limits<double>::infinity();  ///< infinite if the start has no cost
  int evaluations = 0;
  /// The last step was expected to gain nothing, or none however short gained: else it stopped at
  /// the largest number of evaluations.
  bool converged = false;
};

/// Something with State, unknowns(), evaluate(State, LocalModel&), false where there is no cost,
/// and moved(State, step).
template <class Cost>
concept DampedCost = requires(const Cost& cost, const typename Cost::State& state,
                              LocalModel& model, std::span<const double> step) {
  { cost.unknowns() } -> std::convertible_to<std::size_t>;
  { cost.evaluate(state, model) } -> std::same_as<bool>;
  { cost.moved(state, step) } -> std::same_as<typename Cost::State>;
};

/// Minimum of a smooth cost by Newton's steps, shortened by a damping of the diagonal as Levenberg
/// and Marquardt do: J. J. More, The Levenberg-Marquardt algorithm: implementation and theory,
/// Lecture Notes in Mathematics 630 (1978) 105; the damping follows the ratio of fall and expected
/// fall: H. B. Nielsen, Damping parameter in Marquardt's method, IMM-REP-1999-05, section 2.
template <DampedCost Cost>
DampedResult<typename Cost::State> dampedSearch(const Cost& cost, const typename Cost::State& start,
                                                const DampedOptions& options = {}) {
  constexpr double kFirst = 1e-4, kLeast = 1e-12, kMost = 1e12;
  constexpr double kTiny = 1e-25;        // lets a cost that reaches 0 count as converged
  constexpr double kWorthTaking = 1e-4;  // of the expected fall
  const std::size_t n = cost.unknowns();
  DampedResult<typename Cost::State> result{start};
  LocalModel here, there;
  result.evaluations = 1;
  if (!cost.evaluate(start, here)) return result;
  result.value = here.value;

  double damping = kFirst, growth = 2.0;
  std::vector<double> matrix, step(n);
  while (result.evaluations < options.maxEvaluations && damping < kMost) {
    double largest = 0.0;
    for (std::size_t i = 0; i < n; ++i) largest = std::max(largest, here.curvature[i * n + i]);
    matrix = here.curvature;
    for (std::size_t i = 0; i < n; ++i) {
      matrix[i * n + i] += damping * std::max(matrix[i * n + i], 1e-12 * largest);
      step[i] = -here.gradient[i];
    }
    if (!solvePositiveDefinite(matrix, step)) {
      if (!(largest > 0.0)) break;
      damping = 10.0 * std::max(damping, 1e-8);
      continue;
    }
    double expected = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
      double bent = 0.0;
      for (std::size_t j = 0; j < n; ++j) bent += here.curvature[i * n + j] * step[j];
      expected -= step[i] * (here.gradient[i] + 0.5 * bent);
    }
    if (!(expected > options.tolerance * std::abs(here.value) + kTiny)) {
      result.converged = true;
      break;
    }
    auto next = cost.moved(result.state, step);
    ++result.evaluations;
    const bool possible = cost.evaluate(next, there);
    const double ratio = possible ? (here.value - there.value) / expected : -1.0;
    if (ratio > kWorthTaking) {
      result.state = std::move(next);
      std::swap(here, there);
      result.value = here.value;
      const double cube = std::pow(2.0 * ratio - 1.0, 3);
      damping = std::max(damping * std::max(1.0 / 3.0, 1.0 - cube), kLeast);
      growth = 2.0;
    } else {
      damping *= growth;
      growth *= 2.0;
    }
  }
  result.converged = result.converged || !(damping < kMost);
  return result;
}

}  // namespace greycard
