#pragma once

// Fields of a JSON document that a user wrote. What is wrong is thrown as std::invalid_argument
// with a plain text that begins with the field; the caller adds the file.

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "json_output.h"

namespace greycard::cli {

/// The document; a text that is none is told with the line and column where it goes wrong.
Json parsedJson(std::string_view text);

/// \throws std::invalid_argument "<name> must be <must>"
[[noreturn]] void refuseField(const std::string& name, const std::string& must);

double numberFrom(const std::string& name, const Json& json);

/// A list of exactly as many numbers as there are values.
void readNumbers(const std::string& name, const Json& json, std::span<double> values);

/// Refuses a field of the object that is not among the known ones, with the closest of them.
/// \param prefix  what stands before the field's name in the message, as in "images[2]."
void refuseUnknownFields(const std::string& prefix, const Json& object,
                         const std::vector<std::string>& known);

}  // namespace greycard::cli
