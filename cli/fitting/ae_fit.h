#pragma once

#include <string>
#include <vector>

#include "ae_job.h"
#include "transition.h"

namespace greycard::cli {

/// What the rule makes of the images with some parameters.
struct AeEvaluation {
  GaParameters parameters{};
  std::vector<std::array<double, 4>> fourTargets;
  std::vector<double> target, pushUp, pushDown, dark;
  double error = 0.0;      ///< weighted mean square of target - wanted target
  double meanError = 0.0;  ///< mean |target - wanted target|
};

AeEvaluation evaluateRule(const AeJob& job, const GaParameters& parameters);

struct AeFit {
  AeEvaluation start, best;
  AeEvaluation
      returned;  ///< with the parameters that GA gives back: after a time limit not the best
  int resultCode = 0;
  double minimum = 0.0;
  GaReport report;
  SearchOptions options;

  bool returnsBest() const { return returned.parameters == best.parameters; }
  double evaluationsPerSecond() const;
};

AeFit fitRule(const AeJob& job, const SearchOptions& options);

std::string aeText(const AeJob& job, const AeFit& fit);
std::string aeText(const AeJob& job, const AeEvaluation& manual);
Json aeJson(const AeJob& job, const AeFit& fit);
Json aeJson(const AeJob& job, const AeEvaluation& manual);

/// Wanted against reached target, as an SVG document. `before` may be absent.
std::string aePlot(const AeJob& job, const AeEvaluation* before, const AeEvaluation& after);

}  // namespace greycard::cli
