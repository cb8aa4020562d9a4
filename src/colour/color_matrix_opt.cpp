#include "color_matrix_opt.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "color_calc.h"
#include "colour_space.h"
#include "exposure_gain.h"
#include "forward_model.h"
#include "matrix_functions.h"
#include "powell.h"
#include "saturation_search.h"
#include "table_conversion.h"
#include "white_balance.h"

namespace greycard {
namespace {

constexpr double kGammaDivisor = 62.4;
constexpr std::size_t kExposurePatch = 19;  // chart patch 20
constexpr double kNoSearchBelow = -0.1;     // saturation targets

// Least squares in linear RGB: M0 = transpose(pinv(balanced) * target RGB).
Matrix3 startMatrix(const ColorCalc& set, const PatchTable& balancedRgb) {
  const CDoubleMatrix targetRgb =
      mmABt(MatrixMultiply(toMatrix(set.targetXyz()), 0.01), toMatrix(set.xyzToRgb()));
  return toMatrix3(MatrixTranspose(MatrixMultiply(pinv(toMatrix(balancedRgb)), targetRgb)));
}

// L*a*b* with neither clipping nor gamma.
PatchTable linearLab(const ColorCalc& set, const PatchTable& balancedRgb, const Matrix3& ccm) {
  PatchTable lab;
  for (std::size_t i = 0; i < kPatchCount; ++i)
    lab[i] =
        XYZ_to_CIELab(rgbToXyz100(set.rgbToXyz(), multiply(ccm, balancedRgb[i])), set.whitePoint());
  return lab;
}

PatchTable labOf(const ForwardModel& model, const Matrix3& ccm) {
  ModelColours colours;
  model.evaluate(ccm, colours);
  return labTable(colours);
}

std::optional<MatrixSearchResult> findMatrix(MatrixCost& cost, const MatrixParameters& start,
                                             double wanted, const ProgressCallback& progress) {
  if (wanted < kNoSearchBelow) {
    if (progress && !progress(0.0)) return std::nullopt;
    const PowellResult result = powell(cost, start, kMatrixPowell);
    MatrixSearchResult found{
        .stop = result.stop, .powellRuns = 1, .evaluations = result.evaluations};
    std::copy(result.point.begin(), result.point.end(), found.parameters.begin());
    return found;
  }
  if (!std::isfinite(cost.chromaChange(start)))
    throw std::invalid_argument(
        "the target has no chroma, so there is no saturation to search for; check the reference "
        "L*a*b* and the saturation factors, or switch the saturation search off");
  return SaturationSearch(cost, wanted, progress).run(start);
}

ForwardModel makeModel(const ColorMatrixOpt& cm, const ColorCalc& set) {
  std::optional<GammaStage> gamma;
  if (cm.m_bGammaSet) gamma.emplace(cm.normalisedGamma());
  return ForwardModel(cm.m_balancedRGB, std::move(gamma), set.rgbToXyz(), set.whitePoint());
}

// The part of the report that the search itself gives; `cost` at its neutral settings.
ColorFitReport reportOf(const ColorMatrixOpt& cm, const MatrixSearchResult& found,
                        const MatrixCost& cost) {
  ColorFitReport fit;
  fit.m_balancedRGB = cm.m_balancedRGB;
  fit.m_lastCost = cost(found.parameters);
  fit.m_powellRuns = found.powellRuns;
  fit.m_evaluations = found.evaluations;
  fit.m_stopReason = describe(found.stop);
  const double change = cost.chromaChange(found.parameters);
  if (std::isfinite(change)) fit.m_chromaChange = change;
  if (!(cm.m_fSaturationTarget < kNoSearchBelow)) fit.m_chromaChangeWanted = cm.m_fSaturationTarget;
  fit.m_hueWeight = found.hueWeight;
  fit.m_saturationPressure = found.saturationPressure;
  return fit;
}

}  // namespace

CostSetup costSetup(const ColorMatrixOpt& cm, const ColorCalc& set, const PatchTable& target,
                    double noiseScale) {
  const Matrix3& wb = cm.m_whiteBalance;
  return {.targetLab = target,
          .patchWeights = cm.m_patchWeights,
          .noise = cm.m_Noise,
          .gains = {wb[0][0], wb[1][1], wb[2][2]},
          .rgbToXyz = set.rgbToXyz(),
          .white = set.whitePoint(),
          .mode = cm.m_mode,
          .kL = cm.m_kL,
          .kC = cm.m_kC,
          .noiseRate = cm.m_fNoiseRate,
          .noiseScale = noiseScale};
}

Illum illumOf(OptimLight light) {
  switch (light) {
    case OptimLight::A:
      return illum_A;
    case OptimLight::TL84:
      return illum_TL84;
    case OptimLight::D50:
      return illum_D50;
    case OptimLight::Horizon:
      return illum_Horizon;
    default:
      return illum_D65;
  }
}

ColorMatrixOpt::ColorMatrixOpt() : m_ccm(kIdentity3) {
  m_RGB.fill({1.0, 1.0, 1.0});
  m_Noise = m_RefLab = m_balancedRGB = m_RGB;
  m_patchWeights.fill(1.0);
}

void ColorMatrixOpt::SetGamma(std::span<const std::int32_t> tableR,
                              std::span<const std::int32_t> tableG,
                              std::span<const std::int32_t> tableB) {
  const std::span<const std::int32_t> tables[] = {tableR, tableG, tableB};
  for (std::size_t c = 0; c < 3; ++c)
    if (tables[c].size() < kGammaPoints)
      throw std::invalid_argument(std::string("gamma table ") + "RGB"[c] + " has " +
                                  std::to_string(tables[c].size()) + " entries; 256 are needed");
  for (std::size_t c = 0; c < 3; ++c)
    for (std::size_t i = 0; i < kGammaPoints; ++i) m_gamma[c][i] = tables[c][i] / kGammaDivisor;
  m_bGammaSet = true;
}

void ColorMatrixOpt::LoadRefLab(OptimLight /*light*/, const PatchTable& lab) {
  m_RefLab = lab;
}

std::array<CameraCurve, 3> ColorMatrixOpt::normalisedGamma() const {
  std::array<CameraCurve, 3> curves = m_gamma;
  for (CameraCurve& curve : curves)
    for (double& value : curve) value /= 255.0;
  return curves;
}

void ColorMatrixOpt::Normalize() {
  if (!m_bGammaSet)
    throw std::invalid_argument("the gamma tables are not set: call SetGammaTable first");
  m_gain =
      exposureGain(m_RefLab[kExposurePatch][0], normalisedGamma()[1], m_RGB[kExposurePatch][1]);
  for (Vector3& rgb : m_RGB)
    for (double& value : rgb) value *= m_gain;
}

void ColorMatrixOpt::ColorMatrix_WB(const std::vector<std::int32_t>& patches) {
  const CDoubleMatrix measured = toMatrix(m_RGB);
  const CDoubleMatrix gains = M_white_balance(measured, patches);
  m_balancedRGB = toPatchTable(mmABt(measured, gains));
  m_whiteBalance = toMatrix3(gains);
}

void ColorMatrixOpt::SetExposure(double gain) {
  const double factor = gain / m_gain;
  m_gain = gain;
  for (PatchTable* table : {&m_RGB, &m_balancedRGB})
    for (Vector3& rgb : *table)
      for (double& value : rgb) value *= factor;
}

double ColorMatrixOpt::SetOptimLight(OptimLight light) {
  m_light = light;
  return m_gain;
}

bool M_color_correction_3illum(ColorMatrixOpt& cm, std::span<double, 3 * kPatchCount> pLab_cc,
                               const ProgressCallback& progress) {
  const ColorCalc set(illumOf(cm.m_light), cm.m_nTransformType, cm.m_RGB2XYZ, cm.m_XYZ2sRGB);
  const PatchTable target = prepareTarget(set.targetLab(), cm.m_RefLab, cm.m_adjustment);
  const Matrix3 start = startMatrix(set, cm.m_balancedRGB);
  const double startError =
      meanCie76(linearLab(set, cm.m_balancedRGB, start), target, cm.m_patchWeights);
  const ForwardModel model = makeModel(cm, set);
  MatrixCost cost(model, costSetup(cm, set, target, startError));

  const MatrixParameters first = parametersFromMatrix(start);
  const auto found = findMatrix(cost, first, cm.m_fSaturationTarget, progress);
  if (!found || (progress && !progress(1.0))) return false;
  const double lastHueWeight = std::exchange(cost.hueWeight, 1.0);
  cost.saturationPressure = 0.0;

  const Matrix3 ccm = matrixFromParameters(found->parameters);
  const PatchTable corrected = labOf(model, ccm);
  ColorFitReport fit = reportOf(cm, *found, cost);
  fit.m_uncorrectedLab = labOf(model, kIdentity3);
  fit.m_targetLab = target;
  fit.m_startError = startError;
  fit.m_firstCost = cost(first);

  cm.m_kH = lastHueWeight;
  cm.m_ccm = ccm;
  cm.m_fit = std::move(fit);
  for (std::size_t i = 0; i < kPatchCount; ++i)
    std::copy_n(corrected[i].begin(), 3, pLab_cc.begin() + static_cast<std::ptrdiff_t>(3 * i));
  return true;
}

}  // namespace greycard
