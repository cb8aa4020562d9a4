#pragma once

#include <opencv2/core.hpp>

#include "plane_view.h"

namespace greycard {

/// The pixels of an image matrix whose type is Pixel.
template <typename Pixel>
PlaneView<const Pixel> pixelsOf(const cv::Mat& image) {
  assert(image.elemSize() == sizeof(Pixel) && image.step[0] % sizeof(Pixel) == 0);
  return {image.ptr<Pixel>(), static_cast<std::size_t>(image.cols),
          static_cast<std::size_t>(image.rows), image.step[0] / sizeof(Pixel)};
}

}  // namespace greycard
