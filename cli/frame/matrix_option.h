#pragma once

#include <string>

#include "greycard/types.h"

namespace greycard::cli {

/// The matrix that an option gives: nine numbers row by row, a file of them, or a JSON file with a
/// "matrix" in it. \throws UsageError naming the option for a text that is neither; FileError,
/// JobError for the file
Matrix3 matrixFromOption(const std::string& option, const std::string& text);

}  // namespace greycard::cli
