#pragma once
/// \file
/// \ingroup own

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

#include "greycard/export.h"

namespace greycard {

/// A picture in memory: rows from the top, pixels from the left, the channels of a pixel side by
/// side (R, G, B, or one grey channel).
///
/// Samples of an 8-bit file are 0..255 and of a 16-bit file 0..65535, as they stand in the file; a
/// 12-bit picture is a 16-bit one whose white level is 4095.
struct Picture {
  int width = 0, height = 0;
  int channels = 3;                    ///< 3 (R, G, B) or 1
  int bits = 8;                        ///< 8 or 16: the sample size of the file
  std::vector<std::uint16_t> samples;  ///< width * height * channels

  Picture() = default;
  /// A black picture.
  Picture(int width_, int height_, int channels_, int bits_)
      : width(width_),
        height(height_),
        channels(channels_),
        bits(bits_),
        samples(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_) *
                static_cast<std::size_t>(channels_)) {}

  /// First sample of the pixel; no bounds check.
  const std::uint16_t* pixel(int x, int y) const { return samples.data() + offset(x, y); }
  std::uint16_t* pixel(int x, int y) { return samples.data() + offset(x, y); }
  /// Largest value a sample can hold: 255 or 65535.
  int ceiling() const { return bits == 16 ? 65535 : 255; }

 private:
  std::size_t offset(int x, int y) const {
    return (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
            static_cast<std::size_t>(x)) *
           static_cast<std::size_t>(channels);
  }
};

/// Whether the picture's fields agree: at least one pixel, 1 or 3 channels, 8 or 16 bits, and as
/// many samples as these say.
inline bool isWellFormed(const Picture& picture) {
  if (picture.width <= 0 || picture.height <= 0) return false;
  if (picture.channels != 1 && picture.channels != 3) return false;
  if (picture.bits != 8 && picture.bits != 16) return false;
  const auto rowSamples =
      static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.channels);
  return picture.samples.size() / rowSamples == static_cast<std::size_t>(picture.height) &&
         picture.samples.size() % rowSamples == 0;
}

/// A copy of a picture that stands in a host's memory, as samples of 8 or of 16 bits.
/// \param channels  1 or 3 (R, G, B)
/// \param rowStride  samples from row to row; 0 for rows without gaps
/// \throws std::invalid_argument for other channels, no pixels, or fewer samples than that
GREYCARD_EXPORT Picture pictureOf(std::span<const std::uint8_t> samples, int width, int height,
                                  int channels, std::size_t rowStride = 0);
GREYCARD_EXPORT Picture pictureOf(std::span<const std::uint16_t> samples, int width, int height,
                                  int channels, std::size_t rowStride = 0);

/// Reads a PNG, TIFF, JPEG, JPEG 2000, BMP, PNM or WebP file of 8 or 16 bits per sample, grey or
/// colour; an alpha channel is dropped, an orientation mark is obeyed.
/// \throws FileError that names the file and the reason; nothing else.
GREYCARD_EXPORT Picture readPicture(const std::filesystem::path& path);

/// \throws FileError when no format that pictures are written in has the name's ending
GREYCARD_EXPORT void checkPictureName(const std::filesystem::path& path);

/// Whether the name has the ending of a JPEG file, whose compression alters noise.
GREYCARD_EXPORT bool isJpegName(const std::filesystem::path& path);

/// Writes the picture; the format follows from the file name's ending, which must be able to hold
/// the picture's bits. Written under a temporary name and renamed, so an earlier file of that name
/// stays whole when writing fails.
/// \throws FileError
GREYCARD_EXPORT void writePicture(const std::filesystem::path& path, const Picture& picture);

/// The bytes of the picture as a PNG file.
/// \throws FileError when the picture can't be encoded
GREYCARD_EXPORT std::vector<std::uint8_t> encodePng(const Picture& picture);
/// Likewise as a JPEG file, for pictures that are only looked at. \param picture  of 8 bits
GREYCARD_EXPORT std::vector<std::uint8_t> encodeJpeg(const Picture& picture, int quality = 85);

/// The picture brought to `longestSide` pixels on its longer side by averaging areas, or a copy.
/// \throws std::invalid_argument for an empty or inconsistent picture, or a side below 1
GREYCARD_EXPORT Picture shrinkPicture(const Picture& picture, int longestSide);

}  // namespace greycard
