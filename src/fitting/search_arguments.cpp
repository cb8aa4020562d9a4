#include "search_arguments.h"

#include <cmath>
#include <stdexcept>

#include "text.h"

namespace greycard {
namespace {

constexpr const char* kNotFinite = "is not a finite number";

std::string entry(const char* argument, std::size_t i) {
  return std::string(argument) + "[" + std::to_string(i) + "]";
}

std::string number(double value) {
  return formatGeneral(value, 9);
}

}  // namespace

void refuseArgument(const std::string& call, const std::string& argument,
                    const std::string& trouble) {
  throw std::invalid_argument(call + ": " + argument + " " + trouble);
}

void requireLength(const char* call, const char* argument, std::size_t length, std::size_t count) {
  if (length < count)
    refuseArgument(call, argument,
                   "has " + std::to_string(length) + " entries; it needs " + std::to_string(count));
}

void requireFinite(const char* call, const char* argument, double value) {
  if (!std::isfinite(value)) refuseArgument(call, argument, kNotFinite);
}

void requireFinite(const char* call, const char* argument, std::span<const double> values,
                   std::size_t count) {
  requireLength(call, argument, values.size(), count);
  for (std::size_t i = 0; i < count; ++i)
    if (!std::isfinite(values[i])) refuseArgument(call, entry(argument, i), kNotFinite);
}

void requireHistograms(const char* call, const char* argument,
                       std::span<const ChannelHistograms> histograms, std::size_t count) {
  requireLength(call, argument, histograms.size(), count);
  for (std::size_t i = 0; i < count; ++i)
    for (std::size_t c = 0; c < histograms[i].size(); ++c)
      requireFinite(call, (entry(argument, i) + "[" + std::to_string(c) + "]").c_str(),
                    histograms[i][c], kHistogramBins);
}

void requireStartWithinBounds(const char* call, std::span<const double> lowerBound,
                              std::span<const double> upperBound,
                              std::span<const double> initialBound) {
  requireFinite(call, "lowerBound", lowerBound, kGaParameters);
  requireFinite(call, "upperBound", upperBound, kGaParameters);
  requireFinite(call, "initialBound", initialBound, kGaParameters);
  for (std::size_t k = 0; k < kGaParameters; ++k)
    if (initialBound[k] < lowerBound[k] || initialBound[k] > upperBound[k])
      refuseArgument(call, entry("initialBound", k),
                     "is " + number(initialBound[k]) + ", outside its bounds " +
                         number(lowerBound[k]) + " to " + number(upperBound[k]));
}

void requireWeights(const char* call, std::span<const double> Weight) {
  double sum = 0.0;
  for (std::size_t i = 0; i < Weight.size(); ++i) {
    if (Weight[i] < 0.0)
      refuseArgument(call, entry("Weight", i),
                     "is " + number(Weight[i]) + "; it must be 0 or above");
    sum += Weight[i];
  }
  if (!(sum > 0.0)) refuseArgument(call, "Weight", "is 0 for every image");
  if (!std::isfinite(sum)) refuseArgument(call, "Weight", "is so large that its sum is infinite");
}

void requireLimits(const char* call, const SearchOptions& options) {
  if (!(options.maxSeconds >= 0.0 && std::isfinite(options.maxSeconds)))
    refuseArgument(call, "maxSeconds",
                   "is " + number(options.maxSeconds) + "; it must be 0 (no limit) or above");
  if (options.maxEvaluations < 0)
    refuseArgument(
        call, "maxEvaluations",
        "is " + std::to_string(options.maxEvaluations) + "; it must be 0 (no limit) or above");
}

}  // namespace greycard
