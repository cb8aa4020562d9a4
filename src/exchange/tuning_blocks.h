#pragma once

// What the two tuning files share: matrices by temperature in decimals, and replacement in place.

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "colour_matrices.h"
#include "json_spans.h"
#include "writers.h"

namespace greycard::exchange {

/// Nine numbers of five decimals with commas between them; the rows sum to 1 as written.
std::string ccmNumbers(const Matrix3& matrix);
/// The whole kelvin of each light, from the warmest on.
/// \throws JobError as byTemperature, also for two that are alike once rounded
std::vector<long> wholeKelvins(const std::vector<const FittedLight*>& lights);

/// A piece of a text, and what takes its place.
struct Replacement {
  Span span;
  std::string text;
};
std::string replaced(std::string_view text, std::vector<Replacement> replacements);

}  // namespace greycard::exchange
