#include "picture_mat.h"

#include <algorithm>
#include <cstdint>

namespace greycard {
namespace {

// Both kinds of picture keep the channels of a pixel side by side; only the order of colours
// differs.
template <int Channels, typename To, typename From>
void copyRow(To* to, const From* from, int width) {
  const auto sample = [](From value) {
    if constexpr (sizeof(To) < sizeof(From))
      return static_cast<To>(std::min<From>(value, 255));
    else
      return static_cast<To>(value);
  };
  if constexpr (Channels == 1) {
    for (int x = 0; x < width; ++x) to[x] = sample(from[x]);
  } else {
    for (int x = 0; x < width; ++x, to += 3, from += 3) {
      to[0] = sample(from[2]);
      to[1] = sample(from[1]);
      to[2] = sample(from[0]);
    }
  }
}

template <typename Sample>
void fillMat(cv::Mat& image, const Picture& picture) {
  const auto copy =
      picture.channels == 3 ? copyRow<3, Sample, std::uint16_t> : copyRow<1, Sample, std::uint16_t>;
  for (int y = 0; y < picture.height; ++y)
    copy(image.ptr<Sample>(y), picture.pixel(0, y), picture.width);
}

template <typename Sample>
void fillPicture(Picture& picture, const cv::Mat& image) {
  const auto copy =
      picture.channels == 3 ? copyRow<3, std::uint16_t, Sample> : copyRow<1, std::uint16_t, Sample>;
  for (int y = 0; y < picture.height; ++y)
    copy(picture.pixel(0, y), image.ptr<Sample>(y), picture.width);
}

}  // namespace

bool isWellFormed(const Picture& picture) {
  if (picture.width <= 0 || picture.height <= 0) return false;
  if (picture.channels != 1 && picture.channels != 3) return false;
  if (picture.bits != 8 && picture.bits != 16) return false;
  const auto rowSamples =
      static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.channels);
  return picture.samples.size() / rowSamples == static_cast<std::size_t>(picture.height) &&
         picture.samples.size() % rowSamples == 0;
}

cv::Mat toMat(const Picture& picture) {
  const bool wide = picture.bits == 16;
  cv::Mat image(picture.height, picture.width,
                CV_MAKETYPE(wide ? CV_16U : CV_8U, picture.channels));
  if (wide)
    fillMat<std::uint16_t>(image, picture);
  else
    fillMat<std::uint8_t>(image, picture);
  return image;
}

Picture fromMat(const cv::Mat& image) {
  const bool wide = image.depth() == CV_16U;
  Picture picture(image.cols, image.rows, image.channels(), wide ? 16 : 8);
  if (wide)
    fillPicture<std::uint16_t>(picture, image);
  else
    fillPicture<std::uint8_t>(picture, image);
  return picture;
}

}  // namespace greycard
