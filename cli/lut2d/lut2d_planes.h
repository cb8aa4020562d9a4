#pragma once

#include <cstdint>
#include <vector>

#include "greycard/picture.h"
#include "greycard/two_d_lut_helper.h"

namespace greycard::cli {

/// Three planes of 10 bits: what a hue/saturation table works on.
struct TenBitPlanes {
  int width = 0, height = 0;
  std::vector<std::uint16_t> r, g, b;

  /// \param white  sample of full scale in the picture; larger ones count as white
  TenBitPlanes(const Picture& picture, int white);

  /// With samples of 0..white, in a picture of 8 or 16 bits.
  Picture picture(int white, int bits) const;

  /// \throws JobError for a picture of more than 65535 pixels a side
  void apply(TwoDLutHelper& helper);
};

}  // namespace greycard::cli
