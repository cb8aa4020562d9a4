#include "greycard/nlopt_helper.h"

#include <array>
#include <cmath>
#include <stdexcept>

#include "lightness_reach.h"
#include "nlopt_callbacks.h"
#include "nlopt_search.h"
#include "search_arguments.h"

namespace greycard {
namespace {

constexpr int kObjectiveToleranceReached = 3;
constexpr int kMostSearches = 20;

// What a search has used up of its limits; false when nothing is left of one.
bool takeOff(SearchOptions& options, const NloptOutcome& used) {
  if (options.maxSeconds > 0.0 && (options.maxSeconds -= used.seconds) <= 0.0) return false;
  return !(options.maxEvaluations > 0 && (options.maxEvaluations -= used.evaluations) <= 0);
}

}  // namespace

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
