#pragma once
/// \file
/// \ingroup own

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "greycard/errors.h"
#include "greycard/export.h"
#include "greycard/picture.h"

namespace greycard {

/// What becomes of a pixel's three samples.
enum class LumaChoice {
  Rec601,  ///< luma601 of them
  Green,   ///< the green one
};

/// Samples without a header, row by row, low byte first.
struct BareSamples {
  std::uint64_t width = 0, height = 0;  ///< pixels, above 0
  int bits = 8;                         ///< 8 or 16
};

struct FlatFieldOptions {
  std::optional<LumaChoice> luma;  ///< must be there for a colour picture
  std::optional<BareSamples> raw;  ///< the file holds these, and no picture
};

/// Luma of an even surface, row by row.
struct FlatField {
  std::filesystem::path file;
  std::uint64_t width = 0, height = 0;
  std::vector<std::uint16_t> samples;   ///< width * height, as they stand in the file
  bool isJpeg = false;                  ///< as its file's name tells
  std::vector<std::string> warnings{};  ///< of the file, a sentence each
};

/// A colour picture where nobody says how it becomes luma.
class GREYCARD_EXPORT ColourFlatField : public JobError {
 public:
  using JobError::JobError;
};

/// \param file  names the picture in messages and in the result; may be empty
/// \throws ColourFlatField; std::invalid_argument for a picture without pixels or whose size and
///         samples disagree
GREYCARD_EXPORT FlatField flatField(Picture picture, const std::optional<LumaChoice>& luma = {},
                                    const std::filesystem::path& file = {});

/// Reads a picture file, or bare samples. Linear samples of a raw file are brought to 8 bits, in
/// which noise tables are stated: 255 is its white level.
/// \throws FileError; ColourFlatField; JobError when the file doesn't hold as many samples as
///         `raw` tells; std::invalid_argument for other than 8 or 16 bits
GREYCARD_EXPORT FlatField readFlatField(const std::filesystem::path& file,
                                        const FlatFieldOptions& options = {});

}  // namespace greycard
