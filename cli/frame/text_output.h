#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace greycard::cli {

/// What a line on standard output has at most, unless --wide is given.
inline constexpr std::size_t kLineWidth = 100;

/// The text with line ends in place of blanks, so that its lines hold no more than that many
/// characters where their words allow it; lines after the first begin with two blanks.
std::string wrapped(std::string_view text, std::size_t width);

/// A sentence or more on standard output. \param wide  on one line whatever its length
void printParagraph(const std::string& text, bool wide);

}  // namespace greycard::cli
