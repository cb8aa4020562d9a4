#pragma once

#include <gmock/gmock.h>

#include <stdexcept>
#include <string>
#include <string_view>

namespace greycard::present {

/// The value read back from its JSON, which is written the same again. To be called where toJson
/// and fromJson of the value are declared.
template <typename Value>
Value roundTrip(const Value& value) {
  const std::string text = toJson(value);
  Value back;
  fromJson(text, back);
  EXPECT_EQ(toJson(back), text);
  return back;
}

/// Reading the text is refused with a sentence that holds `says`, and the value stays.
template <typename Value>
void expectRefused(std::string_view text, Value& value, const char* says) {
  const std::string before = toJson(value);
  try {
    fromJson(text, value);
    ADD_FAILURE() << "accepted, but: " << says;
  } catch (const std::invalid_argument& error) {
    EXPECT_THAT(error.what(), testing::HasSubstr(says));
  }
  EXPECT_EQ(toJson(value), before);
}

/// The text with its first `from` replaced.
inline std::string replaced(std::string text, const std::string& from, const std::string& to) {
  const auto at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

}  // namespace greycard::present
