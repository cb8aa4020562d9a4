#pragma once

#include <opencv2/core.hpp>

#include "lattice/working_picture.h"

namespace greycard {

/// The working picture in B, G, R.
cv::Mat workingImage(const WorkingPicture& picture);

}  // namespace greycard
