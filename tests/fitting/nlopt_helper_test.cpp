#include "greycard/nlopt_helper.h"

#include <gmock/gmock.h>

#include <cmath>
#include <functional>
#include <limits>
#include <stdexcept>
#include <string>
#include <thread>

#include "colour_space.h"
#include "golden.h"
#include "greycard/diagnostics.h"
#include "luma_task.h"
#include "nlopt_callbacks.h"
#include "text.h"

namespace greycard {
namespace {

using testing::DoubleNear;
using testing::HasSubstr;
using testing::Pointwise;

constexpr GaParameters kTruth{220, 290, 90, 12, 0.15, 0.09, 1.6, 0.6, 0.03, 0.02, 0.05, 0.3};

// What the rule makes of kTruth is wanted.
LumaTask knownTask(int images, std::uint32_t seed = 1) {
  LumaTask task(images, seed);
  task.wanted = evaluatePlainly(task, kTruth).safe;
  return task;
}

SearchOptions evaluations(int count, std::uint32_t seed = 1) {
  SearchOptions options;
  options.maxSeconds = 0.0;
  options.maxEvaluations = count;
  options.seed = seed;
  return options;
}

void expectOutputsOf(const LumaTask& task, const GaParameters& x) {
  const auto plain = evaluatePlainly(task, x);
  EXPECT_THAT(task.safe, Pointwise(DoubleNear(1e-9), plain.safe));
  EXPECT_EQ(task.brief, task.safe);
  EXPECT_EQ(task.lasting, task.safe);
  EXPECT_THAT(task.pushUp, Pointwise(DoubleNear(1e-9), plain.pushUp));
  EXPECT_THAT(task.pushDown, Pointwise(DoubleNear(1e-9), plain.pushDown));
  EXPECT_THAT(task.dark, Pointwise(DoubleNear(1e-9), plain.dark));
  EXPECT_NEAR(task.meanError, plain.meanError, 1e-9 * plain.meanError);
  ASSERT_EQ(task.four.size(), plain.four.size());
  for (std::size_t i = 0; i < plain.four.size(); ++i)
    EXPECT_THAT(task.four[i], Pointwise(DoubleNear(1e-9), plain.four[i]));
}

TEST(GaManual, EvaluatesTheFallbackAndReturnsTheStart) {
  auto task = knownTask(7);
  task.fallback[0] = 150.0;
  EXPECT_EQ(task.call(true), task.start);
  EXPECT_EQ(task.result, 77);  // as the caller left it
  EXPECT_EQ(task.report.best, task.fallback);
  EXPECT_EQ(task.report.seconds, 0.0);
  EXPECT_NEAR(task.error, evaluatePlainly(task, task.fallback).error, 1e-9 * task.error);
  expectOutputsOf(task, task.fallback);

  auto idle = task;
  idle.enable.assign(kGaEnableFlags, 0.0);
  EXPECT_EQ(idle.call(), idle.start);
  EXPECT_EQ(idle.result, 1);
  EXPECT_EQ(idle.report.evaluations, 1);
  task.enable = idle.enable;
  task.call(true);
  EXPECT_EQ(idle.error, task.error);
  EXPECT_EQ(idle.safe, task.safe);
}

TEST(GaTask, GivesWhatTheArgumentsOneByOneGive) {
  for (const bool isManual : {false, true}) {
    auto task = knownTask(5);
    const auto x = task.call(isManual, evaluations(500));
    const GaResult result = NLoptHelper().GA(
        {task.lower, task.upper, task.start, 5, task.weight, task.wanted, task.luma, task.current,
         task.maxDrcGain, task.adrc, task.rgb, task.cdf, task.fallback, task.enable, isManual},
        evaluations(500));
    EXPECT_EQ(result.parameters, x);
    EXPECT_EQ(result.resultCode.value_or(77), task.result);
    EXPECT_EQ(result.error, task.error);
    EXPECT_EQ(result.meanTargetError, task.meanError);
    EXPECT_EQ(result.report.best, task.report.best);
    ASSERT_EQ(result.images.size(), 5u);
    const GaImageResult& last = result.images[4];
    EXPECT_EQ(last.fourTargets, task.four[4]);
    EXPECT_EQ((std::array{last.safeTarget, last.shortTarget, last.longTarget}),
              (std::array{task.safe[4], task.brief[4], task.lasting[4]}));
    EXPECT_EQ((std::array{last.pushUp, last.pushDown, last.dark}),
              (std::array{task.pushUp[4], task.pushDown[4], task.dark[4]}));
  }
  EXPECT_THROW(NLoptHelper().GA({}), std::invalid_argument);
}

TEST(GaSearch, ComesNearTheKnownParametersAndKeepsTheConstraints) {
  auto task = knownTask(6);
  task.adrc = 1.0;
  const double before = evaluatePlainly(task, task.start).error;
  const auto x = task.call(false, evaluations(40000));
  EXPECT_LT(task.error, 0.01 * before);
  EXPECT_NEAR(task.error, evaluatePlainly(task, x).error, 1e-9 * before);
  EXPECT_EQ(task.report.best, x);
  EXPECT_TRUE(task.report.bestKeepsConstraints);
  EXPECT_GE(x[4] - x[8], 0.005 - 2e-8);
  EXPECT_GE(x[5] - x[9], 0.005 - 2e-8);
  EXPECT_GE(x[2] - x[3], 40.0 - 2e-8);
  EXPECT_GE(x[11] - x[10], 0.08 - 2e-8);
}

TEST(GaSearch, AfterTheTimeLimitReturnsTheLastEvaluationWithTheBestBeside) {
  auto task = knownTask(5);
  SearchOptions options;
  options.maxSeconds = 0.02;
  const auto x = task.call(false, options);
  EXPECT_EQ(task.result, 6);
  EXPECT_EQ(stopReason(task.result), "the time limit was reached");
  expectOutputsOf(task, x);
  EXPECT_NEAR(task.error, evaluatePlainly(task, task.report.best).error, 1e-9 * task.error);
}

TEST(GaSearch, IsCancelledByTheProgressCallbackAndPassesItsExceptionOn) {
  auto task = knownTask(5);
  auto options = evaluations(1000);
  std::vector<double> fractions;
  options.progress = [&](double fraction) { return fractions.push_back(fraction), fraction < 0.5; };
  const auto x = task.call(false, options);
  EXPECT_EQ(task.result, -5);
  EXPECT_EQ(task.report.evaluations, 512);
  EXPECT_EQ(fractions.size(), 8u);
  EXPECT_EQ(fractions.front(), 0.064);
  EXPECT_EQ(x, task.report.best);

  options.progress = [](double) -> bool { throw std::runtime_error("enough"); };
  EXPECT_THROW(task.call(false, options), std::runtime_error);
  task.start[4] = task.start[8];  // found out by the objective
  EXPECT_THROW(task.call(false, evaluations(1000)), std::invalid_argument);
}

TEST(GaSearch, SaysWhenNoPointKeepsTheConstraints) {
  auto task = knownTask(3);
  task.upper[2] = 60.0;
  task.lower[3] = 25.0;
  task.start[3] = 25.0;
  task.call(false, evaluations(300));
  EXPECT_FALSE(task.report.bestKeepsConstraints);
}

// To the bit; and the seed matters.
TEST(GaTwoThreads, FindWhatTheyFindOneAfterTheOther) {
  const auto task = knownTask(6);
  std::array<LumaTask, 2> alone{task, task}, together{task, task};
  const auto run = [](LumaTask& one, std::uint32_t seed) {
    one.call(false, evaluations(2000, seed));
  };
  run(alone[0], 1);
  run(alone[1], 2);
  std::thread other([&] { run(together[1], 2); });
  run(together[0], 1);
  other.join();
  for (std::size_t i = 0; i < 2; ++i) {
    EXPECT_EQ(together[i].report.best, alone[i].report.best);
    EXPECT_EQ(together[i].error, alone[i].error);
    EXPECT_EQ(together[i].safe, alone[i].safe);
    EXPECT_EQ(together[i].result, 5);
    EXPECT_EQ(together[i].report.evaluations, 2000);
  }
  EXPECT_NE(alone[0].error, alone[1].error);
}

TEST(GaArguments, AreRefusedByName) {
  const double nan = std::nan("");
  const struct {
    const char* says;
    std::function<void(LumaTask&)> spoil;
  } cases[] = {
      // How the refusal begins, and what is wrong.
      {"imageCount is 0", [](LumaTask& t) { t.imageCount = 0; }},
      {"imageCount is 300", [](LumaTask& t) { t.imageCount = 300; }},
      {"Weight has 2 entries; it needs 3", [](LumaTask& t) { t.weight.pop_back(); }},
      {"Weight[1] is -1", [](LumaTask& t) { t.weight[1] = -1.0; }},
      {"Weight is 0 for every image", [](LumaTask& t) { t.weight.assign(3, 0.0); }},
      {"Weight is so large", [](LumaTask& t) { t.weight.assign(3, 1e308); }},
      {"cur_target[0] is not", [&](LumaTask& t) { t.current[0] = nan; }},
      {"hist_RGB[1][2][255] is not", [&](LumaTask& t) { t.rgb[1][2][255] = nan; }},
      {"max_pushup_mean has 0", [](LumaTask& t) { t.unused.clear(); }},
      {"initialBound[3] is 30.1234568, outside its bounds 0 to 30",
       [](LumaTask& t) { t.start[3] = 30.12345678912; }},
      {"initialBound[5] is not", [&](LumaTask& t) { t.start[5] = nan; }},
      {"initialBound[2] is -1, outside", [](LumaTask& t) { t.start[2] = -1; }},
      {"max_drc_gain is not a finite number", [&](LumaTask& t) { t.maxDrcGain = nan; }},
      {"ADRC_Enable is not a finite number", [&](LumaTask& t) { t.adrc = HUGE_VAL; }},
      {"upperBound[3] is not", [&](LumaTask& t) { t.upper[3] = HUGE_VAL; }},
      {"parameters_enable has 8", [](LumaTask& t) { t.enable.pop_back(); }},
      {"final_dark_pos has 2", [](LumaTask& t) { t.dark.pop_back(); }},
  };
  for (const auto& [says, spoil] : cases) {
    SCOPED_TRACE(says);
    auto task = knownTask(3);
    spoil(task);
    try {
      task.call();
      ADD_FAILURE() << "not refused";
    } catch (const std::invalid_argument& error) {
      EXPECT_THAT(error.what(), testing::StartsWith(std::string("GA: ") + says));
    }
    EXPECT_EQ(task.result, 77);
    EXPECT_TRUE(task.four.empty());
  }
  SearchOptions options;
  options.maxSeconds = nan;
  EXPECT_THROW(knownTask(3).call(false, options), std::invalid_argument);
  EXPECT_THROW(knownTask(3).call(false, evaluations(-1)), std::invalid_argument);
  options.maxSeconds = -1e-9;
  EXPECT_THROW(knownTask(3).call(false, options), std::invalid_argument);
}

double lightness(const Vector3& rgb, double factor) {
  return sRGB_to_CIELab({factor * rgb[0] / 255, factor * rgb[1] / 255, factor * rgb[2] / 255})[0];
}

TEST(FindMinSearch, AgreesWithBisection) {
  const NLoptHelper helper;
  const std::pair<Vector3, Vector3> cases[] = {
      {{200, 100, 50}, {100, 100, 100}},     {{60, 20, 30}, {90, 140, 40}},
      {{255, 255, 255}, {128, 128, 128}},    {{1, 1, 1}, {6, 6, 6}},
      {{0.05, 0.05, 0.05}, {0.4, 0.4, 0.4}}, {{30, 30, 30}, {240, 250, 245}}};
  for (const auto& [test, target] : cases) {
    double low = 0.0, high = 10.0;
    for (int i = 0; i < 100; ++i) {
      const double middle = (low + high) / 2;
      (lightness(test, middle) < lightness(target, 1) ? low : high) = middle;
    }
    // It stops at a difference of 1e-5 in L*, of which a dark colour has little for each factor.
    EXPECT_NEAR(helper.findMinSearch(test, target), low, 1e-4 + 1e-5 / lightness(test, 1));
  }
  EXPECT_NEAR(helper.findMinSearch({128, 64, 32}, {128, 64, 32}), 1.0, 1e-4);
  EXPECT_EQ(helper.findMinSearch({60, 20, 30}, {90, 140, 40}, evaluations(1)), 1.0);  // the start
  EXPECT_EQ(helper.findMinSearch({0, 0, 0}, {40, 50, 60}), 1.0);
  EXPECT_THROW(helper.findMinSearch({1, HUGE_VAL, 1}, {1, 1, 1}), std::invalid_argument);
  EXPECT_THROW(helper.findMinSearch({1e300, 1, 1}, {1, 1, 1}), std::invalid_argument);
}

TEST(FindMinSearch, AnswersAtOnceWhereNoFactorReachesTheTarget) {
  SearchOptions noSearch;
  noSearch.progress = [](double) { return ADD_FAILURE() << "it searches", false; };
  const struct {
    Vector3 test, target;
    double factor;
  } cases[] = {
      {{1e-9, 0, 0}, {100, 100, 100}, 10.0},    {{0.01, 0.01, 0.01}, {100, 100, 100}, 10.0},
      {{20, 20, 20}, {255, 255, 255}, 10.0},    {{1e-300, 0, 0}, {100, 100, 100}, 10.0},
      {{100, 100, 100}, {-5, -5, -5}, 0.0},     {{-5, -5, -5}, {100, 100, 100}, 0.0},
      {{-5, -5, -5}, {-100, -100, -100}, 10.0}, {{200, -50, -50}, {-50, -50, -50}, 0.0}};
  for (const auto& [test, target, factor] : cases)
    EXPECT_EQ(NLoptHelper().findMinSearch(test, target, noSearch), factor);
  // Components of both signs: brightest in between, as a walk in small steps finds too.
  for (const Vector3& mixed : {Vector3{-50, 20, 10}, {-2, 0.9, 0.4}}) {
    double brightest = 0.0;
    for (double factor = 0.0; factor <= 10.0; factor += 1e-5)
      if (lightness(mixed, factor) > lightness(mixed, brightest)) brightest = factor;
    EXPECT_NEAR(NLoptHelper().findMinSearch(mixed, {100, 100, 100}, noSearch), brightest, 2e-5);
  }
}

// Where searches without a clock end, to more digits than they need.
TEST(GoldenFitting, FindMinSearch) {
  std::string text, utilities;
  int evaluations = 0;
  setDebugLog([&](int, std::string_view, std::string_view part) {
    if (part.starts_with("min utility"))
      utilities += part;
    else
      ++evaluations;
  });
  for (const int most : {300, 2000, 200000})
    for (const auto& [test, target] : {std::pair<Vector3, Vector3>{{60, 20, 30}, {90, 140, 40}},
                                       {{0.05, 0.05, 0.05}, {0.4, 0.4, 0.4}},
                                       {{0.004, 0.004, 0.004}, {0.02, 0.02, 0.02}},
                                       {{-50, 20, 10}, {0.2, 0.2, 0.2}}}) {
      SearchOptions options;
      options.maxSeconds = 0.0;
      options.maxEvaluations = most;
      text += formatGeneral(NLoptHelper().findMinSearch(test, target, options), 10) + " after " +
              std::to_string(evaluations) + " lines, " + utilities;
      evaluations = 0;
      utilities.clear();
    }
  setDebugLog({});
  expectGolden("fitting/golden/find_min_search.txt", text);
}

// Where searches end by their tolerances, and after how many evaluations.
TEST(GoldenFitting, Ga) {
  std::string text;
  for (const int images : {1, 4}) {
    auto task = knownTask(images);
    const GaParameters x = task.call(false, evaluations(1000000));
    EXPECT_NEAR(task.error, evaluatePlainly(task, x).error, 1e-9);
    text += std::string(stopReason(task.result)) + " after " +
            std::to_string(task.report.evaluations) + ": error " + formatGeneral(task.error, 6) +
            goldenLine("", x, 6);
  }
  expectGolden("fitting/golden/ga.txt", text);
}

TEST(GoldenFitting, StopReasons) {
  std::string text;
  for (int code = -6; code < 8; ++code)
    text += std::to_string(code) + ": " + std::string(stopReason(code)) + "\n";
  expectGolden("fitting/golden/stop_reasons.txt", text);
}

TEST(NloptDebugLog, HasTheLinesOfEachSearch) {
  std::vector<std::string> lines;
  setDebugLog([&](int, std::string_view category, std::string_view text) {
    EXPECT_EQ(category, "DebugPrint");
    lines.emplace_back(text);
  });
  EXPECT_NO_THROW(knownTask(1).call(false, evaluations(100)));
  lines.clear();
  auto task = knownTask(2);
  const GaParameters found = task.call(false, evaluations(300));
  ASSERT_EQ(lines.size(), 2u);
  const auto listed = [](std::span<const double> values, char separator) {
    std::string text;
    for (const double value : values) text += separator + formatFixed(value, 6);
    return "(" + text.substr(1) + ")";
  };
  EXPECT_THAT(lines[0], testing::StartsWith("min utility=" + formatFixed(task.error, 6)));
  EXPECT_THAT(lines[0], testing::EndsWith(", x=" + listed(found, ',') + "\n"));
  EXPECT_EQ(lines[1], "four targets = " + listed(task.four[0], ' ') + " \n");
  lines.clear();
  NLoptHelper().findMinSearch({100, 100, 100}, {100, 100, 100});
  EXPECT_THAT(lines[1], testing::Eq("(100.000000 100.000000)  \n"));
  lines.clear();
  NLoptHelper().test();
  setDebugLog({});
  ASSERT_EQ(lines.size(), 1u);
  double error = 1.0, x = 0.0, y = 0.0, z = 0.0;
  ASSERT_EQ(std::sscanf(lines[0].c_str(), "min utility=%lf, x=(%lf,%lf,%lf)\n", &error, &x, &y, &z),
            4);
  EXPECT_LT(error, 1e-4);
  EXPECT_NEAR(x * x + 3 * y * y + z, 100.0, 0.01);
  EXPECT_GE(x, y + 5.0 - 1e-5);
  EXPECT_GE(z, x + 10.0 - 1e-5);
  EXPECT_GE(y, 1.0);
}

TEST(NloptCallbacks, ConstraintsOfTheLumaRule) {
  GaParameters x{0, 0, 90, 49, 0.08, 0.04, 0, 0, 0.07, 0.03, 0.02, 0.12};
  const auto value = [&x](auto constraint) { return constraint(12, x.data(), nullptr, nullptr); };
  EXPECT_NEAR(value(GAinconstraint1), -0.005, 1e-15);
  EXPECT_NEAR(value(GAinconstraint2), -0.005, 1e-15);
  EXPECT_EQ(value(GAinconstraint3), -1.0);
  EXPECT_NEAR(value(GAinconstraint4), -0.02, 1e-15);
}

TEST(NloptCallbacks, LogUtilityUnderABudget) {
  const double x[] = {2.0, 0.5};
  double gradient[2], prices[] = {1.5, 3.0};
  EXPECT_NEAR(utility(2, x, gradient, nullptr), 0.0, 1e-15);
  EXPECT_THAT(gradient, testing::ElementsAre(0.5, 2.0));
  EXPECT_EQ(constraint(2, x, gradient, prices), -0.5);
  EXPECT_THAT(gradient, testing::ElementsAre(1.5, 3.0));
}

}  // namespace
}  // namespace greycard
