#pragma once

#include <string_view>

namespace greycard::reading {

/// What a text looks like. CurveFile has a keyword of its own; Numbers is what is nothing else.
enum class Form { CurveFile, Cube, CArrays, Json, Yaml, Numbers };

/// Told by the first words: never refuses, whatever the bytes.
Form formOf(std::string_view text);

}  // namespace greycard::reading
