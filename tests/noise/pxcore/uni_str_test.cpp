#include "uni_str.h"

#include <gtest/gtest.h>

#include "exception.h"

namespace greycard::pxcore {
namespace {

TEST(UniStr, CodePages) {
  const struct {
    int codePage;
    std::wstring wide;
    std::string narrow;
  } cases[] = {{UniStr::kUtf8, L"", ""},
               {UniStr::kUtf8, L"a\u00e9\u4e2d\U0001f600", "a\xc3\xa9\xe4\xb8\xad\xf0\x9f\x98\x80"},
               {UniStr::kUtf8, std::wstring(L"a\0b", 3), std::string("a\0b", 3)},
               // The example of RFC 1843, section 2.
               {UniStr::kHz,
                L"The next sentence is in GB.\u5df1\u6240\u4e0d\u6b32\uff0c\u52ff\u65bd\u65bc\u4eba"
                L"\u3002Bye.",
                "The next sentence is in GB.~{<:Ky2;S{#,NpJ)l6HK!#~}Bye."},
               {UniStr::kHz, L"~ \u4e2d\u6587~", "~~ ~{VPND~}~~"},
               {UniStr::kPlatformDefault, L"plain", "plain"},
               {UniStr::kUtf8, std::wstring(5000, L'\u4e2d'), std::string()}};
  for (auto [codePage, wide, narrow] : cases) {
    SCOPED_TRACE(narrow);
    for (std::size_t i = 0; wide.size() == 5000 && i < 5000; ++i) narrow += "\xe4\xb8\xad";
    EXPECT_EQ(UniStr(wide).ToMBCS(codePage), narrow);
    EXPECT_EQ(UniStr(narrow, codePage).Text(), wide);
    EXPECT_EQ(UniStr(narrow, codePage).Length(), wide.size());
  }
  EXPECT_EQ(UniStr("a~\nb", UniStr::kHz).Text(), L"ab");
  UniStr a(L"a"), b(L"b");
  a += b;
  a.swap(b);
  EXPECT_EQ(a.Text() + b.Text(), L"bab");
}

TEST(UniStr, RefusesWhatIsNoTextOfTheCodePage) {
  for (const auto& [codePage, narrow] : {std::pair{UniStr::kUtf8, "\xff"},
                                         {UniStr::kUtf8, "\xe4\xb8"},
                                         {UniStr::kUtf8, "\xf4\x90\x80\x80"},
                                         {UniStr::kHz, "~"},
                                         {UniStr::kHz, "~{V"},
                                         {UniStr::kHz, "~{VP"},
                                         {UniStr::kHz, "~x"},
                                         {UniStr::kHz, "\xd6"},
                                         {UniStr::kPlatformDefault, "\xff"}}) {
    SCOPED_TRACE(narrow);
    try {
      UniStr(narrow, codePage);
      ADD_FAILURE() << "not refused";
    } catch (const ExceptionRuntime& error) {
      EXPECT_STREQ(error.what(), "Failed to widen string");
    }
  }
  for (const auto& [codePage, wide] : {std::pair{UniStr::kUtf8, static_cast<wchar_t>(0xd800)},
                                       {UniStr::kUtf8, static_cast<wchar_t>(0x110000)},
                                       {UniStr::kHz, L'\u00f1'},
                                       {UniStr::kPlatformDefault, L'\u4e2d'}}) {
    try {
      UniStr(std::wstring(1, wide)).ToMBCS(codePage);
      ADD_FAILURE() << "not refused";
    } catch (const ExceptionRuntime& error) {
      EXPECT_STREQ(error.what(), "Failed to narrow string");
    }
  }
}

}  // namespace
}  // namespace greycard::pxcore
