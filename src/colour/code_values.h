#pragma once

// What a picture's code values mean.

#include <vector>

#include "greycard/patch_sampler.h"
#include "greycard/picture.h"

namespace greycard {

/// \throws std::invalid_argument unless the picture has pixels, 1 or 3 channels of 8 or 16 bits,
/// and
///         as many samples as these make
void checkPicture(const Picture& picture);

/// Linear value of each code from 0 to the picture's ceiling; values above the white level are the
/// white level's.
/// \throws std::invalid_argument unless the levels are finite, white above black, scale above 0
std::vector<double> linearValues(const SampleLevels& levels, const Picture& picture);

}  // namespace greycard
