#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace greycard::cli {

/// Writes the text to the file, or to standard output for "-". \throws FileError
void writeText(const std::string& target, std::string_view text);

/// "Warning: ...", a line each, on standard output.
void printWarnings(const std::vector<std::string>& warnings);

}  // namespace greycard::cli
