// Any bytes may be refused as a tuning file; none may crash or hang. What is updated takes the same
// update again without a change.

#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string_view>

#include "greycard/errors.h"
#include "greycard/exchange/formats.h"

namespace {

using namespace greycard;

exchange::FittedCamera camera() {
  ChartFit fit;
  fit.light = illum_D65;
  fit.gamma = cameraGamma("VGammaSRGB");
  fit.matrix = {{{1.5, -0.4, -0.1}, {-0.2, 1.5, -0.3}, {0.0, -0.5, 1.5}}};
  fit.whiteBalance = {1.9, 1.0, 1.6};
  return {{exchange::fittedLight(fit)}};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const exchange::Material material = camera();
  if (size > 16 * 1024) return 0;
  try {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::string once = exchange::updatedTuning(text, material).bytes;
    if (exchange::updatedTuning(once, material).bytes != once) std::abort();
  } catch (const JobError&) {  // refused
  }
  return 0;
}
