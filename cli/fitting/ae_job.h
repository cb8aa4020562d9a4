#pragma once

#include <array>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "greycard/nlopt_helper.h"
#include "job_files.h"

namespace greycard::cli {

/// What a fit of the luma-target rule works on, under the names of the arguments of
/// NLoptHelper::GA. docs/ae_json.md describes the file.
struct AeJob {
  GaParameters lowerBound{90, 120, 40, 0, 0.01, 0.01, 1, 0.2, 0, 0, 0, 0.08};
  GaParameters upperBound{300, 400, 150, 30, 0.3, 0.3, 8, 1.5, 0.1, 0.1, 0.2, 0.5};
  GaParameters initialBound = kGaReferenceParameters;
  GaParameters initial_parameter = kGaReferenceParameters;
  std::array<double, kGaEnableFlags> parameters_enable{1, 1, 1, 1, 1, 1, 1, 1, 1};
  double max_drc_gain = 4.0, ADRC_Enable = 0.0;

  // Per image.
  std::vector<std::string> names;
  std::vector<double> Weight, newTarget, curr_luma, cur_target;
  std::vector<double> max_pushup_mean, max_pushdown_mean, max_dark_mean;
  std::vector<ChannelHistograms> hist_RGB, hist_CDF;

  std::size_t images() const { return names.size(); }
  bool fits(std::size_t parameter) const {
    return parameters_enable[kGaEnableFlagOf[parameter]] != 0.0;
  }
  bool fitsAny() const { return parameters_enable != std::array<double, kGaEnableFlags>{}; }
  /// The values that the rule works with at x: those of x where they are fitted.
  GaParameters inUse(const GaParameters& x) const;

  /// Adds a picture with weight 1, its mean luma as current luma and current target.
  /// \param whiteLevel  sample of full scale; 255 or 65535 where not given
  void addPicture(const std::filesystem::path& path, double target,
                  const std::optional<int>& whiteLevel);
};

/// Reads the file, and the pictures that it names, each of which becomes an input of `files` first.
/// \throws JobError about the first field that is unknown, missing or of the wrong kind; FileError
AeJob readAeJob(const std::filesystem::path& path, JobFiles& files);

}  // namespace greycard::cli
