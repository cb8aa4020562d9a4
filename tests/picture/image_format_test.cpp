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
    // Name, bytes, whether the format is known, whether the file is whole.
    {"jpeg with a thumbnail, whole",
     "\xFF\xD8\xFF\xE1\x00\x06\xFF\xD9zz\xFF\xDA\x00\x02q\xFF\x00q\xFF\xD0q\xFF\xD9"s, true, true},
    {"jpeg cut after its thumbnail",
     "\xFF\xD8\xFF\xE1\x00\x06\xFF\xD9zz\xFF\xDA\x00\x02q\xFF\x00q"s, true, false},
    {"jpeg ending in half a marker", "\xFF\xD8\xFF\xDA\x00\x02q\xFF"s, true, false},
    {"jpeg with fill bytes", "\xFF\xD8\xFF\xFF\xFF\xD9"s, true, true},
    {"jpeg with markers without a length", "\xFF\xD8\xFF\x01\xFF\xD0\xFF\xD7\xFF\xD9"s, true, true},
    {"jpeg whose 258 bytes of segment hide an end",
     "\xFF\xD8\xFF\xCF\x01\x02"s + std::string(253, 'z') + "\xFF\xD9\xFF"s, true, false},
    {"jpeg whose segment ends amid a marker",
     "\xFF\xD8\xFF\xCF\x01\x02"s + std::string(255, 'z') + "\xFF\xD9q"s, true, false},
    {"jpeg whose segment ends before its end",
     "\xFF\xD8\xFF\xD8\x01\x02"s + std::string(256, 'z') + "\xFF\xD9"s, true, true},
    {"jpeg cut in a segment's length", "\xFF\xD8\xFF\xE1\x00"s, true, false},
    {"png with its last chunk", "\x89PNG\r\n\x1a\n\0\0\0\0IEND1234"s, true, true},
    {"png with a chunk of 258 bytes",
     "\x89PNG\r\n\x1a\n\0\0\1\2IDAT"s + std::string(262, 'z') + "\0\0\0\0IEND1234"s, true, true},
    {"png with a chunk of 64 KiB",
     "\x89PNG\r\n\x1a\n\0\1\0\0IDAT"s + std::string(65540, 'z') + "\0\0\0\0IEND1234"s, true, true},
    {"png with a chunk of 64 KiB, most missing",
     "\x89PNG\r\n\x1a\n\0\1\0\0IDAT1234\0\0\0\0IEND1234"s, true, false},
    {"png one byte short", "\x89PNG\r\n\x1a\n\0\0\0\0IEND123"s, true, false},
    {"png whose chunk length points far away", "\x89PNG\r\n\x1a\n\xFF\xFF\xFF\xFFIDAT1234"s, true,
     false},
    {"pgm with a comment", "P5 # made by hand\n2 2\n255\nabcd", true, true},
    {"pgm with a comment that never ends", "P5 # 2 2 255\tabcd", true, false},
    {"pgm with every kind of space", "P5\r2\v2\f255\tabcd", true, true},
    {"pgm one sample short", "P5 2 2 255 abc", true, false},
    {"pgm of two bytes a sample", "P5 2 1 256 abc", true, false},
    {"ppm of 8 bits", "P6 1 2 255 abcdef", true, true},
    {"ppm one byte short", "P6 1 2 255 abcde", true, false},
    {"16-bit ppm", "P6 1 1 65535 abcdef", true, true},
    {"16-bit ppm one byte short", "P6 1 1 65535 abcde", true, false},
    {"pbm of nine pixels a row", "P4 9 1 ab", true, true},
    {"pbm of nine pixels a row, short", "P4 9 1 a", true, false},
    {"pbm of eight pixels a row", "P4 8 2 ab", true, true},
    {"pgm of decimal text", "P2 9", true, true},
    {"ppm of decimal text", "P3#", true, true},
    {"pgm of absurd size", "P5 2147483647 2147483647 65535 abcd", true, false},
    {"pgm without numbers", "P5 wide high\n", true, false},
    {"pgm without pixels", "P5 0 1 255 ", true, false},
    {"pgm without rows", "P5 1 0 255 ", true, false},
    {"bmp of its 300 bytes", "BM\x2C\1\0\0"s + std::string(294, '\0'), true, true},
    {"bmp of 301 bytes, one missing", "BM\x2D\1\0\0"s + std::string(294, '\0'), true, false},
    {"bmp of 64 KiB, one byte missing", "BM\0\0\1\0"s + std::string(65529, '\0'), true, false},
    {"bmp of 16 MiB, one byte missing", "BM\0\0\0\1"s + std::string((1 << 24) - 7, '\0'), true,
     false},
    {"bmp of a header", "BM\x1A\0\0\0"s + std::string(20, '\0'), true, true},
    {"bmp shorter than its header", "BM\x19\0\0\0"s + std::string(19, '\0'), true, false},
    {"webp of a header", "RIFF\x18\0\0\0WEBP"s + std::string(20, '\0'), true, true},
    {"webp one byte short", "RIFF\x19\0\0\0WEBP"s + std::string(20, '\0'), true, false},
    {"webp shorter than its header", "RIFF\x17\0\0\0WEBP"s + std::string(19, '\0'), true, false},
    {"tiff, whose decoder looks itself", "II*\0"s, true, true},
    {"sound", "RIFF\x18\0\0\0WAVE"s, false, false},
    {"pam", "P7 ", false, false},
    {"P0", "P0 ", false, false},
    {"two bytes", "P5", false, false},
    {"no space behind", "P5x", false, false},
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
