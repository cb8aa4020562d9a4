#include "search_image.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <opencv2/imgproc.hpp>
#include <stdexcept>
#include <vector>

#include "picture_mat.h"
#include "picture_view.h"
#include "text.h"

namespace greycard {
namespace {

// The usual display exponent; the search needs the dark patches apart, not exact colours.
constexpr double kGamma = 1.0 / 2.2;

double fullScale(const Picture& picture) {
  if (picture.bits == 8) return 255.0;
  std::uint16_t brightest = 0;
  for (const auto sample : picture.samples) brightest = std::max(brightest, sample);
  for (const int scale : {1023, 4095, 16383})
    if (brightest <= scale) return scale;
  return 65535.0;
}

std::vector<std::uint8_t> samplesTo8Bit(const Picture& picture, const SampleLevels& levels) {
  std::vector<std::uint8_t> table(static_cast<std::size_t>(picture.ceiling()) + 1);
  for (std::size_t i = 0; i < table.size(); ++i)
    table[i] = static_cast<std::uint8_t>(
        std::lround(255.0 * encodedShare(static_cast<double>(i), levels)));
  return table;
}

template <std::size_t Channels>
void rowThroughTable(std::span<const std::uint16_t> from, const std::vector<std::uint8_t>& table,
                     std::span<std::uint8_t> to) {
  const auto last = static_cast<std::uint16_t>(table.size() - 1);
  for (std::size_t i = 0; i < from.size(); i += Channels)
    for (std::size_t c = 0; c < Channels; ++c)
      to[i + Channels - 1 - c] = table[std::min(from[i + c], last)];  // R, G, B to B, G, R
}

cv::Mat throughTable(const Picture& picture, const std::vector<std::uint8_t>& table) {
  cv::Mat image(picture.height, picture.width, CV_8UC(picture.channels));
  const auto convert = picture.channels == 3 ? rowThroughTable<3> : rowThroughTable<1>;
  const auto from = samplesOf(picture);
  const PlaneView<std::uint8_t> to(image.ptr(), from.width(), from.height(), image.step[0]);
  for (std::size_t y = 0; y < from.height(); ++y) convert(from.row(y), table, to.row(y));
  return image;
}

}  // namespace

SampleLevels searchLevels(const Picture& picture, const std::optional<SampleLevels>& levels) {
  if (!levels) return {0.0, fullScale(picture), 1.0, SampleEncoding::sRGB};
  // Written so that NaN is refused too: every comparison with it is false.
  const double range = levels->whiteLevel - levels->blackLevel;
  if (!(range > 0.0 && std::isfinite(range)))
    throw std::invalid_argument("white level " + formatGeneral(levels->whiteLevel) +
                                " must be a number above black level " +
                                formatGeneral(levels->blackLevel));
  return *levels;
}

bool holdsEncoded8Bit(const Picture& picture, const SampleLevels& levels) {
  return picture.bits == 8 && levels.blackLevel == 0.0 && levels.whiteLevel == 255.0 &&
         levels.encoding == SampleEncoding::sRGB;
}

double encodedShare(double code, const SampleLevels& levels) {
  const double range = levels.whiteLevel - levels.blackLevel;
  const double value = std::clamp((code - levels.blackLevel) / range, 0.0, 1.0);
  return levels.encoding == SampleEncoding::linear ? std::pow(value, kGamma) : value;
}

cv::Mat searchImage(const Picture& picture, const std::optional<SampleLevels>& levels) {
  const auto known = searchLevels(picture, levels);
  auto image = holdsEncoded8Bit(picture, known)
                   ? toMat(picture)
                   : throughTable(picture, samplesTo8Bit(picture, known));
  if (image.channels() == 1) cv::cvtColor(image, image, cv::COLOR_GRAY2BGR);
  return image;
}

}  // namespace greycard
