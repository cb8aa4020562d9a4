#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace greycard::pxcore {

/// A wide string and its narrow forms.
///
/// Code pages: 1 is UTF-8 (65001), 2 is HZ (52936, RFC 1843), anything else the platform's default,
/// which is that of the host's locale. Conversion is the platform's (iconv), never lossy.
class UniStr {
 public:
  static constexpr int kPlatformDefault = 0, kUtf8 = 1, kHz = 2;

  UniStr() = default;
  /// \throws ExceptionRuntime "Failed to widen string" when the text is not of that code page
  explicit UniStr(std::string_view narrow, int cp = kPlatformDefault);
  explicit UniStr(std::wstring wide) : m_text(std::move(wide)) {}

  /// \throws ExceptionRuntime "Failed to narrow string" when the code page lacks a character
  std::string ToMBCS(int cp = kPlatformDefault) const;
  const std::wstring& Text() const { return m_text; }
  std::size_t Length() const { return m_text.size(); }  ///< wide characters

  UniStr& operator+=(const UniStr& other) {
    m_text += other.m_text;
    return *this;
  }
  void swap(UniStr& other) noexcept { m_text.swap(other.m_text); }
  bool operator==(const UniStr&) const = default;

 private:
  std::wstring m_text;
};

}  // namespace greycard::pxcore
