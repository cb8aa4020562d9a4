#pragma once
/// \file
/// \ingroup own

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "greycard/camera_gamma.h"
#include "greycard/export.h"
#include "greycard/jobs/fit_chart.h"
#include "greycard/jobs/fit_chart_best.h"
#include "greycard/lut2d_config.h"
#include "greycard/photograph.h"
#include "greycard/picture.h"
#include "greycard/types.h"

namespace greycard {

/// What a fit makes of any photograph of the same camera.
struct FittedPipeline {
  Vector3 gains{1.0, 1.0, 1.0};   ///< exposure gain times white-balance gains
  Matrix3 matrix{};               ///< of balanced RGB
  CameraGamma gamma;              ///< the camera's tone curve
  std::vector<double> toneCurve;  ///< undone first: see MatrixFitResult::toneCurve; may be empty
};

GREYCARD_EXPORT FittedPipeline pipelineOf(const ChartFit& fit);
/// \param photograph  the one whose exposure gain is taken
GREYCARD_EXPORT FittedPipeline pipelineOf(const BestChartFit& fit, std::size_t photograph = 0);

struct ApplyFitOptions {
  std::optional<CameraGamma> gamma;  ///< in place of the fit's tone curve
  std::optional<Lut2DConfig> lut2d;  ///< applied to the result
};

/// The photograph through gains, matrix and tone curve, and the hue/saturation table if there is
/// one, in 8 bits: what correctedPhotograph gives of the photograph that was fitted. \throws
/// JobError for a grey photograph; as correctPicture and applyLut2d
GREYCARD_EXPORT Picture applyFit(const Photograph& photograph, const FittedPipeline& pipeline,
                                 const ApplyFitOptions& options = {});

/// Where the results of several photographs go: into `folder`, each under its photograph's name
/// with the ending .png. \throws JobError for two photographs whose results would have one name, as
/// "a.jpg" and "a.dng"
GREYCARD_EXPORT std::vector<std::filesystem::path> resultPaths(
    const std::vector<std::filesystem::path>& photographs, const std::filesystem::path& folder);

/// What was made of each photograph.
struct AppliedFit {
  std::filesystem::path photo, output;
  std::string failure;                ///< why there is no output; empty when there is
  std::vector<std::string> warnings;  ///< a sentence each
};

/// Reads photographs and writes what the pipeline makes of each; what is wrong with one doesn't
/// stop the others.
/// \param outputs  a file for each, as resultPaths gives them
/// \param reading  of all of them
/// \return empty when the callback cancelled; what was written by then stays
/// \throws std::invalid_argument for more or fewer outputs than photographs
GREYCARD_EXPORT std::optional<std::vector<AppliedFit>> applyFitToFiles(
    const std::vector<std::filesystem::path>& photographs,
    const std::vector<std::filesystem::path>& outputs, const FittedPipeline& pipeline,
    const ApplyFitOptions& options = {}, const PhotographOptions& reading = {},
    const ProgressCallback& progress = {});

}  // namespace greycard
