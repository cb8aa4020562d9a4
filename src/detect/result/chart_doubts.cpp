#include "result/chart_doubts.h"

#include <algorithm>
#include <optional>

#include "text.h"

namespace greycard {
namespace {

constexpr double kNeutralTieLevels = 2.0;   // noise; clipped neighbours are equal, not wrong
constexpr std::size_t kMostNamed = 12;      // patches: more are not a chart with something on it
constexpr double kSmallestPatchSide = 5.0;  // pixels

std::optional<std::string> placesOutside(const ChartWindow& window) {
  if (window.inside == kPatchCount) return std::nullopt;
  return std::to_string(kPatchCount - window.inside) +
         " of the 24 patch centres lie outside the picture";
}

std::optional<std::string> neutralsNotDarkening(const ChartWindow& window) {
  if (window.colour.neutralsDarken) return std::nullopt;
  const std::string what = "the neutral row does not darken from white to black: ";
  const auto level = [&](int patch) {
    const auto& mean = window.samples[static_cast<std::size_t>(patch)].mean;
    return window.grey ? mean[0] : (mean[0] + mean[1] + mean[2]) / 3.0;
  };
  for (int patch = 19; patch < kPatchCount; ++patch)
    if (!(level(patch) <= level(patch - 1) + kNeutralTieLevels))
      return what + "patch " + std::to_string(patch + 1) + " is brighter than patch " +
             std::to_string(patch);
  return what + "patches 19 and 24 are nearly equal";
}

std::optional<std::string> placesUneven(const ChartWindow& window) {
  const int uneven = window.inside - window.flat;
  if (uneven <= kMostUneven) return std::nullopt;
  const auto worst =
      std::max_element(window.samples.begin(), window.samples.end(),
                       [](const auto& a, const auto& b) { return a.scatter < b.scatter; });
  return std::to_string(uneven) + " of the 24 regions are not uniform, most of all that of patch " +
         std::to_string(worst - window.samples.begin() + 1) +
         " (parts of it differ from its mean by " + formatFixed(worst->scatter / window.gain, 0) +
         " of 255 levels)";
}

std::optional<std::string> coloursUnlike(const ChartWindow& window, double smallestGate) {
  if (window.colour.score >= smallestGate) return std::nullopt;
  return "the patches do not follow the chart's colours (likeness " +
         formatFixed(window.colour.score, 2) + ", a chart gives above " +
         formatFixed(smallestGate, 2) + ")";
}

std::optional<std::string> patchesUnlike(const ChartWindow& window) {
  std::vector<int> numbers;
  for (const int patch : window.outliers()) numbers.push_back(patch + 1);
  if (numbers.empty()) return std::nullopt;
  if (numbers.size() > kMostNamed)
    return std::to_string(numbers.size()) + " of the 24 patches are unlike the chart's";
  return patchWords(numbers) + (numbers.size() == 1 ? " is" : " are") +
         " unlike the chart's: covered, in glare or in shadow";
}

std::optional<std::string> patchesTiny(double patchSide) {
  if (patchSide >= kSmallestPatchSide) return std::nullopt;
  return "the patches are only about " + formatFixed(patchSide, 0) +
         " pixels wide, too few to judge the fit";
}

}  // namespace

std::string patchWords(const std::vector<int>& numbers) {
  std::string words = numbers.size() == 1 ? "patch " : "patches ";
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    if (i > 0) words += i + 1 == numbers.size() ? " and " : ", ";
    words += std::to_string(numbers[i]);
  }
  return words;
}

std::vector<std::string> chartDoubts(const ChartWindow& window, double smallestGate,
                                     double patchSide) {
  std::vector<std::string> doubts;
  for (auto& doubt :
       {placesOutside(window), neutralsNotDarkening(window), placesUneven(window),
        coloursUnlike(window, smallestGate), patchesUnlike(window), patchesTiny(patchSide)})
    if (doubt) doubts.push_back(*doubt);
  return doubts;
}

}  // namespace greycard
