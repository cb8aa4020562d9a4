#include "hz_text.h"

namespace greycard::pxcore {
namespace {

constexpr char kHighBit = static_cast<char>(0x80);

bool isHigh(char c) {
  return (c & kHighBit) != 0;
}

}  // namespace

std::optional<std::string> eucOfHz(std::string_view hz) {
  std::string euc;
  bool twoByte = false;
  for (std::size_t i = 0; i < hz.size(); ++i) {
    if (isHigh(hz[i])) return std::nullopt;
    const bool escape = hz[i] == '~';
    if (!escape && !twoByte) {
      euc += hz[i];
      continue;
    }
    if (++i == hz.size() || isHigh(hz[i])) return std::nullopt;
    if (!escape) {
      euc += static_cast<char>(hz[i - 1] | kHighBit);
      euc += static_cast<char>(hz[i] | kHighBit);
    } else if (hz[i] == (twoByte ? '}' : '{')) {
      twoByte = !twoByte;
    } else if (!twoByte && hz[i] == '~') {
      euc += '~';
    } else if (twoByte || hz[i] != '\n') {
      return std::nullopt;
    }
  }
  if (twoByte) return std::nullopt;
  return euc;
}

std::string hzOfEuc(std::string_view euc) {
  std::string hz;
  bool twoByte = false;
  for (const char c : euc) {
    if (isHigh(c) != twoByte) {
      hz += twoByte ? "~}" : "~{";
      twoByte = !twoByte;
    }
    if (c == '~') hz += '~';
    hz += static_cast<char>(c & ~kHighBit);
  }
  if (twoByte) hz += "~}";
  return hz;
}

}  // namespace greycard::pxcore
