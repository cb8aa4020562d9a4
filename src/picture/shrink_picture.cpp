#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>
#include <stdexcept>

#include "greycard/picture.h"
#include "picture_mat.h"

namespace greycard {

Picture shrinkPicture(const Picture& picture, int longestSide) {
  if (!isWellFormed(picture) || longestSide < 1)
    throw std::invalid_argument("a picture to shrink needs pixels, and a longest side above 0");
  const double factor = static_cast<double>(longestSide) / std::max(picture.width, picture.height);
  if (factor >= 1.0) return picture;
  const auto side = [factor](int pixels) {
    return std::max(1, static_cast<int>(std::lround(pixels * factor)));
  };
  cv::Mat small;
  cv::resize(toMat(picture), small, cv::Size(side(picture.width), side(picture.height)), 0, 0,
             cv::INTER_AREA);
  return fromMat(small);
}

}  // namespace greycard
