#pragma once

#include <CLI/CLI.hpp>
#include <filesystem>
#include <string>
#include <vector>

#include "best_options.h"
#include "chart_source.h"
#include "command.h"
#include "greycard/jobs/fit_chart.h"

namespace greycard::cli {

struct CcmOptions : CommonOptions {
  ChartSource source;
  BestOptions best;
  std::string light = "D65", deltaE = "cie94";
  std::vector<double> targetSaturation{1.0, 1.0, 1.0, 1.0};  ///< all, R, G, B
  std::vector<double> targetHue{0.0, 0.0, 0.0};              ///< R, G, B in degrees
  ChartFitOptions fit;
  std::filesystem::path report, corrected;

  void addTo(CLI::App& app);
  /// The options as the library takes them. \throws UsageError for those that can't be
  ChartFitOptions fitOptions() const;
};

}  // namespace greycard::cli
