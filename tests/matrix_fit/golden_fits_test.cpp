// All that fits of nine kinds tell, as a text beside this file. Their figures are added up again
// here from the colours that they tell.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <initializer_list>
#include <span>
#include <string>
#include <vector>

#include "golden.h"
#include "greycard/colour_errors.h"
#include "greycard/delta_e.h"
#include "known_chart.h"
#include "srgb_transfer.h"

namespace greycard {
namespace {

std::string numbers(const std::string& name, std::span<const double> values) {
  return goldenLine("  " + name, values, 7);
}
std::string numbers(const std::string& name, std::initializer_list<double> values) {
  return numbers(name, std::span(values.begin(), values.size()));
}
std::string numbers(const std::string& name, const Matrix3& m) {
  return numbers(name, m[0]) + numbers(name, m[1]) + numbers(name, m[2]);
}
std::string numbers(const std::string& name, const FitFigures& f) {
  return numbers(name,
                 {f.objective, f.mean2000, f.rms2000, f.percentile95, f.max2000, f.meanLevelled,
                  f.mean76, f.mean94, f.meanCam16, f.meanL, f.meanC, f.meanH, f.metamerismIndex});
}

std::string told(const FittedPhotograph& photograph) {
  std::string text =
      numbers("exposure, light",
              {photograph.exposure, photograph.lightRange, photograph.light[3]}) +
      numbers("light", photograph.lightCoefficients) + numbers("L*a*b* of 14", photograph.lab[13]) +
      numbers("split of 2", photograph.split[1]) + numbers("figures", photograph.figures);
  for (const std::string& why : photograph.leftOut)
    if (!why.empty()) text += "  left out: " + why + "\n";
  if (photograph.stated) text += numbers("stated", *photograph.stated);
  return text + (photograph.statedRefusal.empty() ? "" : "  " + photograph.statedRefusal + "\n");
}

std::string told(const FitUncertainty& errors) {
  return numbers("errors of the matrix", errors.matrix) +
         numbers("errors of the gains", errors.gains) +
         numbers("errors of the curve", {errors.curve[0], errors.curve[1]}) +
         numbers("errors of the exposure", errors.exposure) +
         numbers("errors of the light", errors.lightRange) +
         numbers("errors of dE", {errors.dE2000[0][0], errors.dE2000[0][20]});
}

std::string told(const MatrixFitResult& result) {
  std::string text = numbers("matrix", result.matrix) + numbers("gains", result.gains) +
                     numbers("noise", result.rowNoise) +
                     numbers("condition", {result.conditionNumber});
  if (!result.toneCurve.empty())
    text +=
        numbers("curve", {result.curveNumbers[0], result.curveNumbers[1], result.toneCurve.front(),
                          result.toneCurve[4], result.toneCurve[result.toneCurve.size() / 2],
                          result.toneCurve.back()});
  if (result.greyResidual) text += numbers("greys", {*result.greyResidual});
  for (const FittedPhotograph& photograph : result.photographs) text += told(photograph);
  text += numbers("all", result.figures) + "  " + result.metamerismBasis + "\n";
  for (const auto& held : {result.leaveOneOut, result.sixFold})
    if (held) text += numbers("held out", {held->mean, held->percentile95});
  if (result.uncertainty) text += told(*result.uncertainty);
  for (const FitTradeOff& row : result.tradeOff)
    text += numbers("limit", {row.limit, row.rowNoise[0], row.rowNoise[1], row.rowNoise[2],
                              row.figures.objective, row.figures.mean2000});
  text += "  start " + std::to_string(result.bestStart) + " of " + std::to_string(result.starts) +
          ", " + std::to_string(result.evaluations) + " evaluations" +
          (result.converged ? "\n" : ", stopped\n");
  for (const std::string& note : result.notes) text += "  " + note + "\n";
  return text;
}

// Plain averages over the patches that took part, from the colours told.
void expectFiguresOf(const PatchTable& reference, const FittedPhotograph& photograph) {
  std::vector<double> all;
  double squares = 0.0, d76 = 0.0, d94 = 0.0, inColour76 = 0.0, inColour = 0.0;
  Vector3 split{};
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    if (!photograph.leftOut[i].empty()) continue;
    const Vector3 &aim = reference[i], &lab = photograph.lab[i];
    all.push_back(deltaE2000(aim, lab));
    squares += all.back() * all.back();
    const double distance = std::hypot(lab[0] - aim[0], lab[1] - aim[1], lab[2] - aim[2]);
    d76 += distance;
    d94 += deltaE94(aim, lab);
    if (i < 18) inColour76 += distance, inColour += 1.0;
    const double chroma = std::hypot(lab[1], lab[2]) - std::hypot(aim[1], aim[2]);
    split[0] += std::fabs(lab[0] - aim[0]);
    split[1] += std::fabs(chroma);
    split[2] += std::sqrt(std::max(
        0.0, distance * distance - chroma * chroma - (lab[0] - aim[0]) * (lab[0] - aim[0])));
  }
  std::sort(all.begin(), all.end());
  const auto count = static_cast<double>(all.size());
  double sum = 0.0;
  for (const double value : all) sum += value;
  const double place = 0.95 * (count - 1.0);
  const auto below = static_cast<std::size_t>(place);
  const FitFigures& figures = photograph.figures;
  const std::pair<double, double> pairs[] = {
      {figures.mean2000, sum / count},
      {figures.rms2000, std::sqrt(squares / count)},
      {figures.max2000, all.back()},
      {figures.percentile95,
       all[below] + (place - std::floor(place)) * (all[below + 1] - all[below])},
      {figures.mean76, d76 / count},
      {figures.mean94, d94 / count},
      {figures.meanL, split[0] / count},
      {figures.meanC, split[1] / count},
      {figures.meanH, split[2] / count},
      {figures.metamerismIndex, 100.0 - 5.5 * inColour76 / inColour}};
  for (const auto& [figure, again] : pairs) EXPECT_NEAR(figure, again, 1e-6);
}

// The chart as a model sensor sees it, noisy and the second time darker and in uneven light.
MatrixFitSamples noisySamples(ModelSensor sensor, Illum light, std::size_t photographs) {
  MatrixFitSamples samples = fixture::seenBy(sensor, light);
  samples.photographs.resize(photographs, samples.photographs.front());
  for (std::size_t k = 0; k < photographs; ++k)
    for (std::size_t i = 0; i < kPatchCount; ++i) {
      FitPhotograph& photograph = samples.photographs[k];
      photograph.pixels[i] = 400 + 10 * i;
      for (std::size_t c = 0; c < 3; ++c) {
        double& value = photograph.rgb[i][c];
        if (k > 0) value *= 0.7 * fixture::planeAt(i, 0.08, -0.05);
        // An error of each patch's own, of a hundredth at most.
        value *= 1.0 + 0.01 * std::sin(static_cast<double>(7 * i + 3 * c + 5 * k));
        photograph.noise[i][c] = 0.002 + 0.02 * value;
      }
    }
  return samples;
}

MatrixFitSamples throughCurve(MatrixFitSamples samples,
                              const std::function<double(double)>& curve) {
  for (FitPhotograph& photograph : samples.photographs)
    for (Vector3& rgb : photograph.rgb)
      for (double& value : rgb) value = curve(value);
  return samples;
}

struct GoldenCase {
  const char* name;
  FitOptions options;
  MatrixFitSamples samples;
};

std::vector<GoldenCase> goldenCases() {
  std::vector<GoldenCase> cases;
  const auto add = [&cases](const char* name, MatrixFitSamples samples) -> FitOptions& {
    cases.push_back({name, {}, std::move(samples)});
    return cases.back().options;
  };
  add("default", noisySamples(ModelSensor::Ordinary, illum_A, 1)).tradeOffSteps = 3;

  FitOptions& mean = add("mean, six", noisySamples(ModelSensor::Narrow, illum_TL84, 1));
  mean.norm = FitOptions::kMean;
  mean.difference = FitDifference::cie94;
  mean.entries = FitEntries::six;
  mean.patchWeights = patchWeights(PatchWeightPreset::skin);
  mean.exposure = FitExposure::free;

  FitOptions& soft = add("quiet rows", noisySamples(ModelSensor::Broad, illum_D65, 2));
  soft.norm = FitOptions::kSoftMaximum;
  soft.difference = FitDifference::cam16Ucs;
  soft.rowNoiseLimits = {1.6, 1.5, FitOptions::kUnlimited};
  soft.patchWeights = patchWeights(PatchWeightPreset::foliageAndSky);

  FitOptions& curved =
      add("power and offset, plane",
          throughCurve(noisySamples(ModelSensor::Ordinary, illum_D50, 2),
                       [](double x) { return std::pow(1.03 * x, 1.0 / 1.2) - 0.01; }));
  curved.toneCurve = FitToneCurve::powerOffset;
  curved.light = FitLight::plane;
  curved.exposure = FitExposure::stated;
  cases.back().samples.photographs[1].weight = 2.0;
  cases.back().samples.photographs[0].clipped[5] = true;

  FitOptions& levels =
      add("black and white", throughCurve(noisySamples(ModelSensor::Narrow, illum_D65, 1),
                                          [](double x) { return 0.02 + 0.9 * x; }));
  levels.toneCurve = FitToneCurve::blackWhite;
  levels.entries = FitEntries::six;
  levels.patchWeights = patchWeights(PatchWeightPreset::neutrals);

  FitOptions& greys = add("through the greys",
                          throughCurve(noisySamples(ModelSensor::Broad, illum_Horizon, 1),
                                       [](double x) { return std::sqrt(x) * (0.7 + 0.2 * x); }));
  greys.toneCurve = FitToneCurve::monotone;
  greys.difference = FitDifference::cie76;
  greys.exposure = FitExposure::number;
  greys.exposureGain = 1.1;

  FitOptions& field =
      add("given curve, field", noisySamples(ModelSensor::Ordinary, illum_CoolWhite, 1));
  field.toneCurve = FitToneCurve::given;
  for (int i = 0; i < 9; ++i) field.givenCurve.push_back(sRGBDecode(i / 8.0) * 0.9);
  field.light = FitLight::quadratic;
  field.exposure = FitExposure::free;
  cases.back().samples.photographs[0].flatField.emplace();
  for (std::size_t i = 0; i < kPatchCount; ++i)
    for (std::size_t c = 0; c < 3; ++c)
      (*cases.back().samples.photographs[0].flatField)[i][c] =
          0.5 * fixture::planeAt(i, 0.02, 0.01 * static_cast<double>(c));

  FitOptions& followed = add("settings", noisySamples(ModelSensor::Ordinary, illum_D65, 1));
  ColorCorrectionSettings settings(1, illum_D65, 1);
  settings.m_advanced.m_bWhitePatch19 = true;
  settings.m_advanced.m_bWhitePatch20 = false;
  settings.m_advanced.m_bWhitePatch21 = false;
  settings.m_advanced.m_bWhitePatch22 = true;
  std::vector<std::int32_t> table(256);
  for (std::size_t i = 0; i < table.size(); ++i)
    table[i] = static_cast<std::int32_t>(16383.0 * std::pow(static_cast<double>(i) / 255.0, 0.5));
  followed.follow(settings, {table, table, table});

  FitOptions& free =
      add("free gains, power", throughCurve(noisySamples(ModelSensor::Narrow, illum_A, 2),
                                            [](double x) { return std::pow(x, 1.0 / 0.8); }));
  free.toneCurve = FitToneCurve::power;
  free.whiteBalance = FitWhiteBalance::fitted;
  free.whitePatches = {18, 20};
  return cases;
}

TEST(GoldenFits, OfNineKinds) {
  std::string text;
  for (const GoldenCase& c : goldenCases()) {
    SCOPED_TRACE(c.name);
    const auto result = MatrixFit(c.options).fit(c.samples);
    for (const FittedPhotograph& photograph : result->photographs)
      expectFiguresOf(c.samples.referenceLab, photograph);
    text += std::string(c.name) + "\n" + told(*result);
  }
  expectGolden("matrix_fit/golden/fits.txt", text);
}

}  // namespace
}  // namespace greycard
