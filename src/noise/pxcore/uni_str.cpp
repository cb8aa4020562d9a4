#include "uni_str.h"

#include <iconv.h>
#include <langinfo.h>

#include <array>
#include <bit>
#include <cerrno>
#include <cstring>
#include <memory>
#include <optional>
#include <type_traits>

#include "exception.h"
#include "hz_text.h"

namespace greycard::pxcore {
namespace {

struct CloseConverter {
  void operator()(void* converter) const { iconv_close(converter); }
};

// A wide string's own code. By the name WCHAR_T, glibc also takes numbers above Unicode's last.
static_assert(sizeof(wchar_t) == 4);
constexpr const char* kWide = std::endian::native == std::endian::little ? "UTF-32LE" : "UTF-32BE";

// The bytes converted from one code to another; empty when the platform does not know one of them
// or the bytes are not text of the first that the second can write.
std::optional<std::string> converted(std::string_view bytes, const char* from, const char* to) {
  static_assert(std::is_pointer_v<iconv_t>);
  const iconv_t opened = iconv_open(to, from);
  if (reinterpret_cast<std::intptr_t>(opened) == -1) return std::nullopt;
  const std::unique_ptr<void, CloseConverter> converter(opened);

  std::string result;
  std::array<char, 1024> piece;
  char* in = const_cast<char*>(bytes.data());  // iconv's interface; it does not write there
  std::size_t inLeft = bytes.size();
  // Once more without input at the end, for what the converter holds back.
  for (bool atEnd = false;;) {
    char* out = piece.data();
    std::size_t outLeft = piece.size();
    const std::size_t irreversible =
        iconv(converter.get(), atEnd ? nullptr : &in, &inLeft, &out, &outLeft);
    result.append(piece.data(), piece.size() - outLeft);
    if (irreversible == static_cast<std::size_t>(-1)) {
      if (errno != E2BIG) return std::nullopt;
    } else if (irreversible != 0) {
      return std::nullopt;
    } else if (atEnd) {
      return result;
    } else {
      atEnd = true;
    }
  }
}

// iconv has GB 2312 as EUC; HZ is the same in 7 bits.
const char* iconvName(int cp) {
  if (cp == UniStr::kUtf8) return "UTF-8";
  if (cp == UniStr::kHz) return "GB2312";
  return nl_langinfo(CODESET);
}

}  // namespace

UniStr::UniStr(std::string_view narrow, int cp) {
  std::optional<std::string> bytes(narrow);
  if (cp == kHz) bytes = eucOfHz(narrow);
  if (bytes) bytes = converted(*bytes, iconvName(cp), kWide);
  if (!bytes) throw ExceptionRuntime(UniStr(L"Failed to widen string"));
  m_text.resize(bytes->size() / sizeof(wchar_t));
  std::memcpy(m_text.data(), bytes->data(), m_text.size() * sizeof(wchar_t));
}

std::string UniStr::ToMBCS(int cp) const {
  const std::string_view wide(reinterpret_cast<const char*>(m_text.data()),
                              m_text.size() * sizeof(wchar_t));
  const auto bytes = converted(wide, kWide, iconvName(cp));
  if (!bytes) throw ExceptionRuntime(UniStr(L"Failed to narrow string"));
  return cp == kHz ? hzOfEuc(*bytes) : *bytes;
}

}  // namespace greycard::pxcore
