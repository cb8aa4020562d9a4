#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "lattice/working_picture.h"

namespace greycard {

/// Per working pixel the largest difference, in any plane, between its left and right or its upper
/// and lower neighbour. Any edge encloses a patch in it: dark or light, with a frame or without.
struct ContrastMap {
  int width = 0, height = 0;
  std::vector<std::uint8_t> values;  ///< row by row; 255 along the picture's border

  const std::uint8_t* row(int y) const {
    return values.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
  }
};

/// Share of the pixels whose contrast lies below the threshold: small in noisy pictures.
double calmShare(const ContrastMap& map, int threshold);

/// Into `map`, whose memory is used again.
void contrastMap(const WorkingPicture& picture, ContrastMap& map);
ContrastMap contrastMap(const WorkingPicture& picture);

}  // namespace greycard
