#include "powell.h"

#include <cmath>
#include <limits>
#include <numbers>
#include <string>
#include <vector>

#include "brent.h"
#include "greycard/diagnostics.h"
#include "greycard/errors.h"
#include "gtest/gtest.h"
#include "text.h"

namespace greycard {
namespace {

using Point = std::span<const double>;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

double square(double x) {
  return x * x;
}

// Standard starts and minima: J. J. More, B. S. Garbow, K. E. Hillstrom, Testing unconstrained
// optimization software, ACM TOMS 7 (1981) 17, problems 1, 5, 7, 13 and 14.
double rosenbrock(Point x) {
  return square(10 * (x[1] - x[0] * x[0])) + square(1 - x[0]);
}
double beale(Point x) {
  return square(1.5 - x[0] * (1 - x[1])) + square(2.25 - x[0] * (1 - square(x[1]))) +
         square(2.625 - x[0] * (1 - x[1] * square(x[1])));
}
double helicalValley(Point x) {
  const double turns = x[0] == 0 ? std::copysign(0.25, x[1])  // the limit
                                 : std::atan(x[1] / x[0]) / (2 * std::numbers::pi);
  const double theta = turns + (x[0] < 0 ? 0.5 : 0);
  return square(10 * (x[2] - 10 * theta)) + square(10 * (std::hypot(x[0], x[1]) - 1)) +
         square(x[2]);
}
double powellSingular(Point x) {
  return square(x[0] + 10 * x[1]) + 5 * square(x[2] - x[3]) + square(square(x[1] - 2 * x[2])) +
         10 * square(square(x[0] - x[3]));
}
double wood(Point x) {
  return 100 * square(x[1] - square(x[0])) + square(1 - x[0]) + 90 * square(x[3] - square(x[2])) +
         square(1 - x[2]) + 10 * square(x[1] + x[3] - 2) + 0.1 * square(x[1] - x[3]);
}

struct Problem {
  const char* name;
  double (*cost)(Point);
  std::vector<double> start, minimum;  // where the cost is 0
  double tolerance;                    // of the point: wide where the valley is flat
  int mostCalls;                       // a lost direction or parabola costs more
};

TEST(Powell, FindsThePublishedMinima) {
  const Problem problems[] = {
      // Name, function, start, minimum, tolerance of the point, most calls.
      {"Rosenbrock", rosenbrock, {-1.2, 1}, {1, 1}, 1e-4, 380},
      {"Beale", beale, {1, 1}, {3, 0.5}, 1e-4, 140},
      {"helical valley", helicalValley, {-1, 0, 0}, {1, 0, 0}, 1e-4, 40},
      {"Powell singular", powellSingular, {3, -1, 0, 1}, {0, 0, 0, 0}, 2e-2, 1300},
      {"Wood", wood, {-3, -1, -3, -1}, {1, 1, 1, 1}, 1e-3, 750},
  };
  for (const Problem& problem : problems) {
    SCOPED_TRACE(problem.name);
    int calls = 0;
    const auto counted = [&](Point x) { return ++calls, problem.cost(x); };
    const PowellResult result = powell(counted, problem.start, {.tolerance = 1e-12});
    EXPECT_NEAR(result.lastValue, 0, 1e-9);
    for (std::size_t i = 0; i < problem.minimum.size(); ++i)
      EXPECT_NEAR(result.point[i], problem.minimum[i], problem.tolerance) << "x" << i + 1;
    EXPECT_EQ(result.firstValue, problem.cost(problem.start));
    EXPECT_EQ(result.lastValue, problem.cost(result.point));
    EXPECT_EQ(result.evaluations, calls);
    EXPECT_LE(calls, problem.mostCalls);
  }
}

TEST(Powell, SaysWhyItStopped) {
  const auto raised = [](Point x) { return 1 + rosenbrock(x); };
  EXPECT_EQ(powell(raised, std::vector{-1.2, 1.0}).stop, PowellStop::Converged);
  const PowellResult flat = powell([](Point) { return 7.0; }, std::vector{1.0, 2.0});
  EXPECT_EQ(flat.stop, PowellStop::AtMinimum);
  EXPECT_EQ(flat.point, (std::vector{1.0, 2.0}));
  EXPECT_TRUE(describe(flat.stop).starts_with("nothing lower"));
}

struct Refusal {
  double (*cost)(Point);
  PowellOptions options;
  const char* message;  // its beginning
};

TEST(Powell, EndsWithAMessageWhereThereIsNoMinimum) {
  const Refusal refusals[] = {
      {[](Point) { return kNaN; }, {}, "powell: the cost is not a number at (0.25, 0.6666666667)"},
      {[](Point x) { return x[1] > 0.75 ? kNaN : x[0] * x[0]; },
       {},
       "powell: the cost is not a number at ("},
      {[](Point) { return HUGE_VAL; }, {}, "powell: the cost is infinite at (0.25, 0.6666666667)"},
      {[](Point x) { return x[0] > 0.75 ? -HUGE_VAL : 1.0; },
       {},
       "powell: the cost is minus infinity at ("},
      {[](Point x) { return -x[0] - x[1]; },
       {},
       "the function has no minimum to bracket: it still falls at x = "},
      {rosenbrock, {.tolerance = 0.0, .maxIterations = 2}, "powell exceeding maximum iterations."},
  };
  setErrorChannel({});
  for (const Refusal& refusal : refusals) {
    try {
      powell(refusal.cost, std::vector{0.25, 2.0 / 3.0}, refusal.options);
      ADD_FAILURE() << "not thrown: " << refusal.message;
    } catch (const NumericError& error) {
      EXPECT_EQ(std::string(error.what()).rfind(refusal.message, 0), 0u) << error.what();
    }
  }
}

struct LineCase {
  const char* name;
  double (*f)(double);
  double start, step, minimum;
  int mostCalls;
};

// Minima worked by hand.
TEST(Brent, FindsTheMinimumOfALine) {
  const LineCase cases[] = {
      // Name, function, start, first step, minimum, most calls.
      {"far away", [](double x) { return square(x - 5000); }, 0, 1, 5000, 2},
      {"backwards", [](double x) { return square(x + 5); }, 0, 0.1, -5, 2},
      {"a wall", [](double x) { return x > 0 ? x - std::log(x) : HUGE_VAL; }, 3, 1, 1, 19},
      {"a kink", [](double x) { return std::abs(x - 0.3); }, 0, -1, 0.3, 25},
      {"cosine", [](double x) { return std::cos(x); }, 2, 0.5, std::numbers::pi, 7},
      {"start at the minimum", [](double x) { return square(x); }, 0, 1, 0, 2},
  };
  for (const LineCase& line : cases) {
    SCOPED_TRACE(line.name);
    const Bracket bracket = bracketMinimum(line.f, line.start, line.f(line.start), line.step);
    EXPECT_GE((bracket.b - bracket.a) * (bracket.c - bracket.b), 0.0);
    EXPECT_LE(bracket.fb, std::min(bracket.fa, bracket.fc));
    int calls = 0;
    const auto counted = [&](double x) {
      ++calls;
      return line.f(x);
    };
    const LineMinimum found = brent(counted, bracket);
    EXPECT_EQ(found.evaluations, calls);
    EXPECT_LE(calls, line.mostCalls);
    EXPECT_EQ(found.firstValue, bracket.fb);
    EXPECT_NEAR(found.x, line.minimum, 1e-6 * std::max(1.0, line.minimum));
    EXPECT_EQ(found.value, line.f(found.x));
  }
}

// Golden steps, each the golden ratio times the last; a parabola's step is at most 100 of them
// longer.
TEST(Bracket, GrowsByGoldenStepsAndParabolas) {
  const double golden = std::numbers::phi;
  const auto valley = [](double x) { return square(x - 5000); };
  EXPECT_NEAR(bracketMinimum([](double x) { return x * x; }, 0, 0, 1).c, -golden, 1e-15);
  EXPECT_NEAR(bracketMinimum(valley, 0, valley(0), 1).a, 1 + 101 * golden, 1e-9);
  // The parabola's vertex at 1.8 is no help: higher than the point at 2.6.
  const auto stairs = [](double x) {
    return x < 0.5 ? 10 : x < 1.5 ? 5 : x < 2.2 ? 4.95 : x < 3 ? 4.9 : 7;
  };
  const Bracket over = bracketMinimum(stairs, 0, 10, 1);
  EXPECT_NEAR(over.c, 1 + golden + square(golden), 1e-12);
  EXPECT_EQ((std::vector{over.fa, over.fb, over.fc}), (std::vector{5.0, 4.9, 7.0}));
  setErrorChannel({});
  int calls = 0;
  try {
    bracketMinimum([&](double x) { return ++calls, -x; }, 0, 0, 1);
    FAIL();
  } catch (const NumericError& error) {
    const double last = 1 + golden * (std::pow(100, kMaxBracketSteps + 1) - 1) / 99;  // no vertex
    EXPECT_EQ(error.what(), "the function has no minimum to bracket: it still falls at x = " +
                                formatGeneral(last));
  }
  EXPECT_EQ(calls, 62);
}

TEST(Brent, EndsOnItsLimitWithAMessage) {
  setErrorChannel({});
  const auto bowl = [](double x) { return square(x - 0.3); };
  try {
    brent(bowl, {-1, 0, 2, bowl(-1), bowl(0), bowl(2)}, {.maxIterations = 2});
    FAIL();
  } catch (const NumericError& error) {
    EXPECT_STREQ(error.what(), "Too many iterations in brent");
  }
}

}  // namespace
}  // namespace greycard
