#pragma once
/// \file
/// \ingroup own

#include <span>
#include <string>
#include <string_view>

#include "greycard/export.h"

namespace greycard {

/// The known name that is nearest to a mistyped one; null where none is near.
GREYCARD_EXPORT const std::string* closestName(const std::string& name,
                                               std::span<const std::string> known);

/// One sentence about a name that is not among the known ones: the closest known name when one is
/// near, and the list. For example: there is no curve "vnormal"; did you mean "VNormal"? Known: ...
/// \param kind  what is named, as in "curve"
GREYCARD_EXPORT std::string unknownName(const std::string& kind, const std::string& name,
                                        std::span<const std::string> known);

/// Whether the texts differ at most in the case of ASCII letters, whatever the locale.
GREYCARD_EXPORT bool equalIgnoringCase(std::string_view a, std::string_view b);

/// The names with commas between them.
GREYCARD_EXPORT std::string listed(std::span<const std::string> names);

/// A text with something of a user's in it without its control characters, which become ?: they
/// would play with the terminal, and XML can't hold them.
GREYCARD_EXPORT std::string printable(std::string text);

}  // namespace greycard
