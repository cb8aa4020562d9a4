#pragma once
/// \file
/// \ingroup own

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "greycard/capture_info.h"
#include "greycard/export.h"
#include "greycard/jobs/fit_chart.h"
#include "greycard/jobs/locate_chart.h"
#include "greycard/patch_sampler.h"
#include "greycard/photograph.h"
#include "greycard/types.h"

namespace greycard {

/// What a camera measured of a chart in a photograph: the first half of fitChart and evaluateChart,
/// for those who want to see or to change it before the second.
struct ChartSamples {
  std::filesystem::path photo;
  LocatedChart chart;
  std::optional<SampleLevels> levels;  ///< what the samples were taken to mean
  PatchTable measuredRgb{};            ///< linear, 0..1
  PatchTable measuredNoise{};          ///< standard deviation of a pixel
  PatchTable measuredMedian{};         ///< of its pixels
  PatchTable unevenness{};             ///< of the patch: see QuadSampling
  SamplingReport sampling;
  std::optional<CaptureInfo> capture{};  ///< of a raw photograph
  std::vector<std::string> warnings{};   ///< of the photograph's file
};

/// Samples the photograph where the chart is.
/// \param chart  as locateChart gives it, or made by hand: the corners of the patches, or upright
///               rectangles
/// \throws JobError for a grey photograph; std::invalid_argument for levels without meaning, and
/// for
///         patches that can't be sampled (sampleQuads)
GREYCARD_EXPORT ChartSamples sampleChart(const Photograph& photograph, const LocatedChart& chart);

/// The fit to a chart that was sampled: fitChart gives the same of the photograph.
/// \param options  its locate is not looked at
/// \return empty when the callback cancelled
/// \throws JobError as cameraGamma; std::invalid_argument and NumericError as
///         ColorCorrectionUtils::Optimize
GREYCARD_EXPORT std::optional<ChartFit> fitChart(const ChartSamples& samples,
                                                 const ChartFitOptions& options = {},
                                                 const ProgressCallback& progress = {});

}  // namespace greycard
