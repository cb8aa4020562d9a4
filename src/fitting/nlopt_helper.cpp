#include "greycard/nlopt_helper.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

#include "lightness_reach.h"
#include "luma_target_run.h"
#include "nlopt_callbacks.h"
#include "nlopt_search.h"
#include "search_arguments.h"

namespace greycard {
namespace {

constexpr int kSuccess = 1, kObjectiveToleranceReached = 3, kMaxTimeReached = 6;
constexpr int kMostSearches = 20;
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

// What a search has used up of its limits; false when nothing is left of one.
bool takeOff(SearchOptions& options, const NloptOutcome& used) {
  if (options.maxSeconds > 0.0 && (options.maxSeconds -= used.seconds) <= 0.0) return false;
  return !(options.maxEvaluations > 0 && (options.maxEvaluations -= used.evaluations) <= 0);
}

struct PerImageInput {
  const char* name;
  std::span<const double> values;
  std::vector<double>& table;
};

struct PerImageOutput {
  const char* name;
  std::span<double> values;
  const std::vector<double>& table;
};

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

}  // namespace

GaParameters NLoptHelper::GA(
    std::span<const double> lowerBound, std::span<const double> upperBound,
    std::span<const double> initialBound, int imageCount, std::span<const double> Weight,
    std::span<const double> newTarget, std::span<const double> curr_luma,
    std::span<const double> cur_target, double max_drc_gain, double ADRC_Enable,
    std::span<const ChannelHistograms> hist_RGB, std::span<const ChannelHistograms> hist_CDF,
    std::span<const double> max_pushup_mean, std::span<const double> max_pushdown_mean,
    std::span<const double> max_dark_mean, std::span<const double> initial_parameter,
    std::span<const double> parameters_enable, bool isManual,
    std::vector<std::array<double, 4>>& fourTargets, std::span<double> histBasedSafeTarget,
    std::span<double> histBasedShortTarget, std::span<double> histBasedLongTarget,
    std::span<double> final_sat_pushup_pos, std::span<double> final_sat_pushdown_pos,
    std::span<double> final_dark_pos, int& opt_endCond, double& avg_targeterror, double& errorValue,
    const SearchOptions& options, GaReport* report) const {
  requireStartWithinBounds("GA", lowerBound, upperBound, initialBound);
  if (imageCount < 1 || imageCount > kGaMaxImages)
    refuseArgument("GA", "imageCount",
                   "is " + std::to_string(imageCount) + "; it must be from 1 to 299");
  const auto images = static_cast<std::size_t>(imageCount);
  requireFinite("GA", "max_drc_gain", max_drc_gain);
  requireFinite("GA", "ADRC_Enable", ADRC_Enable);
  requireLimits("GA", options);

  LumaTargetRun run;
  const PerImageInput inputs[] = {{"Weight", Weight, run.m_Weight},
                                  {"newTarget", newTarget, run.m_newTarget},
                                  {"curr_luma", curr_luma, run.m_curr_luma},
                                  {"cur_target", cur_target, run.m_cur_target},
                                  {"max_pushup_mean", max_pushup_mean, run.m_max_pushup_mean},
                                  {"max_pushdown_mean", max_pushdown_mean, run.m_max_pushdown_mean},
                                  {"max_dark_mean", max_dark_mean, run.m_max_dark_mean}};
  const PerImageOutput outputs[] = {
      {"histBasedSafeTarget", histBasedSafeTarget, run.m_resHistBasedSafeTarget},
      {"histBasedShortTarget", histBasedShortTarget, run.m_resHistBasedShortTarget},
      {"histBasedLongTarget", histBasedLongTarget, run.m_resHistBasedLongTarget},
      {"final_sat_pushup_pos", final_sat_pushup_pos, run.m_final_sat_pushup_pos},
      {"final_sat_pushdown_pos", final_sat_pushdown_pos, run.m_final_sat_pushdown_pos},
      {"final_dark_pos", final_dark_pos, run.m_final_dark_pos}};
  for (const auto& [name, values, table] : inputs) takeFinite(name, values, images, table);
  for (const auto& [name, values, table] : outputs)
    requireLength("GA", name, values.size(), images);
  requireWeights("GA", run.m_Weight);
  takeHistograms("hist_RGB", hist_RGB, images, run.m_hist_RGB);
  takeHistograms("hist_CDF", hist_CDF, images, run.m_hist_CDF);
  takeFinite("initial_parameter", initial_parameter, run.m_initial_parameter);
  takeFinite("parameters_enable", parameters_enable, run.m_parameters_enable);
  std::copy_n(lowerBound.begin(), kGaParameters, run.m_lowerBound.begin());
  std::copy_n(upperBound.begin(), kGaParameters, run.m_upperBound.begin());
  run.m_imageCount = imageCount;
  run.m_max_drc_gain = max_drc_gain;
  run.m_ADRC_Enable = ADRC_Enable;
  run.prepare();

  GaParameters x;
  std::copy_n(initialBound.begin(), kGaParameters, x.begin());
  GaReport found;
  if (isManual) {
    errorValue = evaluateFixed(run, run.m_initial_parameter, found);
  } else {
    const NloptOutcome outcome = searchParameters(run, options, x, found);
    opt_endCond = outcome.result;
    errorValue = outcome.minimum;
  }

  fourTargets = run.m_tempTarget;
  for (const auto& [name, values, table] : outputs)
    std::copy(table.begin(), table.end(), values.begin());
  avg_targeterror = run.m_avgTargetError;
  if (report != nullptr) *report = found;
  return x;
}

double NLoptHelper::findMinSearch(const Vector3& testRGB, const Vector3& targetRGB,
                                  const SearchOptions& options) const {
  requireFinite("findMinSearch", "testRGB", testRGB, testRGB.size());
  requireFinite("findMinSearch", "targetRGB", targetRGB, targetRGB.size());
  requireLimits("findMinSearch", options);
  if (testRGB == Vector3{}) return 1.0;  // black stays black

  constexpr double kLower[] = {kLeastFactor}, kUpper[] = {kMostFactor};
  constexpr double kStopValue = 1e-10;  // the square of kLightnessTolerance
  MinSearchRun run{testRGB, targetRGB};
  if (!std::isfinite(minSearch_Utility(1, kUpper, nullptr, &run)))
    throw std::invalid_argument("findMinSearch: testRGB or targetRGB is too large to have an L*");
  // A search for what is not there would take all its time.
  if (const auto nearest = nearestWhereNoneReaches(run)) {
    debugPrint("min utility=%f, x=(%f)\n", minSearch_Utility(1, &*nearest, nullptr, &run),
               *nearest);
    return *nearest;
  }
  double x[] = {1.0};
  const NloptProblem problem{kLower, kUpper, minSearch_Utility, {}, &run, kStopValue};
  NloptOutcome outcome = minimise(problem, options, x);
  // A dark colour's lightness hardly changes with the factor, so that the tolerance of the
  // objective is met long before the stop value: the search goes on from there, with other random
  // numbers.
  SearchOptions further = options;
  for (int n = 1; n < kMostSearches && outcome.result == kObjectiveToleranceReached &&
                  outcome.minimum > kStopValue && x[0] < kUpper[0];
       ++n) {
    if (!takeOff(further, outcome)) break;
    ++further.seed;
    outcome = minimise(problem, further, x);
  }
  if (outcome.result != 0) debugPrint("min utility=%f, x=(%f)\n", outcome.minimum, x[0]);
  return x[0];
}

void NLoptHelper::test() const {
  constexpr double kLower[] = {1.0, 1.0, 1.0}, kUpper[] = {100.0, 100.0, 100.0};
  constexpr std::array<NloptFunction, 2> kConstraints{inconstraint, inconstraint1};
  double x[] = {1.0, 1.0, 1.0};
  SearchOptions options;
  options.maxSeconds = 0.0;
  const NloptOutcome outcome =
      minimise({kLower, kUpper, utility1, kConstraints, nullptr}, options, x);
  if (outcome.result != 0)
    debugPrint("min utility=%f, x=(%f,%f,%f)\n", outcome.minimum, x[0], x[1], x[2]);
}

std::string_view stopReason(int resultCode) {
  switch (resultCode) {
    case 1:
      return "the search was done";
    case 2:
      return "the stop value was reached";
    case 3:
      return "the error no longer changed (tolerance of the objective)";
    case 4:
      return "the parameters no longer changed (tolerance of x)";
    case 5:
      return "the limit of evaluations was reached";
    case 6:
      return "the time limit was reached";
    case -1:
      return "NLopt failed";
    case -2:
      return "NLopt refused an argument";
    case -3:
      return "NLopt ran out of memory";
    case -4:
      return "rounding errors limited the search";
    case -5:
      return "the search was cancelled";
    default:
      return "NLopt gave no known reason";
  }
}

}  // namespace greycard
