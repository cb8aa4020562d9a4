#include "fit_check.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

#include "gamma_stage.h"
#include "text.h"

namespace greycard {
namespace {

constexpr double kMostNorm = 16.0;
constexpr double kLeastRowLimit = 0.6;
constexpr int kMostTradeOffSteps = 100;
constexpr std::size_t kMostPhotographs = 64;
constexpr double kLargestValue = 1e6;  // of measured values, noise, weights and gains

[[noreturn]] void refuse(const std::string& message) {
  throw std::invalid_argument(message);
}

template <class Enum>
void checkOneOf(Enum value, Enum first, Enum last, const char* option) {
  if (value < first || value > last)
    refuse(std::string(option) + " is " + std::to_string(static_cast<int>(value)) +
           ", which stands for nothing");
}

void checkRange(double value, double least, double most, const std::string& what) {
  if (!(value >= least && value <= most))
    refuse(what + " is " + formatGeneral(value) + "; it must be " + formatGeneral(least) + " to " +
           formatGeneral(most));
}

void checkWeights(const FitOptions& options) {
  double sum = 0.0;
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    checkRange(options.patchWeights[i], 0.0, kLargestValue,
               "the weight of patch " + std::to_string(i + 1));
    sum += options.patchWeights[i];
  }
  if (!(sum > 0.0)) refuse("every patch weight is 0, so nothing is fitted");
}

void checkGivenCurve(const std::vector<double>& curve) {
  if (curve.size() < 2) refuse("givenCurve has fewer than two values");
  for (std::size_t i = 0; i < curve.size(); ++i) {
    checkRange(curve[i], -kLargestValue, kLargestValue,
               "value " + std::to_string(i + 1) + " of givenCurve");
    if (i > 0 && !(curve[i] > curve[i - 1]))
      refuse("givenCurve does not rise from value " + std::to_string(i) + " to the next");
  }
}

void checkSpace(const Matrix3& rgbToXyz) {
  const Matrix3& m = rgbToXyz;
  for (std::size_t row = 0; row < 3; ++row) {
    double white = 0.0;
    for (const double entry : m[row]) {
      checkRange(entry, -kLargestValue, kLargestValue, "an entry of rgbToXyz");
      white += entry;
    }
    if (!(white > 0.0))
      refuse(std::string("rgbToXyz gives white a ") + "XYZ"[row] + " of " + formatGeneral(white) +
             "; it must be above 0");
  }
  const double determinant = m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
                             m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
                             m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
  if (!(std::fabs(determinant) > 1e-9)) refuse("rgbToXyz has no inverse");
}

void checkGamma(const FitOptions& options) {
  const auto& tables = options.cameraGamma;
  if (tables[0].empty() && tables[1].empty() && tables[2].empty()) return;
  for (std::size_t c = 0; c < 3; ++c) {
    const std::string name = std::string("cameraGamma of ") + "RGB"[c];
    if (tables[c].size() < kGammaPoints)
      refuse(name + " has " + std::to_string(tables[c].size()) + " entries; 256 are needed");
    if (!(tables[c][kGammaPoints - 1] > tables[c][0])) refuse(name + " does not rise");
  }
}

void checkPatch(const FitPhotograph& photograph, std::size_t i, const std::string& where) {
  for (std::size_t c = 0; c < 3; ++c) {
    const std::string at = where + ", patch " + std::to_string(i + 1) + ", channel " + "RGB"[c];
    checkRange(photograph.rgb[i][c], -kLargestValue, kLargestValue, at + ": the measured value");
    checkRange(photograph.noise[i][c], 0.0, kLargestValue, at + ": the noise");
    if (photograph.flatField &&
        !((*photograph.flatField)[i][c] > 0.0 && (*photograph.flatField)[i][c] < kLargestValue))
      refuse(at + ": the flat field is " + formatGeneral((*photograph.flatField)[i][c]) +
             "; it must be above 0");
  }
}

}  // namespace

void checkFitOptions(const FitOptions& options) {
  checkOneOf(options.difference, FitDifference::ciede2000, FitDifference::cam16Ucs, "difference");
  if (options.entries != FitEntries::six && options.entries != FitEntries::nine)
    refuse("entries must be six or nine");
  checkOneOf(options.exposure, FitExposure::stated, FitExposure::free, "exposure");
  checkOneOf(options.whiteBalance, FitWhiteBalance::stated, FitWhiteBalance::fitted,
             "whiteBalance");
  checkOneOf(options.toneCurve, FitToneCurve::none, FitToneCurve::monotone, "toneCurve");
  checkOneOf(options.light, FitLight::even, FitLight::quadratic, "light");
  checkRange(options.norm, 1.0, kMostNorm, "norm");
  checkWeights(options);
  if (options.exposure == FitExposure::number)
    checkRange(options.exposureGain, 1e-6, kLargestValue, "exposureGain");
  for (const int patch : options.whitePatches)
    if (patch < 18 || patch > 21)
      refuse("whitePatches holds row " + std::to_string(patch) +
             "; rows 18 to 21 (patches 19 to 22) may be in it");
  for (const double limit : options.rowNoiseLimits)
    if (!(limit >= kLeastRowLimit))
      refuse("a limit of rowNoiseLimits is " + formatGeneral(limit) + "; it must be at least 0.6");
  checkRange(options.tradeOffSteps, 0.0, kMostTradeOffSteps, "tradeOffSteps");
  if (options.toneCurve == FitToneCurve::given) checkGivenCurve(options.givenCurve);
  if (options.toneCurve == FitToneCurve::monotone && options.light != FitLight::even)
    refuse(
        "a monotone tone curve and a light field can't both come from the grey row; choose a "
        "curve with numbers, or give a flat field");
  checkSpace(options.rgbToXyz);
  checkGamma(options);
}

void checkFitSamples(const MatrixFitSamples& samples, const FitOptions& options) {
  if (samples.photographs.empty()) refuse("there is no photograph to fit");
  if (samples.photographs.size() > kMostPhotographs)
    refuse("there are " + std::to_string(samples.photographs.size()) +
           " photographs; a fit takes up to 64");
  for (std::size_t i = 0; i < kPatchCount; ++i)
    for (std::size_t c = 0; c < 3; ++c)
      checkRange(samples.referenceLab[i][c], -1000.0, 1000.0,
                 "patch " + std::to_string(i + 1) + ": the reference " +
                     (c == 0   ? "L*"
                      : c == 1 ? "a*"
                               : "b*"));
  for (std::size_t k = 0; k < samples.photographs.size(); ++k) {
    const FitPhotograph& photograph = samples.photographs[k];
    const std::string where = "photograph " + std::to_string(k + 1);
    if (!(photograph.weight > 0.0 && photograph.weight < kLargestValue))
      refuse("the weight of " + where + " is " + formatGeneral(photograph.weight) +
             "; it must be above 0");
    for (std::size_t i = 0; i < kPatchCount; ++i)
      if (!photograph.clipped[i] && options.patchWeights[i] >= 0.0)
        checkPatch(photograph, i, where);
  }
}

}  // namespace greycard
