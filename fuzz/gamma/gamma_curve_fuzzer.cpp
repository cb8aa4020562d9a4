// The text forms of curves, table conversion and curve fitting on arbitrary bytes: anything may be
// refused, nothing may crash, hang or be undefined, and what is accepted survives its own text
// form.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "greycard/diagnostics.h"
#include "greycard/errors.h"
#include "greycard/gamma_curve_model.h"

namespace {

using namespace greycard;

void require(bool holds) {
  if (!holds) std::abort();
}

// Settings from single bytes, the odd ones (0, negative, too large) among them.
void applySettings(GammaCurveModel& model, std::string_view bytes) {
  const auto setting = [&](std::size_t i) { return static_cast<std::int32_t>(bytes[i]) - 2; };
  model.SetGammaBitSize(setting(0));
  model.SetXScale(setting(1));
  model.SetYScale(setting(2));
  model.SetMaxY(setting(3) << 24);
}

void exercise(GammaCurve& curve, std::string_view text) {
  curve.SetControlPoints(ColorChannel::Green, text);
  if (const auto points = curve.GetControlPointsAsString(ColorChannel::Green))
    require(*GammaCurve::CreatePointArray(*points) == *curve.ControlPointsG());
  curve.SetControlPoints(ColorChannel::Red, text);
  try {
    curve.CalculateCurve();
  } catch (const NumericError&) {  // repeated X
  }
  curve.SetCurveData(ColorChannel::Blue, text);
  const auto table = GammaCurve::StringToIntArray(curve.GetDataAsString(ColorChannel::Blue));
  require(table && *table == *curve.DataB());
  for (const std::int32_t bits : {8, 10, 12, 14, 31})
    curve.GetDataAsString(ColorChannel::All, static_cast<std::int32_t>(text.size()) + 1, bits);
  curve.GenerateControlPoints(ColorChannel::Blue);
  try {
    curve.CalculateCurve();
  } catch (const NumericError&) {  // the text's points still, on the other channels
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 4 || size > 16 * 1024) return 0;
  setErrorChannel({});
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  GammaCurveModel model(false);
  const GammaCurvePtr curve = model.AddGammaCurve("fuzzed");
  curve->SetIsUnified(false);
  applySettings(model, bytes);
  exercise(*curve, bytes.substr(4));
  return 0;
}
