#include "image_format.h"

#include <gtest/gtest.h>

#include <string>

namespace greycard {
namespace {

using namespace std::string_literals;

struct FormatCase {
  const char* name;
  std::string bytes;
  bool known, whole;
};

// Hand-made structures: enough of each format to walk from its first bytes to its last.
const FormatCase kFormatCases[] = {
#include "format_cases.inc"
};

TEST(ImageFormat, KnowsTheFormatAndWhetherTheFileIsWhole) {
  for (const auto& c : kFormatCases) {
    SCOPED_TRACE(c.name);
    const auto format = imageFormat(c.bytes);
    ASSERT_EQ(format.has_value(), c.known);
    if (c.known) {
      EXPECT_EQ(reachesItsEnd(*format, c.bytes), c.whole);
    }
  }
}

TEST(ImageFormat, IsNamedByItsFirstBytes) {
  const std::pair<std::string, std::string> cases[] = {{"\x89PNG\r\n\x1a\n"s, "PNG"},
                                                       {"\xFF\xD8\xFF"s, "JPEG"},
                                                       {"\0\0\0\x0CjP  \r\n\x87\n"s, "JPEG 2000"},
                                                       {"\xFF\x4F\xFF\x51"s, "JPEG 2000"},
                                                       {"II*\0"s, "TIFF"},
                                                       {"MM\0*"s, "TIFF"},
                                                       {"II+\0"s, "TIFF"},
                                                       {"MM\0+"s, "TIFF"},
                                                       {"BM"s, "BMP"},
                                                       {"P1\n"s, "PNM"},
                                                       {"P6\r"s, "PNM"},
                                                       {"RIFF....WEBP"s, "WebP"}};
  for (const auto& [bytes, name] : cases) {
    ASSERT_TRUE(imageFormat(bytes)) << name;
    EXPECT_EQ(imageFormatName(*imageFormat(bytes)), name);
    EXPECT_FALSE(imageFormat(bytes.substr(0, bytes.size() - 1))) << name;
  }
}

}  // namespace
}  // namespace greycard
