#include "result/working_image.h"

#include <array>
#include <cstddef>

namespace greycard {

cv::Mat workingImage(const WorkingPicture& picture) {
  std::array<cv::Mat, 3> bgr;
  for (std::size_t c = 0; c < bgr.size(); ++c) {
    const int plane = picture.planes == 1 ? 0 : static_cast<int>(2 - c);
    // OpenCV takes no constant data; it is only read.
    bgr[c] = cv::Mat(picture.height, picture.width, CV_8UC1,
                     const_cast<std::uint8_t*>(picture.row(plane, 0)));
  }
  cv::Mat image;
  cv::merge(bgr.data(), bgr.size(), image);
  return image;
}

}  // namespace greycard
