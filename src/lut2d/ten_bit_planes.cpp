#include "greycard/ten_bit_planes.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

#include "greycard/errors.h"

namespace greycard {
namespace {

// The nearest of the steps 0..toWhite.
std::uint16_t scaled(int sample, int white, int toWhite) {
  const auto product = std::int64_t{std::min(sample, white)} * toWhite;
  return static_cast<std::uint16_t>((product + white / 2) / white);
}

bool isWhole(const Picture& picture, std::size_t channels) {
  const auto width = static_cast<std::size_t>(picture.width);
  return picture.width > 0 && picture.height > 0 &&
         static_cast<std::size_t>(picture.channels) == channels &&
         picture.samples.size() / (width * channels) == static_cast<std::size_t>(picture.height) &&
         picture.samples.size() % (width * channels) == 0;
}

}  // namespace

TenBitPlanes::TenBitPlanes(const Picture& picture, int white)
    : width(picture.width), height(picture.height) {
  const std::size_t channels = picture.channels == 1 ? 1 : 3;
  if (!isWhole(picture, channels))
    throw std::invalid_argument("the picture's size, channels and samples don't agree");
  if (white < 1 || white > std::numeric_limits<std::uint16_t>::max())
    throw std::invalid_argument("the white level lies in 1 to 65535, not " + std::to_string(white));
  for (std::size_t i = 0; i < picture.samples.size(); i += channels) {
    r.push_back(scaled(picture.samples[i], white, kWhite));
    g.push_back(scaled(picture.samples[i + channels / 2], white, kWhite));
    b.push_back(scaled(picture.samples[i + channels - 1], white, kWhite));
  }
}

Picture TenBitPlanes::picture(int white, int bits) const {
  Picture result(width, height, 3, bits);
  for (std::size_t i = 0; i < r.size(); ++i) {
    result.samples[3 * i] = scaled(r[i], kWhite, white);
    result.samples[3 * i + 1] = scaled(g[i], kWhite, white);
    result.samples[3 * i + 2] = scaled(b[i], kWhite, white);
  }
  return result;
}

void TenBitPlanes::apply(TwoDLutHelper& helper) {
  constexpr int kLongest = std::numeric_limits<std::uint16_t>::max();
  if (width > kLongest || height > kLongest)
    throw JobError("the picture has more than 65535 pixels on one side; cut it into smaller ones");
  helper.ProcessImage(r, g, b, width, height, 10);
}

std::size_t TenBitPlanes::differingPixels(const TenBitPlanes& other) const {
  std::size_t count = 0;
  for (std::size_t i = 0; i < std::min(r.size(), other.r.size()); ++i)
    if (r[i] != other.r[i] || g[i] != other.g[i] || b[i] != other.b[i]) ++count;
  return count;
}

Picture sideBySide(const Picture& left, const Picture& right) {
  if (!isWhole(left, 3) || !isWhole(right, 3) || left.height != right.height ||
      left.bits != right.bits)
    throw std::invalid_argument(
        "two pictures side by side are in colour, as high and with as many bits as each other");
  const int gap = std::max(4, left.width / 50);
  Picture both(left.width + gap + right.width, left.height, 3, left.bits);
  std::fill(both.samples.begin(), both.samples.end(), static_cast<std::uint16_t>(both.ceiling()));
  for (int y = 0; y < left.height; ++y) {
    std::copy_n(left.pixel(0, y), 3 * left.width, both.pixel(0, y));
    std::copy_n(right.pixel(0, y), 3 * right.width, both.pixel(left.width + gap, y));
  }
  return both;
}

}  // namespace greycard
