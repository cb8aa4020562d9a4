#pragma once

// What `greycard ccm` found, and the three forms in which it is told.

#include <filesystem>
#include <string>
#include <vector>

#include "chart_source.h"
#include "colour_errors.h"
#include "greycard/color_correction_utils.h"
#include "greycard/macbeth_chart_data.h"
#include "json_output.h"

namespace greycard::cli {

struct CcmResult {
  std::filesystem::path photo;
  std::string light, gammaName, formula;
  LocatedChart chart;
  MacbethChartData data;  ///< reference and measured chart
  SamplingReport sampling;
  ColorPipeline pipeline;
  Vector3 whiteBalance{};
  double exposure = 1.0;
  PatchTable correctedLab{};
  ColorFitReport fit;
  ColourErrors before, after;  ///< to fit.m_targetLab, without and with the matrix
  std::vector<std::string> warnings;
};

/// Aligned text for standard output.
std::string ccmText(const CcmResult& result);
Json ccmJson(const CcmResult& result);
/// A self-contained HTML page. `picture` is the photograph.
std::string ccmReport(const CcmResult& result, const Picture& picture);

}  // namespace greycard::cli
