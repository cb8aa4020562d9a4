#include "luma_target_run.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <random>
#include <stdexcept>

#include "allocation_count.h"
#include "luma_task.h"

namespace greycard {
namespace {

using testing::AllOf;
using testing::HasSubstr;

TEST(LumaTargetRule, AgreesWithThePlainComputationAndAllocatesNothing) {
  std::mt19937 random(2);
  LumaTask task(40, 9);
  for (double& wanted : task.wanted) wanted *= 1.3;
  for (int round = 0; round < 60; ++round) {
    for (double& flag : task.enable) flag = random() % 3 > 0 ? 1.0 : 0.0;
    auto run = runOf(task);
    for (int evaluation = 0; evaluation < 3; ++evaluation) {
      GaParameters x;
      for (std::size_t k = 0; k < kGaParameters; ++k)
        x[k] = std::uniform_real_distribution(task.lower[k], task.upper[k])(random);
      x[4] = std::max(x[4], x[8] + 0.005);
      x[2] = std::max(x[2], x[3] + 40.0);
      const auto plain = evaluatePlainly(task, x);
      const long before = allocationCount();
      const double error = run.errorFunc_LumaTarget(x);
      EXPECT_EQ(allocationCount(), before);
      EXPECT_NEAR(error, plain.error, 1e-9 * plain.error);
      EXPECT_NEAR(run.m_avgTargetError, plain.meanError, 1e-9 * plain.meanError);
      EXPECT_THAT(run.m_resHistBasedSafeTarget,
                  testing::Pointwise(testing::DoubleNear(1e-9), plain.safe));
      EXPECT_EQ(run.m_xTmp, x);
      auto fresh = runOf(task);
      fresh.prepare();  // what was kept from earlier evaluations changes no bit
      EXPECT_EQ(fresh.errorFunc_LumaTarget(x), error);
    }
  }
}

struct RangeCase {
  double a, b, darkHi, darkLo;  // candidate targets
  double lo, hi;                // what they leave of the range
};

// One image, whose current target is once below and once above all candidates.
TEST(LumaTargetRule, TakesWhatThePairsHaveInCommonOrTheGap) {
  const RangeCase cases[] = {{20, 10, 90, 40, 20, 40}, {60, 10, 90, 40, 40, 60},
                             {95, 10, 90, 40, 40, 90}, {60, 50, 90, 40, 50, 60},
                             {95, 50, 90, 40, 50, 90}, {99, 95, 90, 40, 90, 95},
                             {10, 20, 90, 40, 20, 40}, {95, 10, 40, 90, 90, 40},
                             {95, 90, 40, 90, 40, 90}, {40, 10, 90, 40, 40, 40}};
  for (const RangeCase& c : cases) {
    LumaTask task(1, 4);
    task.enable.assign(kGaEnableFlags, 0.0);
    const auto plain = evaluatePlainly(task, task.fallback);
    task.luma[0] = 1.0;
    task.fallback[0] = c.a * plain.pushDown[0], task.fallback[1] = c.b * plain.pushUp[0];
    task.fallback[2] = c.darkHi * plain.dark[0], task.fallback[3] = c.darkLo * plain.dark[0];
    task.fallback[6] = 1e6, task.fallback[7] = 0.0;
    for (const double current : {1.0, 100.0}) {
      task.current = {current};
      auto run = runOf(task);
      run.errorFunc_LumaTarget(task.fallback);
      const double wanted = c.lo > current ? c.lo : c.hi < current ? c.hi : current;
      EXPECT_NEAR(run.m_resHistBasedSafeTarget[0], wanted, 1e-9) << c.a << " " << c.b;
      EXPECT_NEAR(run.m_tempTarget[0][0], std::max(c.a, c.b), 1e-9);
    }
  }
}

TEST(LumaTargetRule, RefusesARangeWithoutWidth) {
  LumaTask task(1, 1);
  task.enable[6] = 0.0;
  task.fallback[8] = task.fallback[4];
  GaParameters x = kGaReferenceParameters;
  const auto refusal = [&] {
    try {
      runOf(task).errorFunc_LumaTarget(x);
    } catch (const std::invalid_argument& error) {
      return std::string(error.what());
    }
    return std::string("no refusal");
  };
  EXPECT_THAT(refusal(), AllOf(HasSubstr("initial_parameter[4] and initial_parameter[8]"),
                               HasSubstr("0.08"), HasSubstr("push-up")));
  task.enable[6] = 1.0;
  x[10] = x[11];
  EXPECT_THAT(refusal(), AllOf(HasSubstr("x[10] and x[11]"), HasSubstr("dark")));
}

}  // namespace
}  // namespace greycard
