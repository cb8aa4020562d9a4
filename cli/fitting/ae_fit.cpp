#include "ae_fit.h"

namespace greycard::cli {
namespace {

// One call of GA, with room for all it gives.
struct Call {
  explicit Call(const AeJob& job)
      : safe(job.images()), brief(safe), lasting(safe), pushUp(safe), pushDown(safe), dark(safe) {}

  GaParameters run(const AeJob& job, const GaParameters& fallback, bool isManual,
                   const SearchOptions& options) {
    return NLoptHelper().GA(
        job.lowerBound, job.upperBound, job.initialBound, static_cast<int>(job.images()),
        job.Weight, job.newTarget, job.curr_luma, job.cur_target, job.max_drc_gain, job.ADRC_Enable,
        job.hist_RGB, job.hist_CDF, job.max_pushup_mean, job.max_pushdown_mean, job.max_dark_mean,
        fallback, job.parameters_enable, isManual, fourTargets, safe, brief, lasting, pushUp,
        pushDown, dark, resultCode, meanError, error, options, &report);
  }

  std::vector<std::array<double, 4>> fourTargets;
  std::vector<double> safe, brief, lasting, pushUp, pushDown, dark;
  int resultCode = 0;
  double meanError = 0.0, error = 0.0;
  GaReport report;
};

}  // namespace

AeEvaluation evaluateRule(const AeJob& job, const GaParameters& parameters) {
  Call call(job);
  call.run(job, parameters, true, {});
  return {parameters,    call.fourTargets, call.safe,  call.pushUp,
          call.pushDown, call.dark,        call.error, call.meanError};
}

AeFit fitRule(const AeJob& job, const SearchOptions& options) {
  AeFit fit;
  fit.options = options;
  Call call(job);  // first, for it names the arguments that it refuses as the file does
  const GaParameters x = call.run(job, job.initial_parameter, false, options);
  fit.start = evaluateRule(job, job.inUse(job.initialBound));
  fit.returned = evaluateRule(job, job.inUse(x));
  fit.best = evaluateRule(job, job.inUse(call.report.best));
  fit.resultCode = call.resultCode;
  fit.minimum = call.error;
  fit.report = call.report;
  return fit;
}

double AeFit::evaluationsPerSecond() const {
  return report.seconds > 0.0 ? report.evaluations / report.seconds : 0.0;
}

}  // namespace greycard::cli
