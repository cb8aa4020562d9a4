#include "delta_e_color_matrix_opt.h"

#include "exposure_gain.h"
#include "gamma_stage.h"
#include "matrix_functions.h"
#include "table_conversion.h"
#include "white_balance.h"

namespace greycard {
namespace {

constexpr std::int32_t kExposurePatch = 19;  // chart patch 20

}  // namespace

DeltaEColorMatrixOpt::DeltaEColorMatrixOpt() : ccm_(meye(3)) {
  for (Light& light : lights_) light.whiteBalance = meye(3);
}

void SetColorMatrixOpt(DeltaEColorMatrixOpt& cm, const MacbethChartData& macbethData) {
  for (auto& light : cm.lights_) {
    light.measuredRgb = toMatrix(macbethData.m_RGB);
    light.noise = toMatrix(macbethData.m_Noise);
    light.referenceLab = toMatrix(macbethData.m_RefLab);
  }
  cm.Normalize();
  const std::vector<std::int32_t> greys{19, 20, 21};  // chart patches 20 to 22
  cm.ColorMatrix_WB(greys, greys, greys);
}

void DeltaEColorMatrixOpt::Normalize() {
  for (Light& light : lights_)
    light.measuredRgb *= exposureGain(light.referenceLab[kExposurePatch][0], gammaGrid(),
                                      light.measuredRgb[kExposurePatch][1]);
}

void DeltaEColorMatrixOpt::ColorMatrix_WB(const std::vector<std::int32_t>& d65Patches,
                                          const std::vector<std::int32_t>& aPatches,
                                          const std::vector<std::int32_t>& tl84Patches) {
  const std::array lists{&d65Patches, &aPatches, &tl84Patches};
  for (std::size_t i = 0; i < lights_.size(); ++i) {
    lights_[i].whiteBalance = M_white_balance(lights_[i].measuredRgb, *lists[i]);
    lights_[i].balancedRgb = mmABt(lights_[i].measuredRgb, lights_[i].whiteBalance);
  }
}

}  // namespace greycard
