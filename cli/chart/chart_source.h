#pragma once

// What chart, ccm, evaluate and skin have in common: photographs, what their samples mean, and
// where the chart is in them.

#include <CLI/CLI.hpp>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "greycard/jobs/locate_chart.h"
#include "job_files.h"
#include "sample_options.h"

namespace greycard::cli {

/// Options of a photograph with a chart in it.
struct ChartSource {
  std::filesystem::path photo;
  SampleOptions samples;
  std::vector<std::string> corners;  ///< "X,Y" each
  std::string within;                ///< "X,Y,WIDTH,HEIGHT", or empty
  std::string cornersOf = "field", method = "both";
  LocateOptions locate;

  void addTo(CLI::App& app);
  /// All but the photograph and the region file, for a command that names its photographs itself.
  /// \param photos  how many; corners are four for all of them, or four for each
  void addSharedOptions(CLI::App& app, int photos);
  void nameFiles(JobFiles& files) const;
  /// The options as the library takes them, for one of the photographs. \throws UsageError for
  /// corners and parts that are no numbers or too few
  LocateOptions options(std::size_t photograph = 0) const;
  /// The photograph itself. \throws as SampleOptions::read
  Photograph read() const { return samples.read(photo); }
};

/// What a user can do about a chart that was not found; begins with a blank, or is empty.
std::string nextStep(ChartRefusal refusal);

/// Runs a job that locates a chart. \throws JobError that names the option that goes on
template <typename Job>
auto locating(Job job) try {
  return job();
} catch (const DoubtfulChart& doubt) {
  throw JobError(std::string(doubt.what()) + " (--force goes on all the same)");
} catch (const NoChart& none) {
  throw JobError(none.what() + nextStep(none.why()));
}

}  // namespace greycard::cli
