#pragma once

// From the codes of a sensor to a picture of 16-bit linear samples.

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "greycard/picture.h"
#include "greycard/types.h"

namespace greycard {

/// By how many codes a white level stands above a black one at least.
inline constexpr double kLeastLevels = 32.0;

/// Codes without light, which may repeat over the picture, and codes of full scale.
struct RawLevels {
  std::size_t rows = 1, columns = 1;         ///< of the part that repeats
  std::vector<double> pattern{0.0};          ///< rows * columns, added to `black`
  std::array<double, 4> black{};             ///< at a 2x2 cell's places, or of the channels
  Vector3 white{65535.0, 65535.0, 65535.0};  ///< of the channels

  /// Code without light at a sensor's place, `base` being the one of `black` that holds there.
  double at(std::size_t row, std::size_t column, std::size_t base) const {
    return black[base] + pattern[row % rows * columns + column % columns];
  }
};

/// Codes of a sensor; rows may be longer than what is seen of them.
struct RawSamples {
  const std::uint16_t* first = nullptr;
  std::size_t stride = 0;  ///< samples from row to row
  int width = 0, height = 0;
};

/// Two neighbouring rows of a mosaic's codes.
using RowPair = std::array<const std::uint16_t*, 2>;
/// Gives the next two rows, from the top; they hold until it is asked again.
using MosaicRows = std::function<RowPair()>;

/// Rows that stand in memory.
MosaicRows rowsOf(const RawSamples& samples);

/// A pixel for each 2x2 cell of `width` x `height` codes.
/// \param channels  at the cell's places, row by row, each at least once
Picture binMosaic(int width, int height, const MosaicRows& rows, const std::array<int, 4>& channels,
                  const RawLevels& levels);

/// The samples pixel by pixel. \param channels  1 or 3
/// \param perPixel  samples of a pixel, of which the first `channels` are taken
Picture scaledSamples(const RawSamples& samples, int channels, int perPixel,
                      const RawLevels& levels);

/// The picture as the mark wants it seen. \param orientation  EXIF's; anything but 2 to 8 is as it
/// is
Picture oriented(Picture picture, int orientation);

}  // namespace greycard
