#include "search_image.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <opencv2/imgproc.hpp>
#include <stdexcept>
#include <vector>

#include "picture_mat.h"
#include "text.h"

namespace greycard {
namespace {

// The usual display exponent; the search needs the dark patches apart, not exact colours.
constexpr double kGamma = 1.0 / 2.2;

bool isPlain8Bit(const Picture& picture, const SampleEncoding& encoding) {
  return picture.bits == 8 && encoding.blackLevel == 0.0 && !encoding.linear &&
         (encoding.whiteLevel == 0.0 || encoding.whiteLevel == 255.0);
}

double fullScale(const Picture& picture) {
  if (picture.bits == 8) return 255.0;
  const int brightest = *std::max_element(picture.samples.begin(), picture.samples.end());
  for (const int scale : {1023, 4095, 16383})
    if (brightest <= scale) return scale;
  return 65535.0;
}

std::vector<std::uint8_t> samplesTo8Bit(const Picture& picture, const SampleEncoding& encoding) {
  const double white = encoding.whiteLevel == 0.0 ? fullScale(picture) : encoding.whiteLevel;
  const double range = white - encoding.blackLevel;
  // Written so that NaN is refused too: every comparison with it is false.
  if (!(range > 0.0 && std::isfinite(range)))
    throw std::invalid_argument("white level " + formatGeneral(white) +
                                " must be a number above black level " +
                                formatGeneral(encoding.blackLevel));
  std::vector<std::uint8_t> table(static_cast<std::size_t>(picture.ceiling()) + 1);
  for (std::size_t i = 0; i < table.size(); ++i) {
    double value = std::clamp((static_cast<double>(i) - encoding.blackLevel) / range, 0.0, 1.0);
    if (encoding.linear) value = std::pow(value, kGamma);
    table[i] = static_cast<std::uint8_t>(std::lround(255.0 * value));
  }
  return table;
}

cv::Mat throughTable(const Picture& picture, const std::vector<std::uint8_t>& table) {
  cv::Mat image(picture.height, picture.width, CV_8UC(picture.channels));
  const auto last = static_cast<std::uint16_t>(table.size() - 1);
  const std::size_t swap = picture.channels == 3 ? 2 : 0;  // R, G, B to B, G, R
  const auto channels = static_cast<std::size_t>(picture.channels);
  for (int y = 0; y < picture.height; ++y) {
    const auto* from = picture.pixel(0, y);
    auto* to = image.ptr(y);
    for (int x = 0; x < picture.width; ++x, from += channels, to += channels)
      for (std::size_t c = 0; c < channels; ++c)
        to[swap ? swap - c : c] = table[std::min(from[c], last)];
  }
  return image;
}

}  // namespace

cv::Mat searchImage(const Picture& picture, const SampleEncoding& encoding) {
  auto image = isPlain8Bit(picture, encoding)
                   ? toMat(picture)
                   : throughTable(picture, samplesTo8Bit(picture, encoding));
  if (image.channels() == 1) cv::cvtColor(image, image, cv::COLOR_GRAY2BGR);
  return image;
}

}  // namespace greycard
