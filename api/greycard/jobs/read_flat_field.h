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
  /// Sample values without light and of full scale, which become 0 and 255; without any of these
  /// three, samples stay as they stand in the file, those of a raw file excepted, which knows its
  /// levels.
  std::optional<double> black = {}, white = {};
  std::optional<int> bits = {};  ///< 8 to 16, of a sample: `white` is then the most that they hold
};

/// Luma of an even surface, row by row.
struct FlatField {
  std::filesystem::path file;
  std::uint64_t width = 0, height = 0;
  std::vector<std::uint16_t> samples;   ///< width * height, in code values of 8 bits
  bool isJpeg = false;                  ///< as its file's name tells
  double fileCodes = 1.0;               ///< code values of the file in one of 8 bits
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
///         `raw` tells; std::invalid_argument for bits or levels that can't be
GREYCARD_EXPORT FlatField readFlatField(const std::filesystem::path& file,
                                        const FlatFieldOptions& options = {});

}  // namespace greycard
