#pragma once

#include <cstddef>
#include <optional>

#include "gamma_stage.h"
#include "srgb_transfer.h"

namespace greycard {

/// What becomes of linear RGB on its way to a screen: the camera's gamma and the sRGB decoding of
/// the screen, clipped to 0..1; without a gamma, nothing.
class OutputCurve {
 public:
  /// \param gamma  R, G, B with full scale 1
  explicit OutputCurve(const std::optional<std::array<CameraCurve, 3>>& gamma) {
    if (gamma) gamma_.emplace(*gamma);
  }

  struct Point {
    double value, slope;
  };
  /// The slope is 0 where the value is clipped.
  Point at(std::size_t channel, double linear) const {
    if (!gamma_) return {linear, 1.0};
    const bool inside = linear > 0.0 && linear < 1.0;
    const double x = inside ? linear : linear > 0.0 ? 1.0 : 0.0;
    const double encoded = gamma_->at(channel, x);
    const double decoded = sRGBDecode(encoded);
    return {decoded, inside ? sRGBDecodeSlope(encoded) * gamma_->slope(channel, x) : 0.0};
  }

 private:
  std::optional<GammaStage> gamma_;
};

}  // namespace greycard
