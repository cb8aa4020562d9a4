#pragma once

// The chart file: 24 lines of three numbers.

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "greycard/types.h"

namespace greycard {

/// No chart file is longer than this, so no more of any file is read.
inline constexpr std::size_t kMaxChartBytes = 65536;

/// The first kMaxChartBytes + 1 bytes of a file. Empty, with errno set, when it can't be read.
std::optional<std::string> readChartBytes(const std::filesystem::path& file);

/// The forgiving reading: the numbers at the start of each line as "%lf %lf %lf" scans them
/// (decimal ones, infinity and not-a-number included), until a line yields fewer than three.
/// \return the number of rows read into `rows`, 24 for a whole chart; the rest stays as it is
int scanChartText(std::string_view text, PatchTable& rows);

/// Limits of what a chart file may hold.
struct NumberRange {
  double lowest, highest;
};

/// The strict reading: nothing but 24 lines of three finite numbers in range; blank lines may
/// follow.
/// \param name  the file's name for the message
/// \throws FileError that names file, line and text
PatchTable parseChartText(std::string_view text, std::string_view name, NumberRange range);

/// 24 lines of three numbers with six significant digits.
std::string formatChartText(const PatchTable& rows);

}  // namespace greycard
