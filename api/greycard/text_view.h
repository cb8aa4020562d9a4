#pragma once
/// \file
/// \ingroup contract

#include <concepts>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace greycard {

/// What lends its characters to a std::string_view: a string, a literal, another view. Not a
/// pointer, which may be null.
template <typename Source>
concept LendsText = std::convertible_to<const Source&, std::string_view> &&
    !std::convertible_to<Source, const char*>;

/// A parameter for a text that must be there. The text stays the caller's, for the length of the
/// call. A literal nullptr does not compile; a pointer that turns out to be null is an empty text.
class TextView : public std::string_view {
 public:
  constexpr TextView() = default;
  constexpr TextView(std::nullptr_t) = delete;
  constexpr TextView(const char* text)
      : std::string_view(text == nullptr ? std::string_view() : std::string_view(text)) {}
  constexpr TextView(const char* text, std::size_t length) : std::string_view(text, length) {}
  template <LendsText Source>
  constexpr TextView(const Source& text) : std::string_view(text) {}
};

/// A parameter for a text that may be absent, which is not the same as empty: nullptr, a null
/// pointer to characters, std::nullopt and an empty std::optional are absent.
class OptionalText : public std::optional<std::string_view> {
 public:
  constexpr OptionalText() = default;
  constexpr OptionalText(std::nullptr_t) {}
  constexpr OptionalText(std::nullopt_t) {}
  constexpr OptionalText(const char* text) {
    if (text != nullptr) emplace(text);
  }
  template <LendsText Source>
  constexpr OptionalText(const Source& text)
      : std::optional<std::string_view>(std::in_place, text) {}
  template <LendsText Source>
  constexpr OptionalText(const std::optional<Source>& text) {
    if (text) emplace(*text);
  }
};

}  // namespace greycard
