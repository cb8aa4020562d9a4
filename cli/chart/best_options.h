#pragma once

#include <CLI/CLI.hpp>
#include <filesystem>
#include <string>
#include <vector>

#include "greycard/jobs/fit_chart_best.h"
#include "job_files.h"

namespace greycard::cli {

/// What the best fit is asked beyond the stated one.
struct BestOptions {
  std::string fit = "stated";
  std::vector<std::filesystem::path> also;  ///< more photographs
  std::vector<double> photoWeights;

  void addTo(CLI::App& app);
  bool asked() const { return fit == "best"; }
  /// Whether the photograph's own tone curve is to be undone.
  bool undoesCurve() const { return !estimatedCurve.empty() || !curve.empty(); }
  /// \throws UsageError when an option of the best fit is given and the fit isn't asked for
  void check() const;
  void nameFiles(JobFiles& files) const;
  /// The options as the library takes them. \throws UsageError; JobError, FileError for their files
  FitOptions fitOptions() const;
  /// The flat field in --uneven; empty when it is none.
  std::filesystem::path flatField() const;
  /// Weight of a photograph, from 0.
  double weightOf(std::size_t photograph) const;

 private:
  std::string difference = "ciede2000", norm = "rms", weights = "even", entries = "nine",
              whiteBalance = "stated", estimatedCurve, uneven;
  std::filesystem::path curve;
  std::vector<double> noiseLimit;
  int tradeOff = 0;
  std::vector<CLI::Option*> all;
};

}  // namespace greycard::cli
