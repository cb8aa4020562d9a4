// Curve files of any bytes: none may crash, hang or be undefined, a refusal comes with its reason,
// and what is imported survives export and import unchanged.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "greycard/gamma_curve_model.h"

namespace {

using namespace greycard;

void require(bool holds) {
  if (!holds) std::abort();
}

// A table that ends below 4096 is read as one of fewer bits, so only the others come back as they
// were.
bool comesBack(const GammaCurve& curve) {
  return curve.Data()->back() >= 4096 && curve.DataG()->back() >= 4096 &&
         curve.DataB()->back() >= 4096;
}

bool samePoints(const ControlPointListPtr& a, const ControlPointListPtr& b) {
  return a && b ? *a == *b : (!a || a->empty()) && (!b || b->empty());
}

void roundTrip(GammaCurveModel& model, const GammaCurve& curve) {
  const auto text = curve.GetFileText(1024, 14);
  require(text.has_value());
  const GammaImport again = model.ImportText("again", *text);
  require(again.curve != nullptr && again.curve->IsUnified() == curve.IsUnified());
  require(samePoints(again.curve->ControlPointsR(), curve.ControlPointsR()) &&
          samePoints(again.curve->ControlPointsG(), curve.ControlPointsG()) &&
          samePoints(again.curve->ControlPointsB(), curve.ControlPointsB()));
  if (!comesBack(curve)) return;
  require(*again.curve->Data() == *curve.Data() && *again.curve->DataG() == *curve.DataG() &&
          *again.curve->DataB() == *curve.DataB());
  require(again.curve->GetFileText(1024, 14) == text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size > 256 * 1024) return 0;
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  for (const bool rgbGamma : {true, false}) {
    GammaCurveModel model(false);
    model.SetRGBGamma(rgbGamma);
    const GammaImport import = model.ImportText("fuzzed", bytes);
    require(import.refusal.has_value() == (import.curve == nullptr));
    require(model.GetNames().size() == (import.curve ? 1u : 0u));
    if (import.curve) roundTrip(model, *import.curve);
  }
  return 0;
}
