#include "greycard/picture_threads.h"

#include <opencv2/core/utility.hpp>
#include <stdexcept>
#include <string>

namespace greycard {

void setPictureThreads(int count) {
  if (count < 1)
    throw std::invalid_argument("pictures can't be worked on by " + std::to_string(count) +
                                " threads; 1 is the least");
  cv::setNumThreads(count);
}

}  // namespace greycard
