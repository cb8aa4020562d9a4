#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "greycard/picture.h"

namespace greycard::present {

// Pieces of our pages as HTML. Texts are plain and get escaped, bodies and cells are HTML already.

/// The text with the characters that mean something in HTML replaced.
std::string htmlEscape(std::string_view text);

/// The picture as an address that is the picture itself (JPEG, RFC 2397).
/// \param picture  of 8 bits
std::string jpegAddress(const Picture& picture);

/// An <img> that carries its pixels with it (JPEG in a data address).
/// \param picture  of 8 bits
std::string htmlPhotograph(const Picture& picture, std::string_view description);

/// A table whose first row is the heading, repeated on each printed page.
std::string htmlTable(const std::vector<std::vector<std::string>>& rows);

/// Likewise of texts, which are broken where a line is full.
std::string htmlTextTable(const std::vector<std::vector<std::string>>& rows);

/// A figure to be seen first: what it is in a few words, the number, and a sentence about it.
std::string htmlKeyFigure(std::string_view name, std::string_view number,
                          std::string_view sentence);

/// A drawing or picture with a line of text below; that may be empty.
std::string htmlFigure(const std::string& body, std::string_view caption = {});
/// Pieces side by side where the page is wide enough, else below each other.
/// \param always  two pictures, which are to be compared on any page
std::string htmlSideBySide(const std::vector<std::string>& pieces, bool always = false);
std::string htmlSection(std::string_view title, const std::string& body);
std::string htmlNote(std::string_view text);
/// A line each, to be seen at once.
std::string htmlWarnings(const std::vector<std::string>& warnings);

/// A whole page around the body: our one style sheet for light and dark screens and for paper, no
/// script, nothing fetched from anywhere.
std::string htmlPage(std::string_view title, std::string_view body);

}  // namespace greycard::present
