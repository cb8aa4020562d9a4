#pragma once
/// \file
/// \ingroup own

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "greycard/export.h"
#include "greycard/jobs/fit_chart.h"
#include "greycard/matrix_fit.h"

namespace greycard {

/// A photograph of the chart for the best fit, which takes several under one light.
struct ChartPhotograph {
  Picture picture;
  std::filesystem::path photo;         ///< names it in messages and in the result; may be empty
  double weight = 1.0;                 ///< above 0
  std::optional<Picture> flatField{};  ///< of the same size: an even surface in the same light
  /// What the samples mean, where this isn't what the options say for all.
  std::optional<SampleMeaning> samples{}, flatFieldSamples{};
  std::optional<CaptureInfo> capture{};  ///< of a raw photograph
  std::vector<std::string> warnings{};   ///< of the file
};

/// The photograph as the fit takes it. \param flatField  empty where there is none
GREYCARD_EXPORT ChartPhotograph chartPhotograph(Photograph photograph, double weight = 1.0,
                                                const std::optional<Photograph>& flatField = {});

struct BestFitOptions {
  /// Of the stated fit, which is made beside the best one. Light, tone curve, space, target and
  /// patches for white balance hold for both; `locate` for every photograph.
  ChartFitOptions chart;
  /// Its space, cameraGamma, whitePatches and statedSettings are not looked at: they follow from
  /// `chart`.
  FitOptions best;
};

/// The best fit to photographs of the chart, and the stated fit to each of them.
struct GREYCARD_EXPORT BestChartFit {
  FitOptions options;  ///< of the best fit, as it was asked
  MatrixFitResult best;
  std::vector<ChartFit> stated;       ///< one for each photograph
  std::vector<std::string> warnings;  ///< a sentence each; those of the stated fits are theirs

  /// One photograph with gains, matrix, balanced and corrected colours of the best fit: what
  /// \p ChartFit tells of samples, chart and reference stays.
  ChartFit shown(std::size_t photograph) const;
  /// Measured values of a photograph through the tone curve, if there is one: linear.
  PatchTable lightRgb(std::size_t photograph) const;
};

/// Finds the chart in each photograph, samples it, and makes both fits.
///
/// \return empty when the callback cancelled
/// \throws JobError for a flat field of another size or one that clips at a patch, and as fitChart;
///         std::invalid_argument as MatrixFit, fitChart and FitOptions::follow
GREYCARD_EXPORT std::optional<BestChartFit> fitChartBest(
    std::span<const ChartPhotograph> photographs, const BestFitOptions& options = {},
    const ProgressCallback& progress = {});

/// A photograph through tone curve, gains and matrix of the best fit and the camera's gamma. Uneven
/// light, which is known at the chart alone, stays.
GREYCARD_EXPORT Picture correctedPhotograph(const Picture& picture, const BestChartFit& fit,
                                            std::size_t photograph = 0,
                                            const SampleMeaning& samples = {});

/// Weights of the 24 patches from a file of 24 numbers of 0 or above.
/// \throws JobError for other than 24 such numbers; FileError
GREYCARD_EXPORT std::array<double, kPatchCount> readPatchWeights(const std::filesystem::path& file);

}  // namespace greycard
