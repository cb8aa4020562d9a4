#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "greycard/batch/settings.h"
#include "greycard/jobs/evaluate_chart.h"
#include "greycard/jobs/fit_chart.h"
#include "greycard/jobs/locate_chart.h"

namespace greycard::batch {

/// The options of one photograph.
struct JobOptions {
  std::variant<LocateOptions, ChartFitOptions, EvaluationOptions> job;  ///< as Job counts
  std::optional<DumpLayout> dump;
  std::string text;  ///< all of them as JSON

  const LocateOptions& locate() const;
  /// The files that they name and that are there.
  std::vector<std::filesystem::path> files() const;
};

/// \throws std::invalid_argument with a sentence that begins with the field
JobOptions jobOptions(const Settings& settings, const std::filesystem::path& photo);

/// All that bears on a photograph's result but its content, as settingsHash tells.
std::string hashOf(const JobOptions& options, Job job, const std::filesystem::path& photo);

}  // namespace greycard::batch
