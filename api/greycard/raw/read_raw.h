#pragma once
/// \file
/// \ingroup own

#include <cstddef>
#include <filesystem>
#include <optional>

#include "greycard/capture_info.h"
#include "greycard/export.h"
#include "greycard/picture.h"

namespace greycard {

/// Levels in codes of the file, where those that it states are not to be believed.
struct RawOptions {
  std::optional<double> blackLevel, whiteLevel;
};

struct RawCapture {
  Picture picture;
  CaptureInfo info;
  std::size_t furtherFrames = 0;  ///< raw pictures in the file that were not read
};

/// Whether this library was built with raw input.
GREYCARD_EXPORT bool readsRaw();

/// Reads the linear samples of a DNG or of a camera's own raw file: less the black level, before
/// white balance and colours.
///
/// The picture has 16 bits. 0 is the black level (the file's common one, the channel's and the
/// repeating pattern's together; what noise brings below it is cut), 65535 the white level (the
/// least of the file's, and of the limits up to which it says that the sensor is linear). Mosaics
/// of 2x2 cells are binned: half the width and height, each pixel one cell, G the mean of its two,
/// no interpolation; a cell with a clipped sample is clipped in that channel. The centre of the
/// pixel at (x, y) lies at (2 x + 0.5, 2 y + 0.5) of the sensor. Linear files of three channels and
/// grey ones keep their size. The orientation mark is obeyed.
///
/// Refused by name: X-Trans, Foveon and any other layout than 2x2, more or other colours than R, G
/// and B, DNG compressed as JPEG XL. No more memory or time is spent than the size that the file
/// declares asks for, and none on a size that the file is too short for.
/// \throws FileError that names the file and the reason, also where this library was built without
///         raw input; std::invalid_argument for a white level that is not 32 codes or more above
///         the black one, or above 65535
GREYCARD_EXPORT RawCapture readRaw(const std::filesystem::path& path,
                                   const RawOptions& options = {});

}  // namespace greycard
