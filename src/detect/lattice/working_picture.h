#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "greycard/patch_sampler.h"
#include "greycard/picture.h"
#include "greycard/types.h"

namespace greycard {

/// A part of a picture in whole pixels, inside it and not empty.
struct PixelWindow {
  int left = 0, top = 0, width = 0, height = 0;
};

/// A picture as the lattice search looks at it: reduced, encoded, 8 bits, one plane after the
/// other (R, G, B, or lightness alone).
struct WorkingPicture {
  int width = 0, height = 0, planes = 3;
  double factor = 1.0;  ///< pixels of the picture per working pixel
  Point2 origin;        ///< the window's first pixel in the picture
  double gain = 1.0;    ///< by which the values were brightened
  std::vector<std::uint8_t> samples;

  std::size_t planeSize() const {
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  }
  const std::uint8_t* row(int plane, int y) const {
    return samples.data() + static_cast<std::size_t>(plane) * planeSize() +
           static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
  }
  std::uint8_t* row(int plane, int y) {
    return const_cast<std::uint8_t*>(static_cast<const WorkingPicture*>(this)->row(plane, y));
  }
  /// Where the centre of a working pixel lies in the picture, and back.
  Point2 toPicture(double x, double y) const {
    return {(x + 0.5) * factor - 0.5 + origin.x, (y + 0.5) * factor - 0.5 + origin.y};
  }
  Point2 toWorking(const Point2& p) const {
    return {(p.x - origin.x + 0.5) / factor - 0.5, (p.y - origin.y + 0.5) / factor - 0.5};
  }
};

/// Makes working pictures of one picture, which must outlive it.
class WorkingPictures {
 public:
  /// \param picture  well-formed.
  /// \param levels   what its samples mean; absent as for searchImage.
  /// \throws std::invalid_argument when the levels are not finite or not in order.
  WorkingPictures(const Picture& picture, const PixelWindow& window,
                  const std::optional<SampleLevels>& levels);

  /// Mean of factor x factor pixels per working pixel, encoded; what is left over at the right and
  /// at the bottom is left out. Dark pictures are brightened. factor: 1 up to the window's shorter
  /// side.
  WorkingPicture reduced(int factor) const;

  const PixelWindow& window() const { return window_; }

 private:
  double brightening(const std::vector<std::uint8_t>& levels) const;

  const Picture& picture_;
  PixelWindow window_;
  double gain_ = 1.0;
  /// Sample to brightened 8-bit value; empty when samples are 8-bit values already.
  std::vector<std::uint8_t> table_;
};

/// Smooths the picture by 1 4 6 4 1 across and down, a bell of sigma 1: for noise.
void smooth(WorkingPicture& picture);

/// The picture at half the size; a last odd row or column is left out.
WorkingPicture halved(const WorkingPicture& picture);

/// The picture at twice the size, interpolated linearly: for patches of a few pixels.
WorkingPicture doubled(const WorkingPicture& picture);

}  // namespace greycard
