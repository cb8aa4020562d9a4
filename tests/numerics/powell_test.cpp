#include "powell.h"

#include <cmath>
#include <limits>
#include <numbers>
#include <ostream>
#include <string>
#include <vector>

#include "brent.h"
#include "greycard/diagnostics.h"
#include "greycard/errors.h"
#include "gtest/gtest.h"

namespace greycard {
namespace {

using Point = std::span<const double>;

double square(double x) {
  return x * x;
}

// Standard starts and minima: J. J. More, B. S. Garbow, K. E. Hillstrom, Testing unconstrained
// optimization software, ACM TOMS 7 (1981) 17, with their problem numbers.
struct Problem {
  const char* name;
  double (*cost)(Point);
  std::vector<double> start, minimum;
  double value;      // at the minimum
  double tolerance;  // of the point: wide where the valley is flat
};

double rosenbrock(Point x) {
  return square(10 * (x[1] - x[0] * x[0])) + square(1 - x[0]);
}
double freudensteinRoth(Point x) {
  return square(-13 + x[0] + ((5 - x[1]) * x[1] - 2) * x[1]) +
         square(-29 + x[0] + ((x[1] + 1) * x[1] - 14) * x[1]);
}
double beale(Point x) {
  return square(1.5 - x[0] * (1 - x[1])) + square(2.25 - x[0] * (1 - square(x[1]))) +
         square(2.625 - x[0] * (1 - x[1] * square(x[1])));
}
double helicalValley(Point x) {
  // In turns; the limit on the axis itself.
  const double theta = x[0] == 0
                           ? std::copysign(0.25, x[1])
                           : std::atan(x[1] / x[0]) / (2 * std::numbers::pi) + (x[0] < 0 ? 0.5 : 0);
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
double bard(Point x) {
  constexpr double kY[] = {0.14, 0.18, 0.22, 0.25, 0.29, 0.32, 0.35, 0.39,
                           0.37, 0.58, 0.73, 0.96, 1.34, 2.10, 4.39};
  double sum = 0;
  for (int i = 1; i <= 15; ++i)
    sum += square(kY[i - 1] - (x[0] + i / ((16 - i) * x[1] + std::min(i, 16 - i) * x[2])));
  return sum;
}

void PrintTo(const Problem& problem, std::ostream* os) {
  *os << problem.name;
}
class Powell : public testing::TestWithParam<Problem> {};

TEST_P(Powell, FindsThePublishedMinimum) {
  const Problem& problem = GetParam();
  int calls = 0;
  const auto counted = [&](Point x) { return ++calls, problem.cost(x); };
  const PowellResult result = powell(counted, problem.start, {.tolerance = 1e-12});
  EXPECT_NEAR(result.lastValue, problem.value, 1e-5 * problem.value + 1e-9);
  for (std::size_t i = 0; i < problem.minimum.size(); ++i)
    EXPECT_NEAR(result.point[i], problem.minimum[i], problem.tolerance) << "x" << i + 1;
  EXPECT_EQ(result.firstValue, problem.cost(problem.start));
  EXPECT_EQ(result.lastValue, problem.cost(result.point));
  EXPECT_EQ(result.evaluations, calls);
}

INSTANTIATE_TEST_SUITE_P(
    MoreGarbowHillstrom, Powell,
    testing::Values(
        Problem{"P01Rosenbrock", rosenbrock, {-1.2, 1}, {1, 1}, 0, 1e-4},
        Problem{
            "P02FreudensteinRoth", freudensteinRoth, {0.5, -2}, {11.41, -0.8968}, 48.9842, 5e-3},
        Problem{"P05Beale", beale, {1, 1}, {3, 0.5}, 0, 1e-4},
        Problem{"P07HelicalValley", helicalValley, {-1, 0, 0}, {1, 0, 0}, 0, 1e-4},
        Problem{"P08Bard", bard, {1, 1, 1}, {}, 8.21487e-3, 0},
        Problem{"P13PowellSingular", powellSingular, {3, -1, 0, 1}, {0, 0, 0, 0}, 0, 2e-2},
        Problem{"P14Wood", wood, {-3, -1, -3, -1}, {1, 1, 1, 1}, 0, 1e-3}),
    [](const auto& problem) { return problem.param.name; });

TEST(PowellResult, SaysWhyItStopped) {
  const PowellResult fitted = powell(&freudensteinRoth, std::vector{0.5, -2.0});
  EXPECT_EQ(fitted.stop, PowellStop::Converged);
  EXPECT_NEAR(fitted.lastValue, 48.9842, 1e-3);
  const PowellResult flat = powell([](Point) { return 7.0; }, std::vector{1.0, 2.0});
  EXPECT_EQ(flat.stop, PowellStop::AtMinimum);
  EXPECT_EQ(flat.point, (std::vector{1.0, 2.0}));
}

// A cost that is infinite outside a region is a wall, not an error.
TEST(PowellResult, KeepsInsideAnInfiniteWall) {
  const auto walled = [](Point x) { return x[0] > 1 ? HUGE_VAL : square(x[0] - 2); };
  EXPECT_NEAR(powell(walled, std::vector{0.0}).point[0], 1.0, 1e-2);
}

struct Refusal {
  const char* name;
  double (*cost)(Point);
  PowellOptions options;
  const char* message;  // all of it, or its beginning
};
void PrintTo(const Refusal& refusal, std::ostream* os) {
  *os << refusal.name;
}
class PowellRefusal : public testing::TestWithParam<Refusal> {
 protected:
  void SetUp() override {
    setErrorChannel([this](std::string_view text) { banner_ += text; });
  }
  void TearDown() override {
    setErrorChannel(
        [](std::string_view text) { std::fwrite(text.data(), 1, text.size(), stderr); });
  }
  std::string banner_;
};

TEST_P(PowellRefusal, EndsWithAMessage) {
  try {
    powell(GetParam().cost, std::vector{0.25, 0.5}, GetParam().options);
    FAIL() << "nothing was thrown";
  } catch (const NumericError& error) {
    EXPECT_EQ(std::string(error.what()).rfind(GetParam().message, 0), 0u) << error.what();
    EXPECT_NE(banner_.find(error.what()), std::string::npos);
  }
}

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
INSTANTIATE_TEST_SUITE_P(
    Costs, PowellRefusal,
    testing::Values(Refusal{"NaN",
                            [](Point) { return kNaN; },
                            {},
                            "powell: the cost is not a number at (0.25, 0.5)"},
                    Refusal{"NaNLater",
                            [](Point x) { return x[1] > 0.75 ? kNaN : x[0] * x[0]; },
                            {},
                            "powell: the cost is not a number at ("},
                    Refusal{"InfiniteStart",
                            [](Point) { return HUGE_VAL; },
                            {},
                            "powell: the cost is infinite at (0.25, 0.5)"},
                    Refusal{"MinusInfinity",
                            [](Point x) { return x[0] > 0.75 ? -HUGE_VAL : 1.0; },
                            {},
                            "powell: the cost is minus infinity at ("},
                    Refusal{"Unbounded",
                            [](Point x) { return -x[0] - x[1]; },
                            {},
                            "the function has no minimum to bracket: it still falls at x = "},
                    Refusal{"Iterations",
                            rosenbrock,
                            {.tolerance = 0.0, .maxIterations = 2},
                            "powell exceeding maximum iterations."}),
    [](const auto& problem) { return problem.param.name; });

struct LineCase {
  const char* name;
  double (*f)(double);
  double start, step, minimum;
};

// Minima worked by hand.
TEST(Brent, FindsTheMinimumOfALine) {
  const LineCase cases[] = {
      {"parabola", [](double x) { return square(x - 5); }, 0, 1, 5},
      {"far away", [](double x) { return square(x - 5000); }, 0, 1, 5000},
      {"backwards", [](double x) { return square(x + 5); }, 0, 0.1, -5},
      {"x - log x", [](double x) { return x > 0 ? x - std::log(x) : HUGE_VAL; }, 3, 1, 1},
      {"kink", [](double x) { return std::abs(x - 0.3); }, 0, -1, 0.3},
      {"cosine", [](double x) { return std::cos(x); }, 2, 0.5, std::numbers::pi},
      {"start at the minimum", [](double x) { return square(x); }, 0, 1, 0},
  };
  for (const LineCase& line : cases) {
    SCOPED_TRACE(line.name);
    const Bracket bracket = bracketMinimum(line.f, line.start, line.f(line.start), line.step);
    EXPECT_GE((bracket.b - bracket.a) * (bracket.c - bracket.b), 0.0);
    EXPECT_LE(bracket.fb, std::min(bracket.fa, bracket.fc));
    const LineMinimum found = brent(line.f, bracket);
    EXPECT_NEAR(found.x, line.minimum, 1e-6 * std::max(1.0, line.minimum));
    EXPECT_EQ(found.value, line.f(found.x));
  }
}

TEST(Brent, EndsOnItsLimitsWithAMessage) {
  setErrorChannel({});
  const auto bowl = [](double x) { return square(x - 0.3); };
  const auto messageOf = [](auto&& call) -> std::string {
    try {
      call();
    } catch (const NumericError& error) {
      return error.what();
    }
    return "";
  };
  const Bracket bracket{-1, 0, 2, bowl(-1), bowl(0), bowl(2)};
  EXPECT_EQ(messageOf([&] {
              brent(bowl, bracket, {1e-8, 1e-12, 2});
            }),
            "Too many iterations in brent");
  EXPECT_EQ(messageOf([&] {
              brent([](double) { return kNaN; }, bracket);
            }).rfind("the function is not a number at x = ", 0),
            0u);
  EXPECT_NE(messageOf([] { bracketMinimum([](double x) { return -x * x * x; }, 0, 0, 1); }), "");
  setErrorChannel([](std::string_view text) { std::fwrite(text.data(), 1, text.size(), stderr); });
}

}  // namespace
}  // namespace greycard
