#include "greycard/jobs/fit_chart_best.h"

#include <algorithm>
#include <cstddef>
#include <stdexcept>
#include <utility>

#include "greycard/errors.h"
#include "greycard/files.h"
#include "greycard/number_text.h"
#include "greycard/picture_correction.h"
#include "sample_chart.h"

namespace greycard {
namespace {

constexpr double kStatedShare = 0.3;  // of the progress

// The flat field where the patches of the photograph are.
PatchTable flatFieldAt(const ChartPhotograph& photograph, const LocatedChart& located,
                       const SampleMeaning& samples) {
  const Picture& flat = *photograph.flatField;
  const Picture& picture = photograph.picture;
  if (flat.width != picture.width || flat.height != picture.height)
    throw JobError("the flat field has " + std::to_string(flat.width) + " x " +
                   std::to_string(flat.height) + " pixels and the photograph " +
                   std::to_string(picture.width) + " x " + std::to_string(picture.height) +
                   "; take both with the same camera, unmoved");
  MacbethChartData chart;
  const SamplingReport report =
      sampleChart(chart, flat, located,
                  sampleLevels(flat, photograph.flatFieldSamples.value_or(samples)))
          .report;
  if (const auto clipped = report.clippedPatches(); !clipped.empty())
    throw JobError("the flat field clips at patches " + patchList(clipped) + "; expose it less");
  return chart.m_RGB;
}

FitPhotograph samplesOf(const ChartFit& stated, const ChartPhotograph& photograph,
                        const SampleMeaning& meaning) {
  MacbethChartData chart;
  chart.m_RGB = stated.measuredRgb;
  chart.m_Noise = stated.measuredNoise;
  FitPhotograph samples(chart, stated.sampling);
  samples.weight = photograph.weight;
  if (photograph.flatField) samples.flatField = flatFieldAt(photograph, stated.chart, meaning);
  return samples;
}

// Of where the charts were found, and of the fit.
std::vector<std::string> bestWarnings(const BestChartFit& fit,
                                      std::span<const ChartPhotograph> photographs) {
  std::vector<std::string> warnings;
  for (const ChartPhotograph& photograph : photographs)
    warnings.insert(warnings.end(), photograph.warnings.begin(), photograph.warnings.end());
  for (const ChartFit& stated : fit.stated)
    for (const std::string& warning : stated.chart.warnings())
      warnings.push_back(fit.stated.size() > 1 ? quoted(stated.photo) + ": " + warning : warning);
  warnings.insert(warnings.end(), fit.best.notes.begin(), fit.best.notes.end());
  return warnings;
}

}  // namespace

ChartPhotograph chartPhotograph(Photograph photograph, double weight,
                                const std::optional<Photograph>& flatField) {
  ChartPhotograph result{std::move(photograph.picture), std::move(photograph.file), weight};
  result.samples = photograph.samples;
  result.capture = std::move(photograph.capture);
  result.warnings = std::move(photograph.warnings);
  if (!flatField) return result;
  result.flatField = flatField->picture;
  result.flatFieldSamples = flatField->samples;
  result.warnings.insert(result.warnings.end(), flatField->warnings.begin(),
                         flatField->warnings.end());
  return result;
}

ChartFit BestChartFit::shown(std::size_t photograph) const {
  const FittedPhotograph& fitted = best.photographs.at(photograph);
  ChartFit view = stated.at(photograph);
  view.matrix = best.matrix;
  view.whiteBalance = best.gains;
  view.exposure = fitted.exposure;
  view.fit.m_balancedRGB = lightRgb(photograph);
  for (Vector3& rgb : view.fit.m_balancedRGB)
    for (std::size_t c = 0; c < 3; ++c) rgb[c] *= view.exposure * view.whiteBalance[c];
  view.fit.m_uncorrectedLab =
      view.shownLab(view.fit.m_balancedRGB, {{{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}}});
  view.before = colourErrors(view.fit.m_targetLab, view.fit.m_uncorrectedLab);
  view.correctedLab = fitted.lab;
  view.after = colourErrors(view.fit.m_targetLab, view.correctedLab);
  view.warnings = warnings;
  return view;
}

PatchTable BestChartFit::lightRgb(std::size_t photograph) const {
  PatchTable light = stated.at(photograph).measuredRgb;
  if (best.toneCurve.empty()) return light;
  for (Vector3& rgb : light)
    for (double& value : rgb) value = curveLight(best.toneCurve, value);
  return light;
}

std::optional<BestChartFit> fitChartBest(std::span<const ChartPhotograph> photographs,
                                         const BestFitOptions& options,
                                         const ProgressCallback& progress) {
  if (photographs.empty()) throw std::invalid_argument("there is no photograph to fit");
  BestChartFit result;
  result.options = options.best;
  const CameraGamma gamma = cameraGamma(options.chart.gamma);
  result.options.follow(options.chart.settings(), gamma.in14Bits());
  const MatrixFit fit(result.options);

  MatrixFitSamples samples;
  const auto count = static_cast<double>(photographs.size());
  for (std::size_t k = 0; k < photographs.size(); ++k) {
    const ProgressCallback part = [&](double done) {
      return !progress || progress(kStatedShare * (static_cast<double>(k) + done) / count);
    };
    const ChartPhotograph& photograph = photographs[k];
    ChartFitOptions chart = options.chart;
    chart.locate.samples = photograph.samples.value_or(chart.locate.samples);
    auto stated = fitChart(photograph.picture, chart, photograph.photo, part);
    if (!stated) return std::nullopt;
    stated->capture = photograph.capture;
    samples.photographs.push_back(samplesOf(*stated, photograph, options.chart.locate.samples));
    result.stated.push_back(std::move(*stated));
  }
  samples.referenceLab = result.stated.front().fit.m_targetLab;
  auto best = fit.fit(samples, [&](double done) {
    return !progress || progress(kStatedShare + (1.0 - kStatedShare) * done);
  });
  if (!best) return std::nullopt;
  result.best = std::move(*best);
  result.warnings = bestWarnings(result, photographs);
  return result;
}

Picture correctedPhotograph(const Picture& picture, const BestChartFit& fit, std::size_t photograph,
                            const SampleMeaning& samples) {
  const ColorPipeline pipeline = fit.shown(photograph).pipeline();
  return correctPicture(picture, sampleLevels(picture, samples), pipeline.m_gains, pipeline.m_ccm,
                        ToneCurves{pipeline.m_gamma[0], pipeline.m_gamma[1], pipeline.m_gamma[2]},
                        fit.best.toneCurve);
}

std::array<double, kPatchCount> readPatchWeights(const std::filesystem::path& file) {
  std::vector<double> numbers;
  try {
    numbers = finiteNumbers(readWholeFile(file));
  } catch (const std::invalid_argument& error) {
    throw JobError(quoted(file) + " holds no patch weights: " + error.what());
  }
  if (numbers.size() != kPatchCount || std::ranges::any_of(numbers, [](double w) { return w < 0; }))
    throw JobError(quoted(file) + " holds no patch weights, which are 24 numbers of 0 or above");
  std::array<double, kPatchCount> weights;
  std::ranges::copy(numbers, weights.begin());
  return weights;
}

}  // namespace greycard
