#include "fit_context.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

#include "cholesky.h"
#include "colour_space.h"
#include "exposure_gain.h"
#include "grey_curve.h"
#include "greycard/delta_e.h"
#include "light_table.h"
#include "matrix_functions.h"
#include "srgb_transfer.h"
#include "table_conversion.h"
#include "white_balance.h"

namespace greycard {
namespace {

constexpr std::size_t kLeastGreys = 3;  // for a curve
// Where the exposure is read: chart patch 20, or where it clips the next ones.
constexpr std::size_t kExposurePatches[] = {19, 20, 21, 18};

// Light of channel c at a patch, with the setup's curve.
double lightOf(const FitSetup& setup, std::size_t photograph, std::size_t patch, std::size_t c) {
  const FitSample& sample = setup.samples[photograph * kPatchCount + patch];
  return curvePoint(setup.start.curve, sample.measured[c], sample.encoded[c]).value /
         (sample.flat[c] * lightAt(setup.start.light[photograph], patch));
}

}  // namespace

bool takesPart(const FitPhotograph& photograph, std::size_t patch, const PatchMask& leftOut) {
  return !photograph.clipped[patch] && !leftOut[patch];
}

FitSetup FitContext::setup(std::span<const FitPhotograph> photographs, const PatchMask& leftOut,
                           const FitState* before) const {
  FitSetup setup;
  setup.start.exposure.assign(photographs.size(), 1.0);
  setup.start.light.assign(photographs.size(), {});
  estimateCurve(photographs, leftOut, before, setup);
  addSamples(photographs, leftOut, setup);
  balance(photographs, leftOut, before, setup);
  if (options.light != FitLight::even) {
    if (before) setup.start = *before;
    if (!isEnough(lightUnknowns_, setup.samples))
      throw std::invalid_argument("too few patches are left to find the light over the chart");
    const FitState even = evenedOut(setup);
    setup.start.curve = even.curve;
    setup.start.light = even.light;
    balance(photographs, leftOut, before, setup);
  }
  setup.start.matrix = before ? before->matrix : leastSquares(setup.start, setup.samples, true);
  return setup;
}

void FitContext::balance(std::span<const FitPhotograph> photographs, const PatchMask& leftOut,
                         const FitState* before, FitSetup& setup) const {
  setGains(photographs, leftOut, before, setup);
  for (std::size_t k = 0; k < photographs.size(); ++k)
    setup.start.exposure[k] = exposureOf(photographs[k], k, leftOut, before, setup);
}

void FitContext::estimateCurve(std::span<const FitPhotograph> photographs, const PatchMask& leftOut,
                               const FitState* before, FitSetup& setup) const {
  const bool parametric = curveTerms(options.toneCurve) > 0;
  setup.start.curve = before && parametric ? before->curve : unchangedCurve(options.toneCurve);
  if (options.toneCurve == FitToneCurve::given) setup.table = options.givenCurve;
  if (before && parametric) return;
  if (!parametric && options.toneCurve != FitToneCurve::monotone) return;
  std::vector<GreySample> greys;
  for (std::size_t k = 0; k < photographs.size(); ++k) {
    const std::size_t first = greys.size();
    for (std::size_t i = kFirstGrey; i < kPatchCount; ++i)
      if (takesPart(photographs[k], i, leftOut))
        greys.push_back({k, photographs[k].rgb[i], target_[i]});
    if (greys.size() - first < kLeastGreys)
      throw std::invalid_argument(
          "photograph " + std::to_string(k + 1) +
          " has fewer than three grey patches that don't clip; a tone curve needs them");
  }
  GreyCurve found = greyCurve(greys, options.toneCurve);
  setup.start.curve = found.curve;
  setup.table = std::move(found.table);
  setup.greyResidual = found.residual;
}

void FitContext::addSamples(std::span<const FitPhotograph> photographs, const PatchMask& leftOut,
                            FitSetup& setup) const {
  double sum = 0.0;
  for (std::size_t k = 0; k < photographs.size(); ++k) {
    const FitPhotograph& photograph = photographs[k];
    Vector3 flatMean{1.0, 1.0, 1.0};
    if (photograph.flatField) {
      flatMean = {};
      for (const Vector3& flat : *photograph.flatField)
        for (std::size_t c = 0; c < 3; ++c) flatMean[c] += flat[c] / kPatchCount;
    }
    for (std::size_t i = 0; i < kPatchCount; ++i) {
      FitSample sample{i, k, photograph.rgb[i]};
      for (std::size_t c = 0; c < 3; ++c) {
        if (!setup.table.empty()) sample.measured[c] = tableLight(setup.table, sample.measured[c]);
        if (options.toneCurve == FitToneCurve::blackWhite)
          sample.encoded[c] = sRGBEncode(sample.measured[c]);
        if (photograph.flatField) sample.flat[c] = (*photograph.flatField)[i][c] / flatMean[c];
      }
      if (takesPart(photograph, i, leftOut))
        sample.weight = photograph.weight * options.patchWeights[i];
      sum += sample.weight;
      setup.samples.push_back(sample);
    }
  }
  for (FitSample& sample : setup.samples) sample.weight /= sum;
}

// The stated rule, on the light of the patches summed over the photographs in which they count, by
// the photographs' weights.
void FitContext::setGains(std::span<const FitPhotograph> photographs, const PatchMask& leftOut,
                          const FitState* before, FitSetup& setup) const {
  CDoubleMatrix sum(kPatchCount, 3);
  std::vector<std::int32_t> patches;
  Vector3 total{};
  for (const int patch : options.whitePatches)
    for (std::size_t k = 0; k < photographs.size(); ++k) {
      const auto i = static_cast<std::size_t>(patch);
      if (!takesPart(photographs[k], i, leftOut)) continue;
      if (patches.empty() || patches.back() != patch) patches.push_back(patch);
      for (std::size_t c = 0; c < 3; ++c) {
        const double light = photographs[k].weight * lightOf(setup, k, i, c);
        sum[patch][c] += light;
        total[c] += light;
      }
    }
  if (patches.empty() && before) {
    setup.start.gains = before->gains;
    return;
  }
  if (patches.empty() && !options.whitePatches.empty())
    throw std::invalid_argument(
        "every patch for white balance is clipped; choose others of patches 19 to 22");
  for (std::size_t c = 0; c < 3 && !patches.empty(); ++c)
    if (!(total[c] > 0.0))
      throw std::invalid_argument(std::string("white balance: the patches hold no light in ") +
                                  "RGB"[c] + "; choose others of patches 19 to 22");
  const CDoubleMatrix gains = M_white_balance(sum, patches);
  setup.start.gains = {gains[0][0], gains[1][1], gains[2][2]};
}

double FitContext::exposureOf(const FitPhotograph& photograph, std::size_t number,
                              const PatchMask& leftOut, const FitState* before,
                              const FitSetup& setup) const {
  if (options.exposure == FitExposure::number) return options.exposureGain;
  const auto patch = std::find_if(std::begin(kExposurePatches), std::end(kExposurePatches),
                                  [&](std::size_t i) { return takesPart(photograph, i, leftOut); });
  if (patch == std::end(kExposurePatches)) {
    if (before) return before->exposure[number];
    throw std::invalid_argument("patches 19 to 22 of photograph " + std::to_string(number + 1) +
                                " are clipped, so there is none to set the exposure gain by");
  }
  const double green = lightOf(setup, number, *patch, 1);
  if (!(green > 0.0))
    throw std::invalid_argument("patch " + std::to_string(*patch + 1) + " of photograph " +
                                std::to_string(number + 1) +
                                " holds no light in G; the exposure gain is set by it");
  const double gain = exposureGain(input.referenceLab[*patch][0], greenGamma_, green);
  return options.exposure == FitExposure::stated ? gain : gain / setup.start.gains[1];
}

}  // namespace greycard
