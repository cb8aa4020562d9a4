// How near the stated matrix search comes to the lowest cost known, on simulated cameras: the
// tables of docs/matrix_fit.md. Usage: search_study [runs] [seed]. Prints the mean excess over the
// lowest cost that many searches from many starts found, for a grid of settings, on the family of
// cameras and lights that they are chosen on and on another.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <memory>
#include <random>
#include <vector>

#include "color_calc.h"
#include "color_matrix_opt.h"
#include "forward_model.h"
#include "greycard/diagnostics.h"
#include "greycard/errors.h"
#include "matrix_cost.h"
#include "matrix_functions.h"
#include "powell.h"
#include "saturation_search.h"
#include "spectral_tables.h"
#include "srgb_transfer.h"
#include "table_conversion.h"

namespace {

using namespace greycard;

/// Equal on every machine, unlike the distributions of the standard library.
class Random {
 public:
  explicit Random(std::uint64_t seed) : engine_(seed) {}
  double between(double lo, double hi) {
    return lo + (hi - lo) * static_cast<double>(engine_() >> 11) * 0x1.0p-53;
  }
  template <class T, std::size_t n>
  T oneOf(const T (&values)[n]) {
    return values[static_cast<std::size_t>(between(0.0, static_cast<double>(n)))];
  }

 private:
  std::mt19937_64 engine_;
};

/// Columns of the fluorescent table (0..11), a Planckian radiator, or a standard light.
struct Light {
  Illum illum = illum_D65;  // unless a column or a temperature says otherwise
  int fluorescent = -1;
  double kelvin = 0.0;
};

CDoubleMatrix spectrumOf(const Light& light, const CDoubleMatrix& gridNm) {
  if (light.fluorescent >= 0) return resample(kFluorescentTable, light.fluorescent, 1, gridNm);
  if (light.kelvin <= 0.0) return illuminantSpectrum(light.illum, gridNm);
  constexpr double kC2 = 1.4388e7;  // nm K
  CDoubleMatrix spectrum(gridNm.rows(), 1);
  for (std::int32_t i = 0; i < gridNm.rows(); ++i) {
    const double nm = gridNm[i][0];
    spectrum[i][0] = std::pow(560.0 / nm, 5.0) / (std::exp(kC2 / (nm * light.kelvin)) - 1.0);
  }
  return spectrum;
}

CDoubleMatrix sensitivities(Random& random, bool tried, const CDoubleMatrix& gridNm) {
  constexpr double kPeaks[] = {600.0, 540.0, 460.0}, kWidths[] = {35.0, 38.0, 28.0};
  constexpr double kLobes[] = {440.0, 620.0, 560.0};
  const double lobe = tried ? random.between(0.0, 0.12) : 0.0;
  CDoubleMatrix sensor(gridNm.rows(), 3);
  for (std::int32_t c = 0; c < 3; ++c) {
    const double peak = kPeaks[c] + (tried ? random.between(-20, 20) : random.between(-10, 10));
    const double width = tried ? random.between(18, 62) : kWidths[c] * random.between(0.7, 1.4);
    for (std::int32_t i = 0; i < gridNm.rows(); ++i) {
      const double z = (gridNm[i][0] - peak) / width, side = (gridNm[i][0] - kLobes[c]) / 30.0;
      sensor[i][c] = std::exp(-0.5 * z * z) + lobe * std::exp(-0.5 * side * side);
    }
  }
  return sensor;
}

std::vector<std::int32_t> gammaTable(Random& random, bool tried) {
  const bool srgb = random.between(0, 1) < 0.3;
  const double exponent = 1.0 / random.between(1.7, 2.6);
  const double shoulder = tried ? random.between(0.0, 0.35) : 0.0;  // towards a smooth step
  std::vector<std::int32_t> table(256);
  for (std::size_t i = 0; i < table.size(); ++i) {
    const double x = static_cast<double>(i) / 255.0;
    double encoded = srgb ? sRGBEncode(x) : std::pow(x, exponent);
    encoded += shoulder * (encoded * encoded * (3.0 - 2.0 * encoded) - encoded);
    table[i] = static_cast<std::int32_t>(std::lround(62.4 * 255.0 * encoded));
  }
  return table;
}

/// A camera's chart, ready for the search. `tried`: of the family that nothing was tuned on.
ColorMatrixOpt chartOf(Random& random, bool tried, OptimMode mode) {
  const Light tuning[] = {{illum_A}, {illum_D65}, {illum_TL84}, {illum_D50}};
  const Light other[] = {{illum_Horizon},       {illum_D65, 1},        {illum_D65, 3},
                         {illum_D65, 6},        {illum_D65, 7},        {illum_D65, 11},
                         {illum_D65, -1, 2700}, {illum_D65, -1, 4200}, {illum_D65, -1, 9000}};
  const Light light = tried ? random.oneOf(other) : random.oneOf(tuning);
  const CDoubleMatrix grid = wavelengthGrid();
  CDoubleMatrix stimulus = sensitivities(random, tried, grid);
  const CDoubleMatrix spectrum = spectrumOf(light, grid);
  for (std::int32_t i = 0; i < grid.rows(); ++i)
    for (std::int32_t c = 0; c < 3; ++c) stimulus[i][c] *= spectrum[i][0];
  const CDoubleMatrix rgb = MatrixMultiply(MatrixTranspose(chartReflectances(grid)), stimulus);
  const double scale = (tried ? random.between(0.2, 0.95) : random.between(0.35, 0.8)) /
                       std::max({rgb[18][0], rgb[18][1], rgb[18][2]});
  const double shot = random.between(0.002, 0.03), read = random.between(0.0005, 0.004);
  PatchTable measured, noise;
  for (std::size_t i = 0; i < kPatchCount; ++i)
    for (std::size_t c = 0; c < 3; ++c) {
      const double exact = scale * rgb[static_cast<std::int32_t>(i)][c];
      noise[i][c] = shot * std::sqrt(exact) + read;
      measured[i][c] = std::max(0.0005, exact + noise[i][c] * random.between(-0.09, 0.09));
    }

  constexpr double kTuningRates[] = {0.0, 0.0, 0.1, 0.3};
  constexpr double kOtherRates[] = {0.0, 0.05, 0.2, 0.4, 0.6, 0.9};
  const OptimLight target = light.illum == illum_A         ? OptimLight::A
                            : light.illum == illum_TL84    ? OptimLight::TL84
                            : light.illum == illum_D50     ? OptimLight::D50
                            : light.illum == illum_Horizon ? OptimLight::Horizon
                                                           : OptimLight::D65;
  ColorMatrixOpt cm;
  const std::vector<std::int32_t> gamma = gammaTable(random, tried);
  cm.SetGamma(gamma, gamma, gamma);
  cm.m_kL = 1.25;
  cm.m_mode = mode;
  cm.m_fNoiseRate = tried ? random.oneOf(kOtherRates) : random.oneOf(kTuningRates);
  if (tried && random.between(0, 1) < 0.3) {
    TargetAdjustment& adjustment = cm.m_adjustment;
    adjustment.saturationAll = adjustment.saturationR = adjustment.saturationG =
        adjustment.saturationB = random.between(0.9, 1.25);
    adjustment.hueR = random.between(-8, 8);
  }
  cm.m_nTransformType = tried && random.between(0, 1) < 0.5 ? 1 : 0;
  cm.SetRGB(measured);
  cm.SetNoise(noise);
  cm.LoadRefLab(target, ColorCalc(illumOf(target), 0).targetLab());
  cm.Normalize();
  cm.ColorMatrix_WB({19, 20, 21});
  cm.SetOptimLight(target);
  return cm;
}

constexpr double kNoiseScale = 5.0;  // the colour error of a usual start

/// The cost and the start of the optimiser's search.
struct Problem {
  explicit Problem(const ColorMatrixOpt& cm)
      : set(illumOf(cm.m_light), cm.m_nTransformType),
        target(prepareTarget(set.targetLab(), cm.m_RefLab, cm.m_adjustment)),
        model(cm.m_balancedRGB, GammaStage(cm.normalisedGamma()), set.rgbToXyz(), set.whitePoint()),
        cost(model, costSetup(cm, set, target, kNoiseScale)) {
    const CDoubleMatrix rgb =
        mmABt(MatrixMultiply(toMatrix(set.targetXyz()), 0.01), toMatrix(set.xyzToRgb()));
    start = parametersFromMatrix(
        toMatrix3(MatrixTranspose(MatrixMultiply(pinv(toMatrix(cm.m_balancedRGB)), rgb))));
  }
  ColorCalc set;
  PatchTable target;
  ForwardModel model;
  MatrixCost cost;
  MatrixParameters start{};
};

/// The lowest cost that repeated searches reach, from the start, from points scattered around it
/// and around the best so far.
double lowestKnown(const Problem& problem, Random& random) {
  double best = std::numeric_limits<double>::infinity();
  MatrixParameters bestPoint = problem.start;
  const auto searchFrom = [&](MatrixParameters point, PowellOptions options) {
    options.tolerance = 1e-9;
    options.maxIterations = 1000;
    for (int repeat = 0; repeat < 12; ++repeat) {
      PowellResult result;
      try {
        result = powell(problem.cost, point, options);
      } catch (const NumericError&) {
        return;  // another start does better
      }
      std::copy(result.point.begin(), result.point.end(), point.begin());
      if (result.lastValue < best) {
        best = result.lastValue;
        bestPoint = point;
      }
      if (result.firstValue - result.lastValue < 1e-7 * result.firstValue) return;
    }
  };
  for (const double step : {0.2, 0.05, 0.5})
    for (const double shrink : {0.1, 0.5})
      searchFrom(problem.start,
                 {.initialStep = step, .lineTolerance = 0.01, .maxStepShrink = shrink});
  for (int k = 0; k < 12; ++k) {
    MatrixParameters point = k % 2 ? bestPoint : problem.start;
    for (double& entry : point) entry += random.between(-0.3, 0.3);
    searchFrom(
        point,
        {.initialStep = 0.2, .lineTolerance = 0.01, .maxStepShrink = 0.5, .smallestStep = 0.05});
  }
  return best;
}

/// How a search is run: its steps, and whether it is run a second time from where it ended.
struct Way {
  PowellOptions options = kMatrixPowell;
  bool again = false;
};

std::vector<Way> ways() {
  Way before;
  before.options.maxStepShrink = PowellOptions{}.maxStepShrink;
  before.options.smallestStep = PowellOptions{}.smallestStep;
  std::vector<Way> all{before, {before.options, true}};
  for (const double shrink : {0.3, 0.4, 0.5, 0.6, 0.7, 0.8})
    for (const double smallest : {0.05, 0.1, 0.2, 0.3, 0.5}) {
      Way way;
      way.options.maxStepShrink = shrink;
      way.options.smallestStep = smallest;
      all.push_back(way);
    }
  all.push_back({kMatrixPowell, true});
  return all;
}

struct End {
  double value = 0.0;
  int evaluations = 0;
};

End searched(const Problem& problem, const Way& way) {
  const PowellResult first = powell(problem.cost, problem.start, way.options);
  if (!way.again) return {first.lastValue, first.evaluations};
  const PowellResult second = powell(problem.cost, first.point, way.options);
  return {second.lastValue, first.evaluations + second.evaluations};
}

/// Of one way over all runs.
struct Figures {
  double excess = 0.0, evaluations = 0.0;  // means
  int above = 0;                           // more than 0.1 % above the lowest
};

std::vector<Figures> study(const std::vector<Way>& all, int runs, std::uint64_t seed, bool tried,
                           OptimMode mode) {
  std::vector<Figures> figures(all.size());
  std::vector<End> ends(all.size());
  Random random(seed);
  for (int run = 0; run < runs; ++run) {
    const auto problem = std::make_unique<Problem>(chartOf(random, tried, mode));
    double lowest = lowestKnown(*problem, random);
    for (std::size_t k = 0; k < all.size(); ++k) {
      ends[k] = searched(*problem, all[k]);
      lowest = std::min(lowest, ends[k].value);
    }
    for (std::size_t k = 0; k < all.size(); ++k) {
      const double excess = ends[k].value / lowest - 1.0;
      figures[k].excess += excess / runs;
      figures[k].evaluations += static_cast<double>(ends[k].evaluations) / runs;
      figures[k].above += excess > 1e-3 ? 1 : 0;
    }
  }
  return figures;
}

void table(int runs, std::uint64_t seed, bool tried) {
  const std::vector<Way> all = ways();
  const std::vector<Figures> figures[] = {study(all, runs, seed, tried, OptimMode::Cie94),
                                          study(all, runs, seed, tried, OptimMode::Cie76)};
  std::printf("\nFamily %s, %d runs of each cost\n\n", tried ? "tried on" : "chosen on", runs);
  std::puts(
      "| shrink | smallest | searches | CIE94: mean excess | above by 0.1 % | evaluations "
      "| CIE76: mean excess | above by 0.1 % | evaluations "
      "|\n|---|---|---|---|---|---|---|---|---|");
  for (std::size_t k = 0; k < all.size(); ++k) {
    const PowellOptions& options = all[k].options;
    const bool used = options.maxStepShrink == kMatrixPowell.maxStepShrink &&
                      options.smallestStep == kMatrixPowell.smallestStep && !all[k].again;
    std::printf("| %.2g | %.2g | %d%s |", options.maxStepShrink, options.smallestStep,
                all[k].again ? 2 : 1, used ? ", used" : "");
    for (const std::vector<Figures>& cost : figures)
      std::printf(" %.3f %% | %d | %.0f |", 100.0 * cost[k].excess, cost[k].above,
                  cost[k].evaluations);
    std::puts("");
  }
}

}  // namespace

int main(int argc, char** argv) {
  setErrorChannel({});
  const int runs = argc > 1 ? std::max(1, std::atoi(argv[1])) : 400;
  const std::uint64_t seed = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 1;
  for (const bool tried : {false, true}) table(runs, seed, tried);
  return 0;
}
