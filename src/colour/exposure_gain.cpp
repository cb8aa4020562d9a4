#include "exposure_gain.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "colour_space.h"
#include "text.h"

namespace greycard {
namespace {

constexpr double kBrightestGrey = 0.65;  // of full scale, for the patch after the gain

}  // namespace

double invertCurve(const CameraCurve& curve, double value) {
  if (curve[0] >= value) return 0.0;
  for (std::size_t i = 1; i < kGammaPoints; ++i) {
    if (!(curve[i] >= value)) continue;
    const double beyond = (value - curve[i - 1]) / (curve[i] - curve[i - 1]);
    return (static_cast<double>(i - 1) + beyond) / (kGammaPoints - 1.0);
  }
  return 1.0;
}

double exposureGain(double referenceL, const CameraCurve& gammaG, double measuredG) {
  if (!(measuredG > 0.0))
    throw std::invalid_argument("patch 20, channel G: the measured value is " +
                                formatGeneral(measuredG) + "; the exposure gain needs one above 0");
  const Vector3 encoded = CIELab_to_sRGB({referenceL, 0.0, 0.0});
  const double gain = std::min(invertCurve(gammaG, encoded[1]), kBrightestGrey) / measuredG;
  if (!std::isfinite(gain))
    throw std::invalid_argument("patch 20, channel G: the measured value of " +
                                formatGeneral(measuredG) + " is too small for an exposure gain");
  if (!(gain > 0.0))
    throw std::invalid_argument(
        "patch 20, channel G: the reference L* of " + formatGeneral(referenceL) +
        " lies below the start of the camera's gamma curve, so there is no exposure gain for it");
  return gain;
}

}  // namespace greycard
