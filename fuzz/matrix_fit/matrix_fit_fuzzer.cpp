// Charts and options of any values: they may be refused by an exception that says why, but a fit
// must end, and what it leaves must be finite.

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <span>
#include <stdexcept>

#include "colour_space.h"
#include "greycard/diagnostics.h"
#include "greycard/errors.h"
#include "greycard/matrix_fit.h"

namespace {

using namespace greycard;

constexpr std::size_t kRecord = 1 + sizeof(double);
constexpr std::size_t kMostRecords = 64;

// A chart that can be fitted, so that a few changed values reach all of the code.
MatrixFitSamples plainChart() {
  MacbethChartData chart;
  chart.LoadMCCCIELAB(illum_D65);
  MatrixFitSamples samples;
  samples.referenceLab = chart.m_RefLab;
  FitPhotograph& photograph = samples.photographs.emplace_back();
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    Vector3 xyz = CIELab_to_XYZ(chart.m_RefLab[i]);
    for (double& value : xyz) value *= 0.005;
    const Vector3 rgb = multiply(kXyzToSRgb, xyz);
    photograph.rgb[i] = {0.5 * rgb[0] + 0.1 * rgb[1], 0.2 * rgb[0] + 0.7 * rgb[1],
                         0.1 * rgb[1] + 0.6 * rgb[2]};
    photograph.noise[i] = {0.001, 0.002, 0.001};
  }
  return samples;
}

void choose(FitOptions& options, MatrixFitSamples& samples, std::size_t which,
            std::uint32_t number) {
  FitPhotograph& photograph = samples.photographs[0];
  const auto small = static_cast<std::int32_t>(number % 8);
  switch (which) {
    case 0:
      options.difference = static_cast<FitDifference>(small);
      break;
    case 1:
      options.entries = static_cast<FitEntries>(small % 2 ? 6 : 9);
      break;
    case 2:
      options.exposure = static_cast<FitExposure>(small);
      break;
    case 3:
      options.whiteBalance = static_cast<FitWhiteBalance>(small);
      break;
    case 4:
      options.toneCurve = static_cast<FitToneCurve>(small);
      break;
    case 5:
      options.light = static_cast<FitLight>(small);
      break;
    case 6:
      options.tradeOffSteps = small;
      break;
    case 7:
      photograph.clipped[number % kPatchCount] = true;
      break;
    case 8:
      options.whitePatches = {static_cast<int>(number % 30)};
      break;
    case 9:
      options.cameraGamma.fill(std::vector<std::int32_t>(256, small));
      for (auto& table : options.cameraGamma) table[number / 8 % 256] = 16000;
      break;
    case 10:
      photograph.flatField = photograph.rgb;
      break;
    default:
      if (samples.photographs.size() < 3) samples.photographs.push_back(photograph);
  }
}

// A record is a byte that says which number, and the number.
void change(FitOptions& options, MatrixFitSamples& samples, std::uint8_t which, double value) {
  FitPhotograph& photograph = samples.photographs[0];
  if (which < 216) {
    PatchTable* const tables[] = {&photograph.rgb, &photograph.noise, &samples.referenceLab};
    (*tables[which / 72])[which % 72 / 3][which % 3] = value;
    return;
  }
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  const std::size_t index = which - 216U;
  double* const numbers[] = {&options.norm,
                             &options.exposureGain,
                             &options.rowNoiseLimits[0],
                             &options.rowNoiseLimits[2],
                             &options.patchWeights[bits % kPatchCount],
                             &photograph.weight,
                             &options.rgbToXyz[bits % 3][bits / 3 % 3]};
  if (index < std::size(numbers))
    *numbers[index] = value;
  else if (index < 12)
    options.givenCurve.push_back(value);
  else
    choose(options, samples, index - 12, static_cast<std::uint32_t>(bits & 0xffffffffU));
}

bool finite(std::span<const Vector3> rows) {
  for (const Vector3& row : rows)
    for (const double value : row)
      if (!std::isfinite(value)) return false;
  return true;
}

bool finite(const MatrixFitResult& result) {
  if (!finite(result.matrix) || !finite({&result.gains, 1})) return false;
  for (const FittedPhotograph& photograph : result.photographs)
    if (!finite(photograph.lab) || !std::isfinite(photograph.exposure)) return false;
  return std::isfinite(result.figures.objective) && std::isfinite(result.figures.mean2000);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size > kMostRecords * kRecord) return 0;
  setErrorChannel({});
  static const MatrixFitSamples plain = plainChart();
  MatrixFitSamples samples = plain;
  FitOptions options;
  for (; size >= kRecord; data += kRecord, size -= kRecord) {
    double value = 0.0;
    std::memcpy(&value, data + 1, sizeof value);
    change(options, samples, *data, value);
  }
  try {
    const auto result = MatrixFit(options).fit(samples);
    if (!result || !finite(*result)) std::abort();
  } catch (const std::invalid_argument&) {
  } catch (const NumericError&) {
  }
  return 0;
}
