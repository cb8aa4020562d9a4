#pragma once

// What chart, ccm and evaluate have in common: a photograph, what its samples mean, and where the
// chart is in it.

#include <CLI/CLI.hpp>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "greycard/jobs/locate_chart.h"
#include "job_files.h"

namespace greycard::cli {

/// Options of a photograph with a chart in it.
struct ChartSource {
  std::filesystem::path photo;
  std::optional<std::string> encoding;  ///< "srgb" or "linear"
  LocateOptions locate;

  void addTo(CLI::App& app, bool regionsFromFile);
  /// Only what samples mean and --force, for a command that names its photographs itself.
  void addSampleOptions(CLI::App& app);
  void nameFiles(JobFiles& files) const;
  /// The options as the library takes them.
  LocateOptions options() const;
  /// The photograph itself. \throws FileError; UsageError for levels that make no scale in it
  Picture read() const;
};

/// Runs a job that locates a chart. \throws JobError that names --force where that goes on
template <typename Job>
auto locating(Job job) try {
  return job();
} catch (const DoubtfulChart& doubt) {
  throw JobError(std::string(doubt.what()) + " (--force goes on all the same)");
}

}  // namespace greycard::cli
