// Curves of any form from any bytes: a refusal comes with its reason, a curve has whole tables of
// 14 bits unless it is a curve file's, which keeps what it holds.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "greycard/curve_import.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace greycard;
  if (size > 64 * 1024) return 0;
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  for (const bool fromPoints : {false, true}) {
    GammaCurveModel model(false);
    const GammaImport import = importAnyCurve(model, "fuzzed", bytes, {fromPoints});
    if (import.refusal.has_value() == (import.curve != nullptr)) std::abort();
    if (model.GetNames().size() != (import.curve ? 1u : 0u)) std::abort();
    if (import.curve && import.curve->DataSize() != 1024) std::abort();
  }
  return 0;
}
