#pragma once

#include <string_view>
#include <vector>

namespace greycard::cli {

/// The numbers of a text with blanks, commas or line ends between them.
/// \throws std::invalid_argument about the first word that is not a finite number; its what() is a
///         part of a sentence: "x" is not a finite number
std::vector<double> finiteNumbers(std::string_view text);

}  // namespace greycard::cli
