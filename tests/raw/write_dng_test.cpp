// What a written DNG says, as LibRaw understands it and field by field.

#include "greycard/raw/write_dng.h"

#include <gmock/gmock.h>
#include <libraw/libraw.h>

#include <cstring>
#include <opencv2/core.hpp>

#include "raw_fixture.h"

namespace greycard {
namespace {

using testing::HasSubstr;

// The bytes of a field's values, TIFF 6.0, section 2.
// \param pointer  where the directory's offset stands: in the header, or that of EXIF's
std::string fieldOf(const std::string& file, std::uint16_t tag, std::size_t pointer = 4) {
  const auto number = [&](std::size_t at, std::size_t bytes) {
    std::uint32_t value = 0;
    std::memcpy(&value, file.data() + at, bytes);
    return value;
  };
  const std::size_t sizes[] = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8};
  const std::size_t first = number(pointer, 4);
  for (std::size_t at = first + 2; at < first + 2 + 12 * number(first, 2); at += 12)
    if (number(at, 2) == tag) {
      const std::size_t bytes = sizes[number(at + 2, 2)] * number(at + 4, 4);
      return file.substr(bytes > 4 ? number(at + 8, 4) : at + 8, bytes);
    }
  return "none";
}

// IEC 61966-2-1; whites of CIE 15:2004, tables T.3 and T.8; D65's stands in for others.
const cv::Matx33d kSRgbToXyz(0.4124, 0.3576, 0.1805, 0.2126, 0.7152, 0.0722, 0.0193, 0.1192,
                             0.9505);

TEST(WriteDng, StatesTheColoursOfItsLight) {
  const struct {
    Illum light;
    int mark;
    cv::Vec3d white;
  } cases[] = {{illum_D65, 21, {0.9504, 1, 1.0888}},  {illum_D50, 23, {0.9642, 1, 0.8251}},
               {illum_D75, 22, {0.9504, 1, 1.0888}},  {illum_A, 17, {1.0985, 1, 0.3558}},
               {illum_TL84, 14, {1.0096, 1, 0.6435}}, {illum_CoolWhite, 14, {0.9504, 1, 1.0888}},
               {illum_LED, 255, {0.9504, 1, 1.0888}}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.mark);
    DngDescription d;
    d.light = c.light;
    d.white = {0.5, 1.0, 0.8};
    const auto raw = openedByLibRaw(encodeDng(randomCodes(64, 48, 3, 16383), d));
    const libraw_dng_color_t& colour = raw->imgdata.color.dng_color[0];
    EXPECT_EQ(colour.illuminant, c.mark);
    for (int i = 0; i < 3; ++i) {
      const cv::Vec3d row(colour.colormatrix[i][0], colour.colormatrix[i][1],
                          colour.colormatrix[i][2]);
      const cv::Matx33d toSRgb = kSRgbToXyz.inv();
      const cv::Vec3d wanted(toSRgb(i, 0), toSRgb(i, 1), toSRgb(i, 2));
      // A row of the sRGB matrix, so long that the light's white becomes the neutral.
      EXPECT_NEAR(row.dot(wanted) / cv::norm(row) / cv::norm(wanted), 1.0, 1e-6);
      EXPECT_NEAR(row.dot(c.white), d.white[static_cast<std::size_t>(i)], 3e-3);
    }
  }
}

TEST(WriteDng, StatesItsFields) {
  DngDescription d;
  d.pattern = BayerPattern::GBRG;
  d.bits = 12;
  d.blackLevels = {60, 64, 68, 80};
  d.whiteLevel = 4000;
  d.maker = "Maker";
  d.model = "Model 1";
  const std::string bytes = encodeDng(randomCodes(64, 48, 1, 4095), d);
  using namespace std::string_literals;
  const std::pair<std::uint16_t, std::string> cases[] = {{254, std::string(4, '\0')},
                                                         {256, "\x40\0\0\0"s},
                                                         {257, "\x30\0\0\0"s},
                                                         {258, "\x0C\0"s},
                                                         {259, "\1\0"s},
                                                         {262, "\x23\x80"s},
                                                         {271, "Maker\0"s},
                                                         {272, "Model 1\0"s},
                                                         {274, "\1\0"s},
                                                         {277, "\1\0"s},
                                                         {278, "\x30\0\0\0"s},
                                                         {279, "\0\x12\0\0"s},
                                                         {284, "\1\0"s},
                                                         {33421, "\2\0\2\0"s},
                                                         {33422, "\1\2\0\1"s},
                                                         {50706, "\1\4\0\0"s},
                                                         {50707, "\1\1\0\0"s},
                                                         {50708, "Maker Model 1\0"s},
                                                         {50710, "\0\1\2"s},
                                                         {50711, "\1\0"s},
                                                         {50713, "\2\0\2\0"s},
                                                         {50714, "\x3C\0\x40\0\x44\0\x50\0"s},
                                                         {50717, "\xA0\x0F\0\0"s}};
  for (const auto& [tag, values] : cases) EXPECT_EQ(fieldOf(bytes, tag), values) << tag;
  const std::size_t exif = bytes.find("\x69\x87\4\0\1\0\0\0"s) + 8;
  EXPECT_EQ(fieldOf(bytes, 36864, exif), "0230");
  EXPECT_EQ(fieldOf(bytes, 34855, exif), "\x64\0"s);                      // ISO 100
  EXPECT_EQ(fieldOf(bytes, 33434, exif), "\x10\x27\0\0\x40\x42\x0F\0"s);  // 1e4 / 1e6 s
  d.pattern.reset();
  const std::string linear = encodeDng(randomCodes(6, 4, 3, 4095), d);
  EXPECT_EQ(fieldOf(linear, 262), "\x4C\x88");
  EXPECT_EQ(fieldOf(linear, 258), "\x0C\0\x0C\0\x0C\0"s);
  EXPECT_EQ(fieldOf(linear, 50714), "\x3C\0\x40\0\x44\0"s);
  EXPECT_EQ(fieldOf(linear, 33422), "none");
}

TEST(WriteDng, TakesOneSampleOfEachPixel) {
  Picture picture(4, 2, 3, 16);
  for (std::size_t i = 0; i < picture.samples.size(); ++i)
    picture.samples[i] = static_cast<std::uint16_t>(i);
  EXPECT_THAT(mosaicOf(picture, BayerPattern::RGGB).samples,
              testing::ElementsAre(0, 4, 6, 10, 13, 17, 19, 23));
  EXPECT_THAT(mosaicOf(picture, BayerPattern::GBRG).samples,
              testing::ElementsAre(1, 5, 7, 11, 12, 16, 18, 22));
  DngDescription d;
  d.iso = 400.6;
  EXPECT_EQ(openedByLibRaw(encodeDng(randomCodes(64, 48, 3, 9), d))->imgdata.other.iso_speed,
            401.0F);
}

TEST(WriteDng, RefusesWhatNoDngHolds) {
  using Change = void (*)(DngDescription&);
  const std::pair<const char*, Change> cases[] = {
      {"three without", [](DngDescription& d) { d.pattern.reset(); }},
      {"not 9", [](DngDescription& d) { d.bits = 9; }},
      {"not 7", [](DngDescription& d) { d.bits = 7; }},
      {"up to 1023", [](DngDescription& d) { d.bits = 10; }},
      {"black below white", [](DngDescription& d) { d.blackLevels[3] = d.whiteLevel; }},
      {"0 or above", [](DngDescription& d) { d.blackLevels[1] = -1; }},
      {"values above 0", [](DngDescription& d) { d.white[1] = 0.0; }},
      {"values above 0", [](DngDescription& d) { d.white[2] = HUGE_VAL; }},
      {"ISO 1 to", [](DngDescription& d) { d.iso = 0.5; }},
      {"ISO 1 to 65535", [](DngDescription& d) { d.iso = 65536; }},
      {"4000 seconds", [](DngDescription& d) { d.exposureSeconds = 4001; }},
      {"1e-6 to", [](DngDescription& d) { d.exposureSeconds = 0; }},
      {"1 to 8", [](DngDescription& d) { d.orientation = 0; }},
      {"1 to 8", [](DngDescription& d) { d.orientation = 9; }}};
  const Picture codes = randomCodes(8, 6, 1, 1023);
  for (const auto& [says, change] : cases) {
    DngDescription d;
    d.pattern = BayerPattern::RGGB;
    change(d);
    EXPECT_THAT(refusalOf([&, &described = d] { encodeDng(codes, described); }), HasSubstr(says));
  }
  DngDescription edge{BayerPattern::RGGB, 8};
  edge.whiteLevel = 255;
  edge.blackLevels = {0, 254, 0, 254};
  edge.iso = 65535;
  edge.exposureSeconds = 4000;
  edge.orientation = 8;
  EXPECT_EQ(refusalOf([&] { encodeDng(codes, edge); }), "no refusal");
  for (const auto& [width, height] : {std::pair{7, 6}, std::pair{8, 5}}) {
    const auto says = HasSubstr("even");
    EXPECT_THAT(refusalOf([&, w = width, h = height] {
                  encodeDng(randomCodes(w, h, 1, 9), DngDescription{BayerPattern::RGGB});
                }),
                says);
    EXPECT_THAT(refusalOf([&, w = width, h = height] {
                  mosaicOf(randomCodes(w, h, 3, 9), BayerPattern::RGGB);
                }),
                says);
  }
  EXPECT_THAT(refusalOf([&] { mosaicOf(codes, BayerPattern::RGGB); }), HasSubstr("three channels"));
}

}  // namespace
}  // namespace greycard
