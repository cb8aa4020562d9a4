#include "damped_search.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <vector>

namespace greycard {
namespace {

using Unknowns = std::vector<double>;

struct Residual {
  double value;
  Unknowns slope;
};

/// Sum of squares of residuals of which each comes with its slopes.
struct SquaresCost {
  using State = Unknowns;
  std::vector<Residual> (*residuals)(const Unknowns&);
  std::size_t n = 2;

  std::size_t unknowns() const { return n; }
  State moved(const State& state, std::span<const double> step) const {
    State next = state;
    for (std::size_t i = 0; i < n; ++i) next[i] += step[i];
    return next;
  }
  bool evaluate(const State& x, LocalModel& out) const {
    out.reset(n);
    for (const Residual& r : residuals(x)) {
      out.value += r.value * r.value;
      for (std::size_t i = 0; i < n; ++i) {
        out.gradient[i] += 2.0 * r.value * r.slope[i];
        for (std::size_t j = 0; j < n; ++j)
          out.curvature[i * n + j] += 2.0 * r.slope[i] * r.slope[j];
      }
    }
    return std::isfinite(out.value);
  }
};

// J. J. More, B. S. Garbow, K. E. Hillstrom, ACM TOMS 7 (1981) 17: problems 1, 2, 5 and 13 with
// their standard starts and published minima.
std::vector<Residual> rosenbrockBySlopes(const Unknowns& x) {
  return {{10.0 * (x[1] - x[0] * x[0]), {-20.0 * x[0], 10.0}}, {1.0 - x[0], {-1.0, 0.0}}};
}
std::vector<Residual> freudensteinRoth(const Unknowns& x) {
  const double y = x[1];
  return {{-13.0 + x[0] + ((5.0 - y) * y - 2.0) * y, {1.0, -3.0 * y * y + 10.0 * y - 2.0}},
          {-29.0 + x[0] + ((y + 1.0) * y - 14.0) * y, {1.0, 3.0 * y * y + 2.0 * y - 14.0}}};
}
std::vector<Residual> beale(const Unknowns& x) {
  std::vector<Residual> all;
  const double aims[] = {1.5, 2.25, 2.625};
  for (int k = 1; k <= 3; ++k)
    all.push_back({aims[k - 1] - x[0] * (1.0 - std::pow(x[1], k)),
                   {-(1.0 - std::pow(x[1], k)), x[0] * k * std::pow(x[1], k - 1)}});
  return all;
}
std::vector<Residual> powellSingular(const Unknowns& x) {
  const double a = x[1] - 2.0 * x[2], b = x[0] - x[3];
  return {
      {x[0] + 10.0 * x[1], {1.0, 10.0, 0.0, 0.0}},
      {std::sqrt(5.0) * (x[2] - x[3]), {0.0, 0.0, std::sqrt(5.0), -std::sqrt(5.0)}},
      {a * a, {0.0, 2.0 * a, -4.0 * a, 0.0}},
      {std::sqrt(10.0) * b * b, {2.0 * std::sqrt(10.0) * b, 0.0, 0.0, -2.0 * std::sqrt(10.0) * b}}};
}

TEST(DampedSearch, FindsThePublishedMinima) {
  struct Problem {
    const char* name;
    SquaresCost cost;
    Unknowns start;
    double minimum;
  };
  const Problem problems[] = {
      {"Rosenbrock", {rosenbrockBySlopes}, {-1.2, 1.0}, 0.0},
      {"Freudenstein and Roth", {freudensteinRoth}, {0.5, -2.0}, 48.9842},
      {"Beale", {beale}, {1.0, 1.0}, 0.0},
      {"Powell singular", {powellSingular, 4}, {3.0, -1.0, 0.0, 1.0}, 0.0},
  };
  for (const Problem& problem : problems) {
    SCOPED_TRACE(problem.name);
    const auto found = dampedSearch(problem.cost, problem.start);
    EXPECT_TRUE(found.converged);
    EXPECT_NEAR(found.value, problem.minimum, 1e-4);
  }
}

TEST(DampedSearch, StopsWhereThereIsNoCostAndAtTheLimit) {
  const auto nowhere = [](const Unknowns&) {
    return std::vector<Residual>{{std::nan(""), {1.0, 1.0}}};
  };
  EXPECT_TRUE(std::isinf(dampedSearch(SquaresCost{nowhere}, {1.0, 2.0}).value));
  // A cost that falls for ever.
  const auto endless = [](const Unknowns& x) {
    return std::vector<Residual>{{std::exp(-x[0]), {-std::exp(-x[0]), 0.0}}};
  };
  const auto found = dampedSearch(SquaresCost{endless}, {0.0, 0.0}, {.maxEvaluations = 7});
  EXPECT_EQ(found.evaluations, 7);
  EXPECT_FALSE(found.converged);
}

TEST(Cholesky, SolvesAndRefuses) {
  // A = L L' with L = (2, 0, 0), (1, 3, 0), (-1, 2, 1); x = (1, -2, 3).
  std::array<double, 9> a{4, 0, 0, 2, 10, 0, -2, 5, 6};  // the upper triangle is not read
  std::array<double, 3> x{4 * 1 + 2 * -2 - 2 * 3, 2 * 1 + 10 * -2 + 5 * 3, -2 * 1 + 5 * -2 + 6 * 3};
  ASSERT_TRUE(solvePositiveDefinite(a, x));
  EXPECT_NEAR(x[0], 1.0, 1e-12);
  EXPECT_NEAR(x[1], -2.0, 1e-12);
  EXPECT_NEAR(x[2], 3.0, 1e-12);
  std::array<double, 4> indefinite{1, 0, 2, 1}, notANumber{1, 0, NAN, 1};
  std::array<double, 2> b{1, 1};
  EXPECT_FALSE(solvePositiveDefinite(indefinite, b));
  EXPECT_FALSE(solvePositiveDefinite(notANumber, b));
}

}  // namespace
}  // namespace greycard
