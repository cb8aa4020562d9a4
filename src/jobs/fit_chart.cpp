#include "greycard/jobs/fit_chart.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <stdexcept>
#include <tuple>
#include <utility>

#include "greycard/jobs/chart_samples.h"
#include "greycard/number_text.h"
#include "greycard/picture_correction.h"
#include "sample_chart.h"

namespace greycard {
namespace {

constexpr double kGreenLiftWorthTelling = 1.01;   // about 0.4 units of L* at the white patch
constexpr double kChromaMissWorthTelling = 0.05;  // what the search itself takes as reached
constexpr double kInverseTolerance = 1e-3;        // of matrices with four decimals

std::vector<int> beyondFullScale(const PatchTable& balancedRgb) {
  std::vector<int> patches;
  for (std::size_t i = 0; i < kPatchCount; ++i)
    if (std::ranges::any_of(balancedRgb[i], [](double value) { return value > 1.0; }))
      patches.push_back(static_cast<int>(i));
  return patches;
}

// The chroma factor of all patches counts only when the other three equal it, as the optimiser has
// it.
bool ignoresChromaOfAll(const std::array<double, 4>& factors) {
  return factors[0] != 1.0 &&
         std::ranges::any_of(factors, [&](double factor) { return factor != factors[0]; });
}

std::vector<std::string> fitWarnings(const ChartFit& result, const ChartFitOptions& options) {
  std::vector<std::string> warnings = result.chart.warnings();
  if (ignoresChromaOfAll(options.targetSaturation)) {
    const std::string all = general(options.targetSaturation[0], 6);
    warnings.push_back("the chroma factor " + all +
                       " for all patches has no effect: it counts only when those of the red, "
                       "green and blue patches equal it, as in " +
                       all + "," + all + "," + all + "," + all);
  }
  if (const auto clipped = result.sampling.clippedPatches(); !clipped.empty())
    warnings.push_back("clipped in the photograph: patches " + patchList(clipped) +
                       "; expose so that no channel reaches the ends of the scale");
  if (const auto beyond = beyondFullScale(result.fit.m_balancedRGB); !beyond.empty())
    warnings.push_back("the balanced picture exceeds full scale and is clipped there: patches " +
                       patchList(beyond));
  for (std::size_t c = 0; c < 3; ++c)
    if (std::ranges::all_of(result.measuredRgb, [c](const Vector3& rgb) { return rgb[c] == 0.0; }))
      warnings.push_back(std::string("channel ") + "RGB"[c] +
                         " is 0 in every patch, so this is no photograph in three colours");
  if (options.exposure == FitExposure::stated && result.whiteBalance[1] > kGreenLiftWorthTelling)
    warnings.push_back(
        "white balance raises green by " + fixed(100.0 * (result.whiteBalance[1] - 1.0), 1) +
        " % after the exposure gain was set, so the whole chart comes out lighter than "
        "its reference; an exposure gain of " +
        fixed(result.exposure / result.whiteBalance[1], 4) + " meets it (--exposure balanced)");
  const ColorFitReport& fit = result.fit;
  if (fit.m_chromaChangeWanted && fit.m_chromaChange &&
      std::abs(*fit.m_chromaChange - *fit.m_chromaChangeWanted) > kChromaMissWorthTelling)
    warnings.push_back("the saturation search ended at " + fixed(100.0 * *fit.m_chromaChange, 1) +
                       " % chroma against the target where " +
                       fixed(100.0 * *fit.m_chromaChangeWanted, 1) +
                       " % was wanted; try the other colour difference");
  const SampleEncoding encoding = result.levels.value_or(SampleLevels()).encoding;
  std::string row = greyRowWarning(
      neutralRow(fit.m_balancedRGB, fit.m_targetLab, encoding, result.sampling.clippedPatches()),
      encoding);
  if (!row.empty()) warnings.push_back(std::move(row));
  return warnings;
}

void takeSpace(const ChartFitOptions& options, ColorCorrectionSettings& settings) {
  const auto& [toXyz, toRgb] = std::tie(options.rgbToXyz, options.xyzToRgb);
  if (options.transform != 3 && (toXyz || toRgb))
    throw std::invalid_argument("matrices to XYZ and back are for transform 3");
  if (options.transform != 3) return;
  if (!toXyz || !toRgb)
    throw std::invalid_argument(
        "transform 3 is a space of your own: it needs its matrix to XYZ and the one back");
  for (std::size_t r = 0; r < 3; ++r)
    for (std::size_t c = 0; c < 3; ++c) {
      double there = 0.0;
      for (std::size_t i = 0; i < 3; ++i) there += (*toRgb)[r][i] * (*toXyz)[i][c];
      if (!(std::abs(there - (r == c ? 1.0 : 0.0)) <= kInverseTolerance))
        throw std::invalid_argument("the matrices to XYZ and back don't undo each other: row " +
                                    std::to_string(r + 1) + ", column " + std::to_string(c + 1) +
                                    " of their product is " + general(there, 6));
    }
  settings.m_CustRGB2XYZ = *toXyz;
  settings.m_CustXYZ2sRGB = *toRgb;
}

void setCurve(ColorCorrectionUtils& facade, const CameraGamma& gamma) {
  const CameraGamma::Tables curves = gamma.in14Bits();
  facade.SetGammaTable(curves[0], curves[1], curves[2]);
}

std::optional<ChartFit> fitSamples(const ChartSamples& samples, const ChartFitOptions& options,
                                   const CameraGamma& gamma, ColorCorrectionSettings settings,
                                   const ProgressCallback& progress) {
  ChartFit result;
  result.gamma = gamma;
  result.photo = samples.photo;
  result.light = options.light;
  result.formula = options.formula;
  result.chart = samples.chart;
  result.levels = samples.levels;
  result.sampling = samples.sampling;
  result.measuredMedian = samples.measuredMedian;
  result.unevenness = samples.unevenness;
  result.measuredRgb = settings.m_macbethData.m_RGB = samples.measuredRgb;
  result.measuredNoise = settings.m_macbethData.m_Noise = samples.measuredNoise;

  ColorCorrectionUtils facade;
  setCurve(facade, result.gamma);
  if (!facade.Optimize(settings, 0, progress)) return std::nullopt;
  result.matrix = facade.m_ccm;
  result.whiteBalance = facade.m_wbGain;
  result.exposure = facade.m_gain;
  result.correctedLab = facade.m_macbethLab;
  result.fit = facade.m_fit;
  result.before = colourErrors(result.fit.m_targetLab, result.fit.m_uncorrectedLab);
  result.after = colourErrors(result.fit.m_targetLab, result.correctedLab);
  result.warnings = fitWarnings(result, options);
  return result;
}

}  // namespace

const char* formulaName(FitFormula formula) {
  return formula == FitFormula::CIE76 ? "CIE76" : "CIE94";
}

ColorCorrectionSettings ChartFitOptions::settings() const {
  ColorCorrectionSettings settings(0, light, transform);
  settings.m_nDeltaEMode = formula == FitFormula::CIE76 ? 0 : 1;
  settings.m_fNoiseRate = noiseRate;
  if (saturation) settings.m_fSaturation = *saturation;

  ColorCorrectionAdvancedSettings& advanced = settings.m_advanced;
  advanced.m_fSat_all = targetSaturation[0];
  advanced.m_fSat_R = targetSaturation[1];
  advanced.m_fSat_G = targetSaturation[2];
  advanced.m_fSat_B = targetSaturation[3];
  advanced.m_fHue_R = targetHue[0];
  advanced.m_fHue_G = targetHue[1];
  advanced.m_fHue_B = targetHue[2];
  for (const int patch : whitePatches)
    if (patch < 19 || patch > 22)
      throw std::invalid_argument("white balance uses patches 19 to 22, not " +
                                  std::to_string(patch));
  const auto chosen = [this](int patch) {
    return std::ranges::find(whitePatches, patch) != whitePatches.end();
  };
  advanced.m_bWhitePatch19 = chosen(19);
  advanced.m_bWhitePatch20 = chosen(20);
  advanced.m_bWhitePatch21 = chosen(21);
  advanced.m_bWhitePatch22 = chosen(22);

  settings.m_exposure = exposure;
  settings.m_exposureGain = exposureGain;
  takeSpace(*this, settings);
  if (!referenceLab.empty() && !referenceSRgb.empty())
    throw std::invalid_argument("reference colours come from one file, not from two");
  if (!referenceLab.empty()) settings.m_macbethData.readReferenceLab(referenceLab);
  if (!referenceSRgb.empty()) settings.m_macbethData.readReferenceSRgb(referenceSRgb);
  return settings;
}

void checkOptions(const ChartFitOptions& options) {
  checkOptions(options.locate);
  cameraGamma(options.gamma);
  checkFitSettings(options.settings());
}

ColorPipeline ChartFit::pipeline() const {
  ColorCorrectionUtils facade;
  setCurve(facade, gamma);
  facade.m_ccm = matrix;
  facade.m_wbGain = whiteBalance;
  facade.m_gain = exposure;
  return facade.Pipeline();
}

PatchTable ChartFit::shownLab(const PatchTable& balancedRgb, const Matrix3& by) const {
  ColorCorrectionUtils facade;
  setCurve(facade, gamma);
  return facade.ShownLab(balancedRgb, by);
}

std::optional<ChartFit> fitChart(const Picture& picture, const ChartFitOptions& options,
                                 const std::filesystem::path& photo,
                                 const ProgressCallback& progress) {
  const CameraGamma gamma = cameraGamma(options.gamma);
  requireColours(picture, photo);
  const ColorCorrectionSettings settings = options.settings();
  const LocatedChart chart = locateChart(picture, options.locate, photo);
  const ChartSamples samples =
      sampleChart(picture, chart, sampleLevels(picture, options.locate.samples), photo);
  return fitSamples(samples, options, gamma, settings, progress);
}

std::optional<ChartFit> fitChart(const Photograph& photograph, ChartFitOptions options,
                                 const ProgressCallback& progress) {
  options.locate.samples = photograph.samples;
  auto fit = fitChart(photograph.picture, options, photograph.file, progress);
  if (!fit) return fit;
  fit->capture = photograph.capture;
  fit->warnings.insert(fit->warnings.begin(), photograph.warnings.begin(),
                       photograph.warnings.end());
  return fit;
}

std::optional<ChartFit> fitChart(const ChartSamples& samples, const ChartFitOptions& options,
                                 const ProgressCallback& progress) {
  auto fit = fitSamples(samples, options, cameraGamma(options.gamma), options.settings(), progress);
  if (!fit) return fit;
  fit->capture = samples.capture;
  fit->warnings.insert(fit->warnings.begin(), samples.warnings.begin(), samples.warnings.end());
  return fit;
}

Picture correctedPhotograph(const Picture& picture, const ChartFit& fit,
                            const SampleMeaning& samples) {
  const ColorPipeline pipeline = fit.pipeline();
  return correctPicture(picture, sampleLevels(picture, samples), pipeline.m_gains, pipeline.m_ccm,
                        ToneCurves{pipeline.m_gamma[0], pipeline.m_gamma[1], pipeline.m_gamma[2]});
}

}  // namespace greycard
