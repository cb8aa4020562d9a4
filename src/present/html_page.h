#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "greycard/picture.h"

namespace greycard::present {

/// The text with the characters that mean something in HTML replaced.
std::string htmlEscape(std::string_view text);

/// An <img> that carries its pixels with it (PNG in a data address).
std::string htmlImage(const Picture& picture, std::string_view description);

/// A table whose first row is the heading; cells are HTML already.
std::string htmlTable(const std::vector<std::vector<std::string>>& rows);

/// A whole page around the body: our one style sheet, no script, nothing fetched from anywhere.
std::string htmlPage(std::string_view title, std::string_view body);

}  // namespace greycard::present
