#pragma once

// HZ (RFC 1843): GB 2312 text in 7 bits. "~{" and "~}" enclose characters of two bytes whose high
// bits are clear, "~~" is a tilde, and a tilde before a line's end joins it to the next.

#include <optional>
#include <string>
#include <string_view>

namespace greycard::pxcore {

/// The same text with the high bits set instead (EUC); empty when it is not HZ.
std::optional<std::string> eucOfHz(std::string_view hz);

/// The other way round, for valid EUC of one or two bytes a character.
std::string hzOfEuc(std::string_view euc);

}  // namespace greycard::pxcore
