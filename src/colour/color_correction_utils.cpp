#include "greycard/color_correction_utils.h"

#include <stdexcept>

#include "color_matrix_opt.h"
#include "colour_space.h"
#include "delta_e_color_calc.h"
#include "fit_input_check.h"
#include "forward_model.h"
#include "matrix3.h"

namespace greycard {
namespace {

constexpr std::int32_t kWideGamut = 2;  // transform type
// Linear BT.709 to BT.2020 primaries (Rec. ITU-R BT.2087), to four decimals. The rows sum to 1, so
// a product's do too.
constexpr Matrix3 kSRgbToWide{
    {{0.6274, 0.3293, 0.0433}, {0.0691, 0.9195, 0.0114}, {0.0164, 0.088, 0.8956}}};

OptimLight lightOf(Illum illum) {
  switch (illum) {
    case illum_A:
      return OptimLight::A;
    case illum_TL84:
    case illum_CoolWhite:
      return OptimLight::TL84;
    case illum_D50:
      return OptimLight::D50;
    case illum_Horizon:
      return OptimLight::Horizon;
    case illum_Lowlight:
      return OptimLight::Default;
    default:
      return OptimLight::D65;
  }
}

// Fills an optimiser in the order that its steps build on each other; returns the exposure gain.
double fill(ColorMatrixOpt& cm, const ColorCorrectionUtils& utils,
            const ColorCorrectionSettings& params) {
  checkFitInput(params, utils.m_nGammaTableR, utils.m_nGammaTableG, utils.m_nGammaTableB);
  utils.SetCMGamma(cm);
  cm.m_nTransformType = params.m_RGBtoXYZTransform;
  cm.m_RGB2XYZ = params.m_CustRGB2XYZ;
  cm.m_XYZ2sRGB = params.m_CustXYZ2sRGB;
  cm.m_kL = 1.25;
  cm.m_kC = 1.0;
  const ColorCorrectionAdvancedSettings& advanced = params.m_advanced;
  cm.m_adjustment = {advanced.m_fSat_all, advanced.m_fSat_R, advanced.m_fSat_G, advanced.m_fSat_B,
                     advanced.m_fHue_R,   advanced.m_fHue_G, advanced.m_fHue_B};
  cm.m_mode = params.m_nDeltaEMode == 0 ? OptimMode::Cie76 : OptimMode::Cie94;
  cm.m_fNoiseRate = params.m_fNoiseRate;
  cm.m_fSaturationTarget = params.m_fSaturation < 0.0 ? -1.0 : params.m_fSaturation - 1.0;
  cm.SetRGB(params.m_macbethData.m_RGB);
  cm.SetNoise(params.m_macbethData.m_Noise);
  cm.LoadRefLab(OptimLight::Default, params.m_macbethData.m_RefLab);
  cm.Normalize();
  cm.ColorMatrix_WB(whitePatches(advanced));
  if (params.m_exposure == FitExposure::balanced)
    cm.SetExposure(cm.m_gain / cm.m_whiteBalance[1][1]);
  if (params.m_exposure == FitExposure::number) cm.SetExposure(params.m_exposureGain);
  return cm.SetOptimLight(lightOf(params.m_illum));
}

ColorMatrixOpt& ownOptimiser(const ColorCorrectionUtils& utils) {
  if (!utils.m_pMatrixOp)
    throw std::invalid_argument("the colour-matrix optimiser was released by Dispose");
  return *utils.m_pMatrixOp;
}

}  // namespace

ColorCorrectionUtils::ColorCorrectionUtils() : m_pMatrixOp(std::make_unique<ColorMatrixOpt>()) {}
ColorCorrectionUtils::~ColorCorrectionUtils() = default;

void ColorCorrectionUtils::Dispose() {
  m_pMatrixOp.reset();
}

void ColorCorrectionUtils::SetGammaTable(std::span<const std::int32_t> GammaTableR,
                                         std::span<const std::int32_t> GammaTableG,
                                         std::span<const std::int32_t> GammaTableB) {
  m_nGammaTableR.assign(GammaTableR.begin(), GammaTableR.end());
  m_nGammaTableG.assign(GammaTableG.begin(), GammaTableG.end());
  m_nGammaTableB.assign(GammaTableB.begin(), GammaTableB.end());
}

void ColorCorrectionUtils::SetCMGamma(ColorMatrixOpt& cm) const {
  cm.SetGamma(m_nGammaTableR, m_nGammaTableG, m_nGammaTableB);
}

GammaCurvePtr ColorCorrectionUtils::GetGammaCurveForID(std::int32_t /*headerID*/) const {
  return m_gammaModel.GetCurrentCurve("VOutdoor");
}

void ColorCorrectionUtils::SetColorMatrixOptPravite(ColorMatrixOpt& cm,
                                                    const ColorCorrectionSettings& params,
                                                    std::int32_t /*ID*/) {
  m_gain = fill(cm, *this, params);
}

void ColorCorrectionUtils::SetColorMatrixOpt(ColorCorrectionUtils& opEx,
                                             const ColorCorrectionSettings& params,
                                             std::int32_t ID) {
  opEx.SetColorMatrixOptPravite(ownOptimiser(opEx), params, ID);
}

void ColorCorrectionUtils::Color_correction_3illum(ColorCorrectionUtils& opEx,
                                                   std::span<double, 3 * kPatchCount> pLab_cc) {
  M_color_correction_3illum(ownOptimiser(opEx), pLab_cc);
}

bool ColorCorrectionUtils::Optimize(const ColorCorrectionSettings& params,
                                    std::int32_t /*headerID*/, const ProgressCallback& progress) {
  ColorMatrixOpt cm;
  const double gain = fill(cm, *this, params);
  std::array<double, 3 * kPatchCount> lab;
  if (!M_color_correction_3illum(cm, lab, progress)) return false;

  m_ccm = cm.m_nTransformType == kWideGamut ? product(kSRgbToWide, cm.m_ccm) : cm.m_ccm;
  for (std::size_t i = 0; i < kPatchCount; ++i)
    m_macbethLab[i] = {lab[3 * i], lab[3 * i + 1], lab[3 * i + 2]};
  for (std::size_t c = 0; c < 3; ++c) m_wbGain[c] = cm.m_whiteBalance[c][c];
  m_gain = gain;
  m_fit = std::move(cm.m_fit);
  return true;
}

PatchTable ColorCorrectionUtils::ShownLab(const PatchTable& balancedRgb, const Matrix3& ccm) const {
  ColorMatrixOpt cm;
  SetCMGamma(cm);
  const ForwardModel model(balancedRgb, GammaStage(cm.normalisedGamma()), kRgbToXyz,
                           rgbToXyz100(kRgbToXyz, {1.0, 1.0, 1.0}));
  ModelColours colours;
  model.evaluate(ccm, colours);
  return labTable(colours);
}

void ColorCorrectionUtils::CalculateDeltaE(const MacbethChartData& pMacbethData) {
  m_macbethLab = evaluateMeasuredChart(pMacbethData);
}

ColorPipeline ColorCorrectionUtils::Pipeline() const {
  ColorMatrixOpt cm;
  SetCMGamma(cm);
  ColorPipeline pipeline;
  pipeline.m_ccm = m_ccm;
  for (std::size_t c = 0; c < 3; ++c) pipeline.m_gains[c] = m_gain * m_wbGain[c];
  const std::array<CameraCurve, 3> gamma = cm.normalisedGamma();
  for (std::size_t c = 0; c < 3; ++c) pipeline.m_gamma[c].assign(gamma[c].begin(), gamma[c].end());
  return pipeline;
}

}  // namespace greycard
