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
    {"jpeg with a thumbnail, whole",
     "\xFF\xD8\xFF\xE1\x00\x06\xFF\xD9zz\xFF\xDA\x00\x02q\xFF\x00q\xFF\xD0q\xFF\xD9"s, true, true},
    {"jpeg cut after its thumbnail",
     "\xFF\xD8\xFF\xE1\x00\x06\xFF\xD9zz\xFF\xDA\x00\x02q\xFF\x00q"s, true, false},
    {"jpeg ending in half a marker", "\xFF\xD8\xFF\xDA\x00\x02q\xFF"s, true, false},
    {"jpeg with fill bytes", "\xFF\xD8\xFF\xFF\xFF\xD9"s, true, true},
    {"png with its last chunk", "\x89PNG\r\n\x1a\n\0\0\0\0IEND1234"s, true, true},
    {"png whose chunk length points far away", "\x89PNG\r\n\x1a\n\xFF\xFF\xFF\xFFIDAT1234"s, true,
     false},
    {"pgm with a comment", "P5 # made by hand\n2 2\n255\nabcd", true, true},
    {"pgm one sample short", "P5 2 2 255 abc", true, false},
    {"16-bit ppm one byte short", "P6 1 1 65535 abcde", true, false},
    {"pbm of nine pixels a row", "P4 9 1 ab", true, true},
    {"pgm of absurd size", "P5 2147483647 2147483647 65535 abcd", true, false},
    {"pgm without numbers", "P5 wide high\n", true, false},
    {"bmp longer than the file", "BM\xFF\0\0\0"s + std::string(40, '\0'), true, false},
    {"webp shorter than its header", "RIFF\x04\0\0\0WEBP"s, true, false},
    {"plain text", "PNG", false, false},
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

}  // namespace
}  // namespace greycard
