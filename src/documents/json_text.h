#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace greycard::present {

/// Fields keep the order in which they are set, so that the same value gives the same bytes.
using Json = nlohmann::ordered_json;

/// The document as text with its line end, indented, a row of numbers on one line. Numbers read
/// back to the same bits; a number that is not finite becomes null.
std::string jsonText(const Json& json);

/// The document of a text.
/// \throws std::invalid_argument with the line and column where the text goes wrong
Json parsedJson(std::string_view text);

}  // namespace greycard::present
