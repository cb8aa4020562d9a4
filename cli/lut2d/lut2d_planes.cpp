#include "lut2d_planes.h"

#include <algorithm>
#include <limits>

#include "command.h"

namespace greycard::cli {
namespace {

constexpr int kTenBitWhite = 1023;

// The nearest of the steps 0..toWhite.
std::uint16_t scaled(int sample, int white, int toWhite) {
  const auto product = std::int64_t{std::min(sample, white)} * toWhite;
  return static_cast<std::uint16_t>((product + white / 2) / white);
}

}  // namespace

TenBitPlanes::TenBitPlanes(const Picture& picture, int white)
    : width(picture.width), height(picture.height) {
  const auto channels = static_cast<std::size_t>(picture.channels);
  for (std::size_t i = 0; i < picture.samples.size(); i += channels) {
    r.push_back(scaled(picture.samples[i], white, kTenBitWhite));
    g.push_back(scaled(picture.samples[i + channels / 2], white, kTenBitWhite));
    b.push_back(scaled(picture.samples[i + channels - 1], white, kTenBitWhite));
  }
}

Picture TenBitPlanes::picture(int white, int bits) const {
  Picture result(width, height, 3, bits);
  for (std::size_t i = 0; i < r.size(); ++i) {
    result.samples[3 * i] = scaled(r[i], kTenBitWhite, white);
    result.samples[3 * i + 1] = scaled(g[i], kTenBitWhite, white);
    result.samples[3 * i + 2] = scaled(b[i], kTenBitWhite, white);
  }
  return result;
}

void TenBitPlanes::apply(TwoDLutHelper& helper) {
  constexpr int kLongest = std::numeric_limits<std::uint16_t>::max();
  if (width > kLongest || height > kLongest)
    throw JobError("the picture has more than 65535 pixels on one side; cut it into smaller ones");
  helper.ProcessImage(r, g, b, width, height, 10);
}

}  // namespace greycard::cli
