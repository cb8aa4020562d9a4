#pragma once

#include <string>

#include "greycard/errors.h"

namespace greycard {

/// Writes the three-line banner to the error channel and throws NumericError(message).
[[noreturn]] void nrerror(const std::string& message);

}  // namespace greycard
