#pragma once
/// \file
/// \ingroup own

#include <cstddef>
#include <cstdint>
#include <vector>

#include "greycard/export.h"
#include "greycard/picture.h"
#include "greycard/two_d_lut_helper.h"

namespace greycard {

/// Three planes of 10 bits: what a hue/saturation table works on.
struct GREYCARD_EXPORT TenBitPlanes {
  static constexpr int kWhite = 1023;

  int width = 0, height = 0;
  std::vector<std::uint16_t> r, g, b;

  TenBitPlanes() = default;
  /// A grey picture has three equal planes.
  /// \param white  sample of full scale in the picture, 1..65535; larger ones count as white
  /// \throws std::invalid_argument for a white level outside that, and for a picture whose size,
  ///         channels and samples don't agree
  TenBitPlanes(const Picture& picture, int white);

  /// With samples of 0..white, in a picture of 8 or 16 bits.
  Picture picture(int white, int bits) const;

  /// Moves the colours by the helper's table.
  /// \throws JobError for a picture of more than 65535 pixels a side
  void apply(TwoDLutHelper& helper);

  /// Pixels in which two pictures of one size differ.
  std::size_t differingPixels(const TenBitPlanes& other) const;
};

/// Two pictures of three channels, as high and with as many bits as each other, with a gap of white
/// between them. \throws std::invalid_argument for other ones
GREYCARD_EXPORT Picture sideBySide(const Picture& left, const Picture& right);

}  // namespace greycard
