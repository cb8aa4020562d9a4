#include "greycard/jobs/fit_exposure.h"

#include "exposure_images.h"

namespace greycard {
namespace {

// One call of GA, with room for all it gives.
struct Call {
  explicit Call(std::size_t images)
      : safe(images), brief(safe), lasting(safe), pushUp(safe), pushDown(safe), dark(safe) {}

  GaParameters run(const ExposureJob& job, const ExposureImages& images,
                   const GaParameters& fallback, bool isManual, const SearchOptions& options) {
    return NLoptHelper().GA(job.lowerBound, job.upperBound, job.initialBound,
                            static_cast<int>(job.images.size()), images.Weight, images.newTarget,
                            images.curr_luma, images.cur_target, job.max_drc_gain, job.ADRC_Enable,
                            images.hist_RGB, images.hist_CDF, images.max_pushup_mean,
                            images.max_pushdown_mean, images.max_dark_mean, fallback,
                            job.parameters_enable, isManual, fourTargets, safe, brief, lasting,
                            pushUp, pushDown, dark, resultCode, meanError, error, options, &report);
  }

  std::vector<std::array<double, 4>> fourTargets;
  std::vector<double> safe, brief, lasting, pushUp, pushDown, dark;
  int resultCode = 0;
  double meanError = 0.0, error = 0.0;
  GaReport report;
};

ExposureEvaluation evaluate(const ExposureJob& job, const ExposureImages& images,
                            const GaParameters& parameters) {
  Call call(job.images.size());
  call.run(job, images, parameters, true, {});
  return {parameters,    call.safe, call.fourTargets, call.pushUp,
          call.pushDown, call.dark, call.error,       call.meanError};
}

}  // namespace

double ExposureFit::evaluationsPerSecond() const {
  return seconds > 0.0 ? evaluations / seconds : 0.0;
}

ExposureFit fitExposure(const ExposureJob& job, const SearchOptions& options) {
  const ExposureImages images(job);
  Call call(
      job.images.size());  // first, for it names the arguments that it refuses as the job does
  const GaParameters x = call.run(job, images, job.fixedParameters(), false, options);
  ExposureFit fit;
  fit.resultCode = call.resultCode;
  fit.least = call.error;
  fit.evaluations = call.report.evaluations;
  fit.seconds = call.report.seconds;
  fit.seed = options.seed;
  fit.bestKeepsConstraints = call.report.bestKeepsConstraints;
  fit.images = images.figures;
  fit.start = evaluate(job, images, job.inUse(job.initialBound));
  fit.returned = evaluate(job, images, job.inUse(x));
  fit.best = evaluate(job, images, job.inUse(call.report.best));
  return fit;
}

ExposureTrial evaluateExposure(const ExposureJob& job) {
  const ExposureImages images(job);
  return {images.figures, evaluate(job, images, job.fixedParameters())};
}

}  // namespace greycard
