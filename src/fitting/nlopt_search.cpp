#include "nlopt_search.h"

#include <nlopt.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <exception>
#include <memory>
#include <new>
#include <vector>

namespace greycard {
namespace {

constexpr double kXTolerance = 1e-8, kObjectiveTolerance = 1e-8;
constexpr int kEvaluationsPerReport = 64;

using Clock = std::chrono::steady_clock;

// One search, as the callbacks see it: they stand between NLopt, which is C and must not be thrown
// through, and the run's own functions.
struct Search {
  const NloptProblem& problem;
  const SearchOptions& options;
  nlopt_opt optimiser;
  Clock::time_point start = Clock::now();
  int evaluations = 0;
  std::exception_ptr failure{};

  double seconds() const { return std::chrono::duration<double>(Clock::now() - start).count(); }

  void report() {
    if (++evaluations % kEvaluationsPerReport != 0 || !options.progress) return;
    double fraction = 0.0;
    if (options.maxSeconds > 0.0) fraction = seconds() / options.maxSeconds;
    if (options.maxEvaluations > 0)
      fraction = std::max(fraction, static_cast<double>(evaluations) / options.maxEvaluations);
    if (!options.progress(std::min(fraction, 1.0))) nlopt_force_stop(optimiser);
  }

  // Runs one callback; infinity when it threw or its value is not a number.
  double guarded(NloptFunction function, unsigned n, const double* x, double* gradient) {
    constexpr double kWorst = std::numeric_limits<double>::infinity();
    if (failure) return kWorst;
    try {
      const double value = function(n, x, gradient, problem.data);
      return std::isnan(value) ? kWorst : value;
    } catch (...) {
      failure = std::current_exception();
      nlopt_force_stop(optimiser);
      return kWorst;
    }
  }
};

double objective(unsigned n, const double* x, double* gradient, void* data) {
  auto& search = *static_cast<Search*>(data);
  const double value = search.guarded(search.problem.objective, n, x, gradient);
  try {
    search.report();
  } catch (...) {
    search.failure = std::current_exception();
    nlopt_force_stop(search.optimiser);
  }
  return value;
}

struct Constraint {
  Search* search;
  NloptFunction function;
};

double constraint(unsigned n, const double* x, double* gradient, void* data) {
  const auto& self = *static_cast<const Constraint*>(data);
  return self.search->guarded(self.function, n, x, gradient);
}

}  // namespace

NloptOutcome minimise(const NloptProblem& problem, const SearchOptions& options,
                      std::span<double> x) {
  const std::unique_ptr<nlopt_opt_s, decltype(&nlopt_destroy)> optimiser(
      nlopt_create(NLOPT_GN_ISRES, static_cast<unsigned>(x.size())), &nlopt_destroy);
  if (!optimiser) throw std::bad_alloc();

  Search search{problem, options, optimiser.get()};
  std::vector<Constraint> constraints;
  for (const NloptFunction function : problem.constraints)
    constraints.push_back({&search, function});

  nlopt_set_lower_bounds(optimiser.get(), problem.lowerBound.data());
  nlopt_set_upper_bounds(optimiser.get(), problem.upperBound.data());
  nlopt_set_min_objective(optimiser.get(), objective, &search);
  for (Constraint& one : constraints)
    nlopt_add_inequality_constraint(optimiser.get(), constraint, &one, kConstraintTolerance);
  nlopt_set_xtol_rel(optimiser.get(), kXTolerance);
  nlopt_set_ftol_abs(optimiser.get(), kObjectiveTolerance);
  nlopt_set_stopval(optimiser.get(), problem.stopValue);
  nlopt_set_force_stop(optimiser.get(), 0);
  nlopt_set_maxtime(optimiser.get(), options.maxSeconds);
  nlopt_set_maxeval(optimiser.get(), options.maxEvaluations);

  nlopt_srand(options.seed);
  NloptOutcome outcome;
  outcome.result = nlopt_optimize(optimiser.get(), x.data(), &outcome.minimum);
  outcome.evaluations = search.evaluations;
  outcome.seconds = search.seconds();
  if (search.failure) std::rethrow_exception(search.failure);
  return outcome;
}

}  // namespace greycard
