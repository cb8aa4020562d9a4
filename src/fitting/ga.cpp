// NLoptHelper::GA, in both its forms.

#include <algorithm>
#include <string>

#include "greycard/nlopt_helper.h"
#include "luma_target_run.h"
#include "nlopt_callbacks.h"
#include "nlopt_search.h"
#include "search_arguments.h"

namespace greycard {
namespace {

constexpr int kSuccess = 1, kMaxTimeReached = 6;
constexpr std::array<NloptFunction, 4> kGaConstraints{GAinconstraint1, GAinconstraint2,
                                                      GAinconstraint3, GAinconstraint4};

bool anyEnabled(const LumaTargetRun& run) {
  return std::any_of(run.m_parameters_enable.begin(), run.m_parameters_enable.end(),
                     [](double flag) { return flag != 0.0; });
}

bool keepsConstraints(GaParameters x) {
  return std::all_of(kGaConstraints.begin(), kGaConstraints.end(), [&x](NloptFunction c) {
    return c(kGaParameters, x.data(), nullptr, nullptr) <= kConstraintTolerance;
  });
}

void logGa(const LumaTargetRun& run, double minimum, const GaParameters& x) {
  debugPrint("min utility=%f, gaError = %f, x=(%f,%f,%f,%f,%f,%f,%f,%f,%f,%f,%f,%f)\n", minimum,
             run.ga_error, x[0], x[1], x[2], x[3], x[4], x[5], x[6], x[7], x[8], x[9], x[10],
             x[11]);
  const auto& targets = run.m_tempTarget[0];
  debugPrint("four targets = (%f %f %f %f) \n", targets[0], targets[1], targets[2], targets[3]);
}

// The error of the parameters that are held fixed.
double evaluateFixed(LumaTargetRun& run, const GaParameters& best, GaReport& report) {
  const double error = run.errorFunc_LumaTarget(run.m_initial_parameter);
  report = {best, keepsConstraints(best), 1, 0.0};
  return error;
}

// Searches from x and leaves in it what GA returns.
NloptOutcome searchParameters(LumaTargetRun& run, const SearchOptions& options, GaParameters& x,
                              GaReport& report) {
  if (!anyEnabled(run)) {  // nothing to search for: the error is constant
    const double error = evaluateFixed(run, x, report);
    return {.result = kSuccess, .minimum = error, .evaluations = 1, .seconds = 0.0};
  }
  const NloptOutcome outcome =
      minimise({run.m_lowerBound, run.m_upperBound, GA_Utility, kGaConstraints, &run}, options, x);
  report = {x, keepsConstraints(x), outcome.evaluations, outcome.seconds};
  // The last evaluation's parameters, not the best: deliberate.
  if (outcome.result == kMaxTimeReached) x = run.m_xTmp;
  if (outcome.result != 0) logGa(run, outcome.minimum, x);
  return outcome;
}

void takeFinite(const char* name, std::span<const double> values, std::size_t count,
                std::vector<double>& table) {
  requireFinite("GA", name, values, count);
  table.assign(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(count));
}

template <std::size_t Count>
void takeFinite(const char* name, std::span<const double> values,
                std::array<double, Count>& table) {
  requireFinite("GA", name, values, Count);
  std::copy_n(values.begin(), Count, table.begin());
}

void takeHistograms(const char* name, std::span<const ChannelHistograms> histograms,
                    std::size_t images, std::vector<ChannelHistograms>& table) {
  requireHistograms("GA", name, histograms, images);
  table.assign(histograms.begin(), histograms.begin() + static_cast<std::ptrdiff_t>(images));
}

std::size_t checkedImages(int imageCount) {
  if (imageCount < 1 || imageCount > kGaMaxImages)
    refuseArgument("GA", "imageCount",
                   "is " + std::to_string(imageCount) + "; it must be from 1 to 299");
  return static_cast<std::size_t>(imageCount);
}

// Checks the task and takes over what the evaluations read.
LumaTargetRun preparedRun(const GaTask& task) {
  requireStartWithinBounds("GA", task.lowerBound, task.upperBound, task.initialBound);
  const std::size_t images = checkedImages(task.imageCount);
  requireFinite("GA", "max_drc_gain", task.max_drc_gain);
  requireFinite("GA", "ADRC_Enable", task.ADRC_Enable);
  LumaTargetRun run;
  takeFinite("Weight", task.Weight, images, run.m_Weight);
  takeFinite("newTarget", task.newTarget, images, run.m_newTarget);
  takeFinite("curr_luma", task.curr_luma, images, run.m_curr_luma);
  takeFinite("cur_target", task.cur_target, images, run.m_cur_target);
  requireWeights("GA", run.m_Weight);
  takeHistograms("hist_RGB", task.hist_RGB, images, run.m_hist_RGB);
  takeHistograms("hist_CDF", task.hist_CDF, images, run.m_hist_CDF);
  takeFinite("initial_parameter", task.initial_parameter, run.m_initial_parameter);
  takeFinite("parameters_enable", task.parameters_enable, run.m_parameters_enable);
  std::copy_n(task.lowerBound.begin(), kGaParameters, run.m_lowerBound.begin());
  std::copy_n(task.upperBound.begin(), kGaParameters, run.m_upperBound.begin());
  run.m_imageCount = task.imageCount;
  run.m_max_drc_gain = task.max_drc_gain;
  run.m_ADRC_Enable = task.ADRC_Enable;
  run.prepare();
  return run;
}

GaImageResult imageResult(const LumaTargetRun& run, std::size_t i) {
  return {run.m_tempTarget[i],
          run.m_resHistBasedSafeTarget[i],
          run.m_resHistBasedShortTarget[i],
          run.m_resHistBasedLongTarget[i],
          run.m_final_sat_pushup_pos[i],
          run.m_final_sat_pushdown_pos[i],
          run.m_final_dark_pos[i]};
}

}  // namespace

GaResult NLoptHelper::GA(const GaTask& task, const SearchOptions& options) const {
  requireLimits("GA", options);
  LumaTargetRun run = preparedRun(task);
  GaResult result;
  std::copy_n(task.initialBound.begin(), kGaParameters, result.parameters.begin());
  if (task.isManual) {
    result.error = evaluateFixed(run, run.m_initial_parameter, result.report);
  } else {
    const NloptOutcome outcome = searchParameters(run, options, result.parameters, result.report);
    result.resultCode = outcome.result;
    result.error = outcome.minimum;
  }
  result.meanTargetError = run.m_avgTargetError;
  for (std::size_t i = 0; i < run.m_tempTarget.size(); ++i)
    result.images.push_back(imageResult(run, i));
  return result;
}

GaParameters NLoptHelper::runInto(const GaTask& task, const LongForm& rest,
                                  const SearchOptions& options) const {
  const std::size_t images = checkedImages(task.imageCount);
  requireFinite("GA", "max_pushup_mean", rest.max_pushup_mean, images);
  requireFinite("GA", "max_pushdown_mean", rest.max_pushdown_mean, images);
  requireFinite("GA", "max_dark_mean", rest.max_dark_mean, images);
  const struct {
    const char* name;
    std::span<double> values;
    double GaImageResult::*value;
  } outputs[] = {{"histBasedSafeTarget", rest.histBasedSafeTarget, &GaImageResult::safeTarget},
                 {"histBasedShortTarget", rest.histBasedShortTarget, &GaImageResult::shortTarget},
                 {"histBasedLongTarget", rest.histBasedLongTarget, &GaImageResult::longTarget},
                 {"final_sat_pushup_pos", rest.final_sat_pushup_pos, &GaImageResult::pushUp},
                 {"final_sat_pushdown_pos", rest.final_sat_pushdown_pos, &GaImageResult::pushDown},
                 {"final_dark_pos", rest.final_dark_pos, &GaImageResult::dark}};
  for (const auto& output : outputs) requireLength("GA", output.name, output.values.size(), images);

  const GaResult result = GA(task, options);
  for (const auto& output : outputs)
    std::ranges::transform(result.images, output.values.begin(), output.value);
  rest.fourTargets.clear();
  for (const GaImageResult& image : result.images) rest.fourTargets.push_back(image.fourTargets);
  if (result.resultCode) rest.opt_endCond = *result.resultCode;
  rest.avg_targeterror = result.meanTargetError;
  rest.errorValue = result.error;
  if (rest.report != nullptr) *rest.report = result.report;
  return result.parameters;
}

}  // namespace greycard
