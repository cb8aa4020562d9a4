#pragma once

#include <CLI/CLI.hpp>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "best_options.h"
#include "chart_source.h"
#include "command.h"
#include "export_requests.h"
#include "greycard/jobs/fit_chart.h"

namespace greycard::cli {

struct CcmOptions : CommonOptions {
  ChartSource source;
  BestOptions best;
  std::string light = "D65", deltaE = "cie94";
  std::vector<double> targetSaturation{1.0, 1.0, 1.0, 1.0};  ///< all, R, G, B
  std::vector<double> targetHue{0.0, 0.0, 0.0};              ///< R, G, B in degrees
  std::string exposure;            ///< a name or a gain; empty: the fit's own default
  std::string rgbToXyz, xyzToRgb;  ///< nine numbers, or a file of them
  ChartFitOptions fit;
  std::filesystem::path report, corrected;
  std::filesystem::path from;  ///< a fit in JSON, instead of fitting
  ExportRequests exports;
  std::optional<double> kelvin;                    ///< of the light, for the exports
  std::vector<std::filesystem::path> otherLights;  ///< fits in JSON, for the exports

  void addTo(CLI::App& app);
  /// The options as the library takes them. \throws UsageError for those that can't be
  ChartFitOptions fitOptions() const;
  /// Likewise of the best fit.
  BestFitOptions bestFitOptions() const;
  /// Names the files of the exports. \throws UsageError as ExportRequests::nameFiles, and for a
  /// profile of a matrix that isn't one to sRGB primaries
  void nameExports();
  void writeExports(const ChartFit& chartFit);
};

}  // namespace greycard::cli
