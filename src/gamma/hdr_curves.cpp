// The two standard curves for high dynamic range, as curves of a model.

#include <memory>

#include "gamma_curve_lib.h"
#include "greycard/gamma_curve_model.h"

namespace greycard {
namespace {

constexpr std::uint32_t kPoints = 257;

// Input codes of 12 bits, output codes of 10.
void setScales(GammaCurveLib& lib) {
  lib.set_yScale(4);
  lib.set_xScale(16);
}

GammaCurvePtr curveOf(std::string_view name, GammaCurveModel& model, const GammaCurveLib& lib) {
  auto curve = std::make_shared<GammaCurve>(name, model);
  curve->SetGammaTable(ColorChannel::All, std::make_shared<GammaTable>(lib.get_curve()));
  return curve;
}

}  // namespace

GammaCurvePtr GammaCurveModel::GenerateHDRCurve(std::int32_t MN) {
  GammaCurveLib lib(kPoints, CurveType::HDR10);
  setScales(lib);
  lib.set_maxNits(static_cast<unsigned long>(MN));  // keeps 10000 when it refuses
  lib.generateByHDR10();
  return curveOf("HDR10", *this, lib);
}

GammaCurvePtr GammaCurveModel::GenerateHLGCurve() {
  GammaCurveLib lib(kPoints, CurveType::HLG);
  setScales(lib);
  lib.generateByHLG();
  return curveOf("HLG", *this, lib);
}

}  // namespace greycard
