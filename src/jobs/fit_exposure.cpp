#include "greycard/jobs/fit_exposure.h"

#include "exposure_images.h"

namespace greycard {
namespace {

GaResult run(const ExposureJob& job, const ExposureImages& images, const GaParameters& fallback,
             bool isManual, const SearchOptions& options) {
  return NLoptHelper().GA({.lowerBound = job.lowerBound,
                           .upperBound = job.upperBound,
                           .initialBound = job.initialBound,
                           .imageCount = static_cast<int>(job.images.size()),
                           .Weight = images.Weight,
                           .newTarget = images.newTarget,
                           .curr_luma = images.curr_luma,
                           .cur_target = images.cur_target,
                           .max_drc_gain = job.max_drc_gain,
                           .ADRC_Enable = job.ADRC_Enable,
                           .hist_RGB = images.hist_RGB,
                           .hist_CDF = images.hist_CDF,
                           .initial_parameter = fallback,
                           .parameters_enable = job.parameters_enable,
                           .isManual = isManual},
                          options);
}

ExposureEvaluation evaluate(const ExposureJob& job, const ExposureImages& images,
                            const GaParameters& parameters) {
  const GaResult result = run(job, images, parameters, true, {});
  ExposureEvaluation evaluation;
  evaluation.parameters = parameters;
  for (const GaImageResult& image : result.images) {
    evaluation.target.push_back(image.safeTarget);
    evaluation.fourTargets.push_back(image.fourTargets);
    evaluation.pushUp.push_back(image.pushUp);
    evaluation.pushDown.push_back(image.pushDown);
    evaluation.dark.push_back(image.dark);
  }
  evaluation.error = result.error;
  evaluation.meanError = result.meanTargetError;
  return evaluation;
}

}  // namespace

double ExposureFit::evaluationsPerSecond() const {
  return seconds > 0.0 ? evaluations / seconds : 0.0;
}

SearchOptions exposureSearch() {
  SearchOptions options;
  options.maxSeconds = 0.0;
  options.maxEvaluations = 500000;
  return options;
}

ExposureFit fitExposure(const ExposureJob& job, const SearchOptions& options) {
  const ExposureImages images(job);
  // First, for it names the arguments that it refuses as the job does.
  const GaResult result = run(job, images, job.fixedParameters(), false, options);
  ExposureFit fit;
  fit.resultCode = *result.resultCode;
  fit.least = result.error;
  fit.evaluations = result.report.evaluations;
  fit.seconds = result.report.seconds;
  fit.seed = options.seed;
  fit.bestKeepsConstraints = result.report.bestKeepsConstraints;
  fit.images = images.figures;
  fit.start = evaluate(job, images, job.inUse(job.initialBound));
  fit.returned = evaluate(job, images, job.inUse(result.parameters));
  fit.best = evaluate(job, images, job.inUse(result.report.best));
  return fit;
}

ExposureTrial evaluateExposure(const ExposureJob& job) {
  const ExposureImages images(job);
  return {images.figures, evaluate(job, images, job.fixedParameters())};
}

}  // namespace greycard
