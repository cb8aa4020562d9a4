#pragma once
/// \file
/// \ingroup own

#include <filesystem>
#include <vector>

#include "greycard/colour_errors.h"
#include "greycard/export.h"
#include "greycard/illum.h"
#include "greycard/jobs/locate_chart.h"
#include "greycard/types.h"

namespace greycard {

struct EvaluationOptions {
  LocateOptions locate;
  Illum light = illum_D65;
  double scale = 1.0;  ///< factor on the linear samples before they are judged, above 0
};

/// A photographed chart, its linear samples taken as linear sRGB, against the reference colours of
/// the light.
struct ChartEvaluation {
  std::filesystem::path photo;
  Illum light = illum_D65;
  LocatedChart chart;
  std::optional<SampleLevels> levels;  ///< what the samples were taken to mean
  PatchTable measuredRgb{};            ///< linear, 0..1
  PatchTable measuredNoise{};          ///< standard deviation of a pixel
  PatchTable measuredMedian{};         ///< of its pixels
  PatchTable unevenness{};             ///< of the patch: see QuadSampling
  SamplingReport sampling;
  PatchTable measuredLab{};
  PatchTable referenceLab{};
  ColourErrors errors;
  std::vector<std::string> warnings;   ///< a sentence each
  std::optional<CaptureInfo> capture;  ///< of a raw photograph
};

/// Refuses what no photograph could be judged with, before there is one.
/// \throws std::invalid_argument and FileError as evaluateChart
GREYCARD_EXPORT void checkOptions(const EvaluationOptions& options);

/// Judges the camera as it is, before any correction is fitted.
///
/// \param photo  names the picture in messages and in the result; may be empty
/// \throws as locateChart; std::invalid_argument for a scale that is not above 0
GREYCARD_EXPORT ChartEvaluation evaluateChart(const Picture& picture,
                                              const EvaluationOptions& options = {},
                                              const std::filesystem::path& photo = {});

/// Likewise; the photograph tells what its samples mean.
GREYCARD_EXPORT ChartEvaluation evaluateChart(const Photograph& photograph,
                                              EvaluationOptions options = {});

}  // namespace greycard
