#pragma once

// What a picture's code values mean.

#include <vector>

#include "greycard/patch_sampler.h"
#include "greycard/picture.h"

namespace greycard {

/// \throws std::invalid_argument that tells the picture's fields unless it is well-formed
void checkPicture(const Picture& picture);

/// Linear value of a code between the levels, that of the white level above it.
double linearValue(const SampleLevels& levels, double code);

/// Linear value of each code from 0 to the picture's ceiling; values above the white level are the
/// white level's.
/// \throws std::invalid_argument unless the levels are finite, white above black, scale above 0
std::vector<double> linearValues(const SampleLevels& levels, const Picture& picture);

}  // namespace greycard
