#include "greycard/photograph.h"

#include <gmock/gmock.h>

#include <cstring>
#include <opencv2/imgcodecs.hpp>
#include <string>

#include "greycard/files.h"
#include "greycard/raw/write_dng.h"
#include "raw_fixture.h"

namespace greycard {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST_F(RawTest, PhotographsAreToldByTheirContent) {
  DngDescription d;
  d.pattern = BayerPattern::RGGB;
  writeDng(folder / "raw.png", randomCodes(64, 48, 1, 16383), d);
  writePicture(folder / "plain.tif", randomCodes(6, 4, 3, 65535));
  std::filesystem::rename(folder / "plain.tif", folder / "plain.dng");

  const Photograph raw = readPhotograph(folder / "raw.png", {{SampleEncoding::sRGB, 10, 9000}, {}});
  EXPECT_EQ(raw.format, "DNG");
  EXPECT_EQ(raw.picture.width, 32);
  EXPECT_EQ(raw.capture.value().blackLevel[0], 10.0);
  EXPECT_EQ(raw.samples.encoding, SampleEncoding::sRGB);
  EXPECT_FALSE(raw.samples.blackLevel || raw.samples.whiteLevel);
  EXPECT_EQ(readPhotograph(folder / "raw.png").samples.encoding, SampleEncoding::linear);

  const Photograph plain = readPhotograph(folder / "plain.dng", {{{}, 10, 9000}, {}});
  EXPECT_EQ(plain.format, "TIFF");
  EXPECT_EQ(plain.picture.width, 6);
  EXPECT_FALSE(plain.capture);
  EXPECT_EQ(plain.samples.whiteLevel, 9000.0);
  EXPECT_THAT(plain.warnings, ElementsAre());
}

TEST_F(RawTest, APreviewIsNeverTakenForThePicture) {
  writeDng(folder / "a.dng", randomCodes(32, 24, 3, 16383), {});
  EXPECT_THAT(refusalOf([&] { readPicture(folder / "a.dng"); }), HasSubstr("develop it first"));

  const cv::Mat page(8, 8, CV_8UC3);
  cv::imwritemulti(folder / "pages.tif", std::vector<cv::Mat>{page, page, page});
  EXPECT_THAT(readPhotograph(folder / "pages.tif").warnings,
              ElementsAre(HasSubstr("pages.tif\" holds 2 further pages or sub-pictures")));
  // The first page becomes a preview: NewSubfileType 1 in the place of the entry ImageWidth, which
  // would follow it.
  std::string bytes = readWholeFile(folder / "pages.tif");
  const std::string reduced("\xFE\0\4\0\1\0\0\0\1\0\0\0", 12);
  const std::string ordinary("\xFE\0\4\0\1\0\0\0\2\0\0\0", 12);
  const std::size_t at = bytes.find(ordinary);
  ASSERT_NE(at, std::string::npos);
  bytes.replace(at, reduced.size(), reduced);
  writeWholeFile(folder / "preview.tif", bytes);
  EXPECT_THAT(refusalOf([&] { readPhotograph(folder / "preview.tif"); }), HasSubstr("preview"));
}

TEST_F(RawTest, FoldersAreToldAsSuch) {
  EXPECT_THAT(refusalOf([&] { readPhotograph(folder); }), HasSubstr("folder"));
}

TEST_F(RawTest, FurtherFramesAreTold) {
  writeDng(folder / "two.dng", randomCodes(32, 24, 3, 16383), {});
  std::string bytes = readWholeFile(folder / "two.dng");
  std::uint32_t first = 0;
  std::memcpy(&first, bytes.data() + 4, 4);
  const std::size_t entries = static_cast<unsigned char>(bytes[first]);
  const auto second = static_cast<std::uint32_t>(bytes.size());
  bytes += bytes.substr(first, 2 + 12 * entries) + std::string(4, '\0');
  std::memcpy(bytes.data() + first + 2 + 12 * entries, &second, 4);
  writeWholeFile(folder / "two.dng", bytes);
  EXPECT_THAT(readPhotograph(folder / "two.dng").warnings,
              ElementsAre(HasSubstr("two.dng\" holds 1 further raw frame; its first")));
}

struct DumpCase {
  const char* layout;
  std::string bytes;
};

// Each holds the codes 0x12C 0x0FF / 0x301 0x2A5 four times side by side.
TEST_F(RawTest, DumpsAreUnpacked) {
  using namespace std::string_literals;
  const auto fourTimes = [](const std::string& part) { return part + part + part + part; };
  const std::string row0 = fourTimes("\x2C\1\xFF\0"s), row1 = fourTimes("\1\3\xA5\2"s);
  // 300 = 75 * 4 + 0, 255 = 63 * 4 + 3; 769 = 192 * 4 + 1, 677 = 169 * 4 + 1
  const std::string tens0 = "\x4B\x3F\x4B\x3F\xCC"s, tens1 = "\xC0\xA9\xC0\xA9\x55"s;
  // 300 = 18 * 16 + 12, 255 = 15 * 16 + 15; 769 = 48 * 16 + 1, 677 = 42 * 16 + 5
  const std::string twelves0 = fourTimes("\x12\x0F\xFC"s), twelves1 = fourTimes("\x30\x2A\x51"s);
  const DumpCase cases[] = {{"8x2:10:RGGB", row0 + row1},
                            {"8x2:10:rggb:3:19", "xyz" + row0 + "..." + row1},
                            {"8x2:10p:RGGB", tens0 + tens0 + tens1 + tens1},
                            {"8x2:12p:RGGB", twelves0 + twelves1}};
  for (const auto& [layout, bytes] : cases) {
    SCOPED_TRACE(layout);
    writeWholeFile(folder / "a.raw", bytes);
    const RawCapture read = readDump(folder / "a.raw", dumpLayoutFromText(layout), {{}, 1000.0});
    // 65535 * 0.300; the mean of 0.255 and 0.769; 0.677
    ASSERT_EQ(read.picture.samples.size(), 12U);
    for (std::size_t i = 0; i < 12; i += 3)
      EXPECT_THAT(std::vector(read.picture.samples.begin() + static_cast<std::ptrdiff_t>(i),
                              read.picture.samples.begin() + static_cast<std::ptrdiff_t>(i) + 3),
                  ElementsAre(19661, 33554, 44367));
    EXPECT_EQ(read.info.mosaic, "RGGB");
  }
  writeWholeFile(folder / "a.raw", "\x33\x66\x66\xFF");
  EXPECT_THAT(readDump(folder / "a.raw", dumpLayoutFromText("2x2:8:BGGR")).picture.samples,
              ElementsAre(65535, 26214, 13107));
  EXPECT_THAT(refusalOf([&] { readDump(folder / "a.raw", dumpLayoutFromText("2x2:8:BGGR:1")); }),
              HasSubstr("4 bytes, and the layout 5"));
  const std::pair<const char*, const char*> wrong[] = {
      {"", "has 0 parts"},
      {"4x2", "has 1 parts, not 3 to 5"},
      {"4x2:8:RGGB:0:1:2", "has 6 parts"},
      {"4x2:10:RGGX", "\"RGGX\" is not RGGB"},
      {"4x2:ten:RGGB", "\"ten\" is no count of bits"},
      {"4x2:7:RGGB", "8 to 16 bits, not 7"},
      {"4x2:17:RGGB", "8 to 16 bits, not 17"},
      {"4x2:9p:RGGB", "10 or 12 bits, not 9"},
      {"2x2:10p:RGGB", "multiple of 4"},
      {"3x2:8:RGGB", "2 to 65534, not 3"},
      {"4x0:8:RGGB", "not 0"},
      {"4x65536:8:RGGB", "not 65536"},
      {"4x2x2:8:RGGB", "\"4x2x2\" is no size"},
      {"x2:8:RGGB", "\"x2\" is no size"},
      {"4x2:8:RGGB:-1", "\"-1\" is no count of bytes"},
      {"4x2:8:RGGB:0:far", "\"far\" is no count of bytes"}};
  for (const auto& [layout, says] : wrong)
    EXPECT_THAT(refusalOf([&, text = layout] { dumpLayoutFromText(text); }), HasSubstr(says))
        << layout;
  EXPECT_EQ(dumpLayoutFromText("65534x2:16:GRBG").width, 65534);
  EXPECT_THAT(refusalOf([&] { readDump(folder / "a.raw", dumpLayoutFromText("4x2:8:RGGB:0:3")); }),
              HasSubstr("stride of 3"));
}

}  // namespace
}  // namespace greycard
