#include "greycard/jobs/apply_fit.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "greycard/errors.h"
#include "greycard/files.h"
#include "greycard/jobs/apply_lut2d.h"
#include "greycard/picture_correction.h"

namespace greycard {
namespace {

AppliedFit applied(const std::filesystem::path& photo, const std::filesystem::path& output,
                   const FittedPipeline& pipeline, const ApplyFitOptions& options,
                   const PhotographOptions& reading) {
  AppliedFit result{photo, output, {}, {}};
  try {
    const Photograph photograph = readPhotograph(photo, reading);
    result.warnings = photograph.warnings;
    writePicture(output, applyFit(photograph, pipeline, options));
    return result;
  } catch (const std::invalid_argument& error) {
    result.failure = "can't read " + quoted(photo) + ": " + error.what();
  } catch (const std::exception& error) {
    result.failure = error.what();
  }
  result.output.clear();
  return result;
}

}  // namespace

FittedPipeline pipelineOf(const ChartFit& fit) {
  return {fit.pipeline().m_gains, fit.matrix, fit.gamma, {}};
}

FittedPipeline pipelineOf(const BestChartFit& fit, std::size_t photograph) {
  FittedPipeline pipeline = pipelineOf(fit.shown(photograph));
  pipeline.toneCurve = fit.best.toneCurve;
  return pipeline;
}

Picture applyFit(const Photograph& photograph, const FittedPipeline& pipeline,
                 const ApplyFitOptions& options) {
  const Picture& picture = photograph.picture;
  if (picture.channels == 1)
    throw JobError(quoted(photograph.file) +
                   " is a grey picture, which holds no colours to correct");
  // The facade's form of the tables: shares of full scale.
  ChartFit curves;
  curves.gamma = options.gamma.value_or(pipeline.gamma);
  const auto tables = curves.pipeline().m_gamma;
  Picture corrected = correctPicture(
      picture, sampleLevels(picture, photograph.samples), pipeline.gains, pipeline.matrix,
      ToneCurves{tables[0], tables[1], tables[2]}, pipeline.toneCurve);
  if (!options.lut2d) return corrected;
  return applyLut2d(corrected, *options.lut2d, {}, photograph.file).picture();
}

std::vector<std::filesystem::path> resultPaths(
    const std::vector<std::filesystem::path>& photographs, const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> results;
  for (const auto& photograph : photographs) {
    auto result = folder / photograph.stem();
    result += ".png";
    if (const auto same = std::ranges::find(results, result); same != results.end())
      throw JobError("the results of " +
                     quoted(photographs[static_cast<std::size_t>(same - results.begin())]) +
                     " and " + quoted(photograph) + " would both be " + quoted(result) +
                     "; rename one of them");
    results.push_back(std::move(result));
  }
  return results;
}

std::optional<std::vector<AppliedFit>> applyFitToFiles(
    const std::vector<std::filesystem::path>& photographs,
    const std::vector<std::filesystem::path>& outputs, const FittedPipeline& pipeline,
    const ApplyFitOptions& options, const PhotographOptions& reading,
    const ProgressCallback& progress) {
  if (outputs.size() != photographs.size())
    throw std::invalid_argument("each photograph needs one output");
  std::vector<AppliedFit> results;
  for (std::size_t i = 0; i < photographs.size(); ++i) {
    if (progress && !progress(static_cast<double>(i) / static_cast<double>(photographs.size())))
      return std::nullopt;
    results.push_back(applied(photographs[i], outputs[i], pipeline, options, reading));
  }
  return results;
}

}  // namespace greycard
