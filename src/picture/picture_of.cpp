#include <stdexcept>

#include "greycard/picture.h"

namespace greycard {
namespace {

template <typename Sample>
Picture copied(std::span<const Sample> samples, int width, int height, int channels,
               std::size_t rowStride) {
  if (width < 1 || height < 1 || (channels != 1 && channels != 3))
    throw std::invalid_argument("a picture in memory needs pixels of 1 or 3 channels");
  const auto rowSamples = static_cast<std::size_t>(width) * static_cast<std::size_t>(channels),
             rows = static_cast<std::size_t>(height);
  const std::size_t stride = rowStride == 0 ? rowSamples : rowStride;
  if (stride < rowSamples || samples.size() < rowSamples ||
      (samples.size() - rowSamples) / stride < rows - 1)
    throw std::invalid_argument(
        "a picture in memory has fewer samples than its size and its "
        "row stride ask for");

  Picture picture;
  picture.width = width;
  picture.height = height;
  picture.channels = channels;
  picture.bits = static_cast<int>(8 * sizeof(Sample));
  if (stride == rowSamples) {
    picture.samples.assign(samples.data(), samples.data() + rows * rowSamples);
    return picture;
  }
  picture.samples.reserve(rows * rowSamples);
  for (std::size_t y = 0; y < rows; ++y) {
    const Sample* const row = samples.data() + y * stride;
    picture.samples.insert(picture.samples.end(), row, row + rowSamples);
  }
  return picture;
}

}  // namespace

Picture pictureOf(std::span<const std::uint8_t> samples, int width, int height, int channels,
                  std::size_t rowStride) {
  return copied(samples, width, height, channels, rowStride);
}
Picture pictureOf(std::span<const std::uint16_t> samples, int width, int height, int channels,
                  std::size_t rowStride) {
  return copied(samples, width, height, channels, rowStride);
}

}  // namespace greycard
