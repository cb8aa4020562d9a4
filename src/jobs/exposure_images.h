#pragma once

#include <vector>

#include "greycard/jobs/fit_exposure.h"

namespace greycard {

/// The images of a job as GA takes them, a list for each argument.
struct ExposureImages {
  std::vector<ExposureFigures> figures;
  std::vector<double> Weight, newTarget, curr_luma, cur_target;
  std::vector<ChannelHistograms> hist_RGB, hist_CDF;

  /// Reads the pictures.
  /// \throws std::invalid_argument as ExposureJob::check; FileError
  explicit ExposureImages(const ExposureJob& job);

 private:
  void add(const ExposureImage& image);
};

}  // namespace greycard
