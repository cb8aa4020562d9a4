#include "best_options.h"

#include <algorithm>

#include "command.h"
#include "greycard/files.h"
#include "greycard/number_text.h"
#include "option_checks.h"

namespace greycard::cli {
namespace {

// The value whose name it is; the names count from 0.
template <typename Enum, std::size_t Size>
Enum named(const std::string& name, const std::array<const char*, Size>& names) {
  return static_cast<Enum>(std::ranges::find(names, name) - names.begin());
}

template <std::size_t Size>
std::vector<std::string> texts(const std::array<const char*, Size>& names) {
  return {names.begin(), names.end()};
}

double normOf(const std::string& norm) {
  if (norm == "mean") return FitOptions::kMean;
  if (norm == "rms") return FitOptions::kRootMeanSquare;
  if (norm == "max") return FitOptions::kSoftMaximum;
  return numberOf<double>(norm).value_or(FitOptions::kRootMeanSquare);
}

std::vector<double> curveFrom(const std::filesystem::path& file) try {
  return finiteNumbers(readWholeFile(file));
} catch (const std::invalid_argument& error) {
  throw JobError(quoted(file) + " holds no curve: " + error.what());
}

}  // namespace

void BestOptions::addTo(CLI::App& app) {
  app.add_option("--fit", fit,
                 "stated, or best: the least colour error, and how far to believe it; the options "
                 "below are for that")
      ->check(oneOf({"stated", "best"}))
      ->capture_default_str()
      ->type_name("NAME");
  CLI::Option_group& group = *app.add_option_group("Best fit");
  const auto add = [&](CLI::Option* option, const char* type) {
    all.push_back(option->type_name(type));
    return option;
  };
  const auto named = [&](const char* name, std::string& value, const char* help,
                         const std::vector<std::string>& names) {
    add(group.add_option(name, value, help), "NAME")->capture_default_str()->check(oneOf(names));
  };
  named("--difference", difference, "Colour difference: ciede2000, cie94, cie76 or cam16",
        texts(kFitDifferenceNames));
  add(group.add_option("--norm", norm,
                       "What of the differences: mean, rms, max (soft) or the exponent 1..16"),
      "NAME|P")
      ->capture_default_str()
      ->check(namesOrNumbers({"mean", "rms", "max"}, 1.0, 16.0));
  add(group.add_option("--weights", weights,
                       "Weights of the patches: even, neutrals, skin, foliage-sky, or a file of 24 "
                       "numbers; 0 leaves a patch out"),
      "NAME|FILE")
      ->capture_default_str();
  named("--entries", entries, "Free entries of the matrix: six (rows sum to 1) or nine",
        {"six", "nine"});
  named("--white-balance", whiteBalance, "White-balance gains: stated or fitted",
        texts(kFitWhiteBalanceNames));
  add(group.add_option("--noise-limit", noiseLimit,
                       "Largest noise amplification of the matrix, one for all rows or R,G,B"),
      "LIMIT[,G,B]")
      ->delimiter(',')
      ->check(numbersFrom(0.6, 1e6))
      ->expected(1, 3);
  add(group.add_option("--trade-off", tradeOff, "Rows of a table of colour error against noise"),
      "ROWS")
      ->check(wholeNumbersFrom(1, 100));
  CLI::Option* estimate =
      add(group.add_flag("--estimate-curve{power}", estimatedCurve,
                         "Estimate the tone curve of a photograph that a camera rendered, from the "
                         "greys and the patches: =power (default), =power-offset, =black-white or "
                         "=monotone"),
          "");
  estimate->check(oneOf({"power", "power-offset", "black-white", "monotone"}));
  add(group.add_option("--curve", curve,
                       "The photograph's tone curve: light for sRGB-encoded values at equal steps "
                       "over 0..1, rising numbers"),
      "FILE")
      ->excludes(estimate);
  add(group.add_option("--uneven", uneven,
                       "Light over the chart: plane or quadratic, or a flat-field picture of the "
                       "same light and size"),
      "NAME|PICTURE");
  add(group.add_option("--also", also,
                       "Another photograph of the chart under the same light; several are fine"),
      "PHOTO")
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  add(group.add_option("--photo-weights", photoWeights, "Weights of the photographs, in order"),
      "LIST")
      ->delimiter(',')
      ->check(numbersFrom(1e-6, 1e5));
}

void BestOptions::check() const {
  if (!asked())
    for (const CLI::Option* option : all)
      if (option->count() > 0)
        throw UsageError(option->get_name() + " is for --fit best; add that, or leave it out");
  if (!photoWeights.empty() && photoWeights.size() != also.size() + 1)
    throw UsageError("--photo-weights has " + std::to_string(photoWeights.size()) +
                     " numbers for " + std::to_string(also.size() + 1) + " photograph(s)");
  if (noiseLimit.size() == 2) throw UsageError("--noise-limit takes one number or three");
}

std::filesystem::path BestOptions::flatField() const {
  return uneven == "plane" || uneven == "quadratic" ? "" : uneven;
}

double BestOptions::weightOf(std::size_t photograph) const {
  return photoWeights.empty() ? 1.0 : photoWeights[photograph];
}

void BestOptions::nameFiles(JobFiles& files) const {
  for (const auto& photo : also) files.input("--also", photo);
  files.input("--curve", curve);
  files.input("--uneven", flatField());
  if (!patchWeightPresetFromName(weights)) files.input("--weights", weights);
}

FitOptions BestOptions::fitOptions() const {
  FitOptions options;
  options.difference = named<FitDifference>(difference, kFitDifferenceNames);
  options.norm = normOf(norm);
  const auto preset = patchWeightPresetFromName(weights);
  options.patchWeights = preset ? patchWeights(*preset) : readPatchWeights(weights);
  options.entries = entries == "six" ? FitEntries::six : FitEntries::nine;
  options.whiteBalance = named<FitWhiteBalance>(whiteBalance, kFitWhiteBalanceNames);
  if (noiseLimit.size() == 1) options.rowNoiseLimits.fill(noiseLimit.front());
  if (noiseLimit.size() == 3) std::ranges::copy(noiseLimit, options.rowNoiseLimits.begin());
  options.tradeOffSteps = tradeOff;
  if (!estimatedCurve.empty())
    options.toneCurve = named<FitToneCurve>(estimatedCurve, kFitToneCurveNames);
  if (!curve.empty()) {
    options.toneCurve = FitToneCurve::given;
    options.givenCurve = curveFrom(curve);
  }
  if (uneven == "plane") options.light = FitLight::plane;
  if (uneven == "quadratic") options.light = FitLight::quadratic;
  return options;
}

}  // namespace greycard::cli
