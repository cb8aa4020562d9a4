#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "greycard/nlopt_helper.h"
#include "luma_target_run.h"

namespace greycard {

/// The arguments of one GA call with room for its outputs: random pictures' histograms, and what a
/// camera is to make of them.
struct LumaTask {
  LumaTask(int images, std::uint32_t seed);

  GaParameters call(bool isManual = false, const SearchOptions& options = {});

  GaParameters lower{90, 120, 41, 0, 0.02, 0.01, 0.5, 0.2, 0, 0, 0, 0.08};
  GaParameters upper{300, 400, 140, 30, 0.3, 0.2, 6, 1.5, 0.1, 0.1, 0.2, 0.5};
  GaParameters start = kGaReferenceParameters, fallback = kGaReferenceParameters;
  std::vector<double> enable = std::vector<double>(kGaEnableFlags, 1.0);
  int imageCount;
  std::vector<double> weight, wanted, luma, current, unused;
  double maxDrcGain = 4.0, adrc = 0.0;
  std::vector<ChannelHistograms> rgb, cdf;

  std::vector<std::array<double, 4>> four;
  std::vector<double> safe, brief, lasting, pushUp, pushDown, dark;
  int result = 77;
  double meanError = 0.0, error = 0.0;
  GaReport report;
};

/// The state that the call works on.
LumaTargetRun runOf(const LumaTask& task);

/// What one evaluation of the rule gives, computed plainly from scratch with new tables each time.
struct PlainEvaluation {
  std::vector<std::array<double, 4>> four;
  std::vector<double> pushUp, pushDown, dark, safe;
  double error = 0.0, meanError = 0.0;
};
PlainEvaluation evaluatePlainly(const LumaTask& task, const GaParameters& x);

}  // namespace greycard
