#include "picture_mat.h"

#include <algorithm>
#include <cstdint>
#include <opencv2/imgproc.hpp>

namespace greycard {
namespace {

// Rows converted at a time: few enough to stay in the cache between depth and channel order.
constexpr int kStrip = 16;

// The picture's own samples as a matrix, not copied.
cv::Mat samplesAsMat(int width, int height, int channels, const std::uint16_t* samples) {
  return {height, width, CV_16UC(channels), const_cast<std::uint16_t*>(samples)};
}

// Depth of `to`, colours in the opposite order. `to` has its size and type already.
void convert(const cv::Mat& from, cv::Mat& to) {
  if (from.channels() == 1) return from.convertTo(to, to.depth());
  cv::Mat strip;
  for (int y = 0; y < from.rows; y += kStrip) {
    const cv::Range rows(y, std::min(y + kStrip, from.rows));
    from.rowRange(rows).convertTo(strip, to.depth());
    cv::Mat target = to.rowRange(rows);
    cv::cvtColor(strip, target, cv::COLOR_RGB2BGR);
  }
}

}  // namespace

cv::Mat toMat(const Picture& picture) {
  cv::Mat image(picture.height, picture.width,
                CV_MAKETYPE(picture.bits == 16 ? CV_16U : CV_8U, picture.channels));
  convert(samplesAsMat(picture.width, picture.height, picture.channels, picture.samples.data()),
          image);
  return image;
}

Picture fromMat(const cv::Mat& image) {
  Picture picture(image.cols, image.rows, image.channels(), image.depth() == CV_16U ? 16 : 8);
  auto samples =
      samplesAsMat(picture.width, picture.height, picture.channels, picture.samples.data());
  convert(image, samples);
  return picture;
}

}  // namespace greycard
