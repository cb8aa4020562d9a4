#pragma once

// What chart, ccm and evaluate have in common: a photograph, what its samples mean, and where the
// chart is in it.

#include <CLI/CLI.hpp>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "greycard/mcc_detector.h"
#include "greycard/patch_sampler.h"
#include "greycard/picture.h"
#include "greycard/types.h"
#include "job_files.h"
#include "json_output.h"

namespace greycard::cli {

/// Options of a photograph with a chart in it.
struct ChartSource {
  std::filesystem::path photo, regions;
  std::optional<std::string> encoding;  ///< "srgb" or "linear"
  std::optional<double> blackLevel, whiteLevel;
  bool force = false;  ///< go on with a fit of the chart that is in doubt

  void addTo(CLI::App& app, bool regionsFromFile);
  /// Only what samples mean and --force, for a command that names its photographs itself.
  void addSampleOptions(CLI::App& app);
  void nameFiles(JobFiles& files) const;
  /// Of the picture's samples: sRGB-encoded for 8 bits and linear for 16 unless told otherwise.
  SampleLevels levels(const Picture& picture) const;
};

/// The chart in a picture.
struct LocatedChart {
  PatchRegions regions{};                   ///< where the patches are sampled
  std::optional<ChartDetection> detection;  ///< empty when the regions came from a file
};

/// Reads the region file, or finds the chart.
/// \throws JobError when there is none, or the fit is in doubt and force is not set
LocatedChart locateChart(const ChartSource& source, const Picture& picture);

/// The doubts about a forced fit, each a sentence for the user.
std::vector<std::string> chartWarnings(const LocatedChart& chart);

/// As in "19 (white 9 5), 20 (neutral 8)". \param patches  0-based
std::string patchList(const std::vector<int>& patches);

/// The detection's part of a JSON document.
Json chartJson(const LocatedChart& chart);

}  // namespace greycard::cli
