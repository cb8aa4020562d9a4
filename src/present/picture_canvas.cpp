#include "picture_canvas.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>

namespace greycard::present {
namespace {

// Full scale of an encoded picture: that of its bits or, for 16, of the fewest bits that hold it.
int fullScale(const Picture& picture) {
  if (picture.bits == 8) return 255;
  const int brightest = *std::ranges::max_element(picture.samples);
  for (const int scale : {1023, 4095, 16383})
    if (brightest <= scale) return scale;
  return 65535;
}

}  // namespace

cv::Mat canvasOf(const Picture& picture) {
  if (!isWellFormed(picture))
    throw std::invalid_argument(
        "the picture to annotate is empty or its size and samples disagree");
  const int white = fullScale(picture);
  cv::Mat canvas(picture.height, picture.width, CV_8UC3);
  const std::uint16_t* sample = picture.samples.data();
  for (int y = 0; y < picture.height; ++y)
    for (int x = 0; x < picture.width; ++x, sample += picture.channels)
      for (int c = 0; c < 3; ++c) {
        const int code = std::min<int>(sample[picture.channels == 3 ? c : 0], white);
        canvas.at<cv::Vec3b>(y, x)[c] =
            static_cast<std::uint8_t>((510 * code + white) / (2 * white));
      }
  return canvas;
}

Picture pictureOf(const cv::Mat& canvas) {
  Picture picture(canvas.cols, canvas.rows, 3, 8);
  std::copy(canvas.datastart, canvas.dataend, picture.samples.begin());
  return picture;
}

}  // namespace greycard::present
