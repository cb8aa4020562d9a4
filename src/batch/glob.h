#pragma once

#include <string_view>

namespace greycard::batch {

/// Whether the pattern (see Override::pattern) fits the whole text. A bracket without an end stands
/// for itself.
bool fits(std::string_view pattern, std::string_view text);

}  // namespace greycard::batch
