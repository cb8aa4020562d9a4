#pragma once
/// \file
/// \ingroup own

#include <array>
#include <filesystem>
#include <optional>
#include <string>

#include "greycard/export.h"
#include "greycard/illum.h"
#include "greycard/picture.h"
#include "greycard/raw/bayer_pattern.h"
#include "greycard/types.h"

namespace greycard {

/// What a DNG says beside its samples.
struct DngDescription {
  std::optional<BayerPattern> pattern;  ///< empty: three linear channels
  int bits = 14;                        ///< of a sample: 8, 10, 12, 14 or 16
  /// Codes without light at the 2x2 cell's places, row by row; of three channels the first three.
  std::array<int, 4> blackLevels{};
  int whiteLevel = 16383;  ///< code of full scale
  std::string maker = "greycard", model = "simulated";
  Illum light = illum_D65;
  Vector3 white{1.0, 1.0, 1.0};  ///< linear R, G, B of a perfect reflector, any scale
  int orientation = 1;           ///< EXIF's, 1 to 8: how readers shall turn it
  double iso = 100.0, exposureSeconds = 0.01;
};

/// One sample of each pixel, as a sensor with these colours sees the picture: a grey picture.
/// \throws std::invalid_argument unless the picture has three channels and even sides
GREYCARD_EXPORT Picture mosaicOf(const Picture& picture, BayerPattern pattern);

/// The bytes of a minimal DNG 1.4: one uncompressed picture, packed to its bits, with a colour
/// matrix of sRGB primaries that brings the light's white to `white`.
/// \param samples  grey with a pattern, three channels without; codes above what the bits hold
///                 become the largest
/// \throws std::invalid_argument for samples and description that disagree
GREYCARD_EXPORT std::string encodeDng(const Picture& samples, const DngDescription& description);

/// Writes them to a file. \throws FileError; as encodeDng
GREYCARD_EXPORT void writeDng(const std::filesystem::path& path, const Picture& samples,
                              const DngDescription& description);

}  // namespace greycard
