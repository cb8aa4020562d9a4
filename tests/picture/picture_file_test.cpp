#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <opencv2/imgcodecs.hpp>
#include <random>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "decode_picture.h"
#include "greycard/errors.h"
#include "greycard/files.h"
#include "greycard/picture.h"
#include "greycard/picture_threads.h"
#include "picture_mat.h"

namespace greycard {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using namespace std::string_literals;

class PictureFile : public testing::Test {
 protected:
  void SetUp() override { std::filesystem::create_directories(folder_); }
  void TearDown() override { std::filesystem::remove_all(folder_); }
  std::filesystem::path path(const std::string& name) const { return folder_ / name; }

 private:
  std::filesystem::path folder_ =
      std::filesystem::path(testing::TempDir()) /
      ("greycard bilder äöü " + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
       testing::UnitTest::GetInstance()->current_test_info()->name());
};

Picture noise(int width, int height, int channels, int bits) {
  Picture picture(width, height, channels, bits);
  std::mt19937 random(7);
  for (auto& sample : picture.samples)
    sample = static_cast<std::uint16_t>(random() % (static_cast<unsigned>(picture.ceiling()) + 1));
  return picture;
}

template <typename Call>
std::string refusal(Call call) {
  try {
    call();
  } catch (const FileError& error) {
    return error.what();
  }
  return "no FileError";
}

TEST_F(PictureFile, EveryLosslessFormatGivesBackTheSamples) {
  const struct {
    const char* name;
    int channels, bits;
  } cases[] = {{"a.png", 1, 8},  {"a.png", 3, 16}, {"a.tif", 1, 16}, {"a.TIFF", 3, 8},
               {"a.ppm", 3, 16}, {"a.pgm", 1, 16}, {"a.pnm", 3, 8},  {"a.bmp", 3, 8}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const auto picture = noise(13, 37, c.channels, c.bits);
    writePicture(path(c.name), picture);
    const auto back = readPicture(path(c.name));
    EXPECT_EQ(std::pair(back.width, back.height), std::pair(13, 37));
    EXPECT_EQ(back.channels, c.channels);
    EXPECT_EQ(back.bits, c.bits);
    EXPECT_EQ(back.samples, picture.samples);
  }
}

// The order R, G, B, not only its round trip: a binary PPM is text and bytes in that order.
TEST_F(PictureFile, ChannelsAreRedGreenBlueWithoutAlpha) {
  const auto picture = decodePicture("P6 2 1 255 \x01\x02\x03\x0A\x0B\x0C", "bytes");
  EXPECT_THAT(picture.samples, testing::ElementsAre(1, 2, 3, 10, 11, 12));
  writePicture(path("out.ppm"), picture);
  EXPECT_TRUE(readWholeFile(path("out.ppm")).ends_with("\x01\x02\x03\x0A\x0B\x0C"));

  cv::imwrite(path("alpha.png").string(), cv::Mat(4, 6, CV_8UC4, cv::Scalar(1, 2, 3, 4)));
  const auto opaque = readPicture(path("alpha.png"));
  EXPECT_EQ(opaque.channels, 3);
  EXPECT_EQ(opaque.pixel(5, 3)[0], 3);
}

TEST_F(PictureFile, RefusesToReadWithAReason) {
  const auto encoded = [](const char* ending, const cv::Mat& image) {
    std::vector<unsigned char> bytes;
    cv::imencode(ending, image, bytes);
    return std::string(bytes.begin(), bytes.end());
  };
  const cv::Mat ramp = toMat(noise(40, 30, 3, 8));
  const auto png = encoded(".png", ramp), jpg = encoded(".jpg", ramp), tif = encoded(".tif", ramp);
  auto damaged = png;
  for (std::size_t i = 60; i < 90; ++i) damaged[i] = static_cast<char>(damaged[i] ^ 0x55);
  const struct {
    const char* name;
    std::string bytes;
    const char* reason;
  } cases[] = {
      {"empty", "", "empty"},
      {"text", "hello world, no picture here", "known format"},
      {"cut png", png.substr(0, png.size() / 2), "cut short"},
      {"cut jpg", jpg.substr(0, jpg.size() - 2), "cut short"},
      {"cut tif", tif.substr(0, tif.size() / 2), "damaged"},
      {"damaged png", damaged, "damaged"},
      {"too wide", "P5 2000000 1 255 " + std::string(2000000, 'x'), "beyond what can be read"},
      {"float tif", encoded(".tif", cv::Mat(9, 9, CV_32FC3, cv::Scalar(1, 2, 3))), "8 or 16 bits"},
      {"radiance", encoded(".hdr", ramp), "known format"},
      {"preview", "II*\0\x8\0\0\0\1\0\xFE\0\4\0\1\0\0\0\1\0\0\0\0\0\0\0"s,
       "is a preview of another"},
      {"dng", "II*\0\x8\0\0\0\1\0\x12\xC6\1\0\4\0\0\0\1\4\0\0\0\0\0\0"s, "it is a DNG, of which"},
      {"raw", "FUJIFILMCCD-RAW x", "it is a raw file, of which"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_THAT(refusal([&] { decodePicture(c.bytes, c.name); }),
                AllOf(HasSubstr(c.name), HasSubstr(c.reason)));
  }
  EXPECT_THAT(refusal([&] { readPicture(path("missing.png")); }), HasSubstr("missing.png"));
  EXPECT_THAT(refusal([&] { readPicture(path("")); }), HasSubstr("folder"));
}

TEST_F(PictureFile, JpegIsToldByItsName) {
  for (const char* name : {"a.jpg", "b/a.JPEG"}) EXPECT_TRUE(isJpegName(name)) << name;
  for (const char* name : {"a.png", "jpg", "a.jpg/b"}) EXPECT_FALSE(isJpegName(name)) << name;
}

// What each ending holds: grey and colour, of 8 and of 16 bits.
TEST_F(PictureFile, EveryEndingHoldsItsKindsOfPicture) {
  const std::pair<const char*, std::string> cases[] = {
      {"a.png", "1111"},  {"a.Tif", "1111"}, {"a.tiFF", "1111"}, {"a.pnm", "1111"},
      {"a.ppm", "0101"},  {"a.pgm", "1010"}, {"a.bmp", "1100"},  {"a.jpg", "1100"},
      {"a.JPEG", "1100"}, {"a.webp", "1100"}};
  for (const auto& [name, expected] : cases) {
    std::string held;
    checkPictureName(name);
    for (const int bits : {8, 16})
      for (const int channels : {1, 3}) {
        const auto text =
            refusal([&, file = path(name)] { writePicture(file, noise(4, 3, channels, bits)); });
        held += text == "no FileError" ? '1' : '0';
      }
    EXPECT_EQ(held, expected) << name;
  }
  EXPECT_THAT(refusal([] { checkPictureName("a.AZ@["); }), HasSubstr("the ending \".az@[\""));
}

TEST(Picture, IsWellFormedWhereItsFieldsAgree) {
  const struct {
    int width, height, channels, bits;
    std::size_t samples;
    bool agrees;
  } cases[] = {{2, 3, 1, 8, 6, true},   {2, 3, 3, 16, 18, true}, {0, 3, 1, 8, 0, false},
               {2, 0, 1, 8, 0, false},  {2, 3, 2, 8, 12, false}, {2, 3, 1, 12, 6, false},
               {2, 3, 1, 8, 5, false},  {2, 3, 1, 8, 7, false},  {2, 3, 1, 8, 8, false},
               {-2, -3, 1, 8, 6, false}};
  for (const auto& c : cases) {
    Picture picture;
    picture.width = c.width, picture.height = c.height;
    picture.channels = c.channels, picture.bits = c.bits;
    picture.samples.resize(c.samples, 300);
    EXPECT_EQ(isWellFormed(picture), c.agrees) << c.width << " " << c.height << " " << c.samples;
    if (c.agrees && c.bits == 8) {
      EXPECT_EQ(toMat(picture).at<std::uint8_t>(2, 1), 255);
    }
  }
}

TEST(ShrinkPicture, TakesMeansOfAreas) {
  Picture picture(100, 30, 1, 16);
  for (int y = 0; y < 30; ++y)
    for (int x = 0; x < 100; ++x)
      *picture.pixel(x, y) = static_cast<std::uint16_t>(100 * x + 1000 * y);
  const Picture fifth = shrinkPicture(picture, 20);
  ASSERT_EQ(std::pair(fifth.width, fifth.height), std::pair(20, 6));
  EXPECT_EQ(*fifth.pixel(3, 2), 100 * 17 + 1000 * 12);  // of columns 15..19, rows 10..14
  const Picture thin = shrinkPicture(picture, 5), same = shrinkPicture(picture, 100);
  EXPECT_EQ(std::pair(thin.width, thin.height), std::pair(5, 2));  // 1.5
  EXPECT_EQ(shrinkPicture(picture, 1).height, 1);
  EXPECT_EQ(same.samples, picture.samples);
  EXPECT_THROW(shrinkPicture(picture, 0), std::invalid_argument);
  EXPECT_THROW(shrinkPicture(Picture(), 5), std::invalid_argument);
}

TEST_F(PictureFile, RefusesToWriteAndKeepsTheOldFile) {
  const auto good = noise(4, 3, 3, 8);
  writePicture(path("old.png"), good);
  auto broken = good;
  broken.samples.pop_back();
  Picture strange = good;
  strange.bits = 12;
  for (const auto& picture : {Picture(), broken, strange}) {
    EXPECT_THAT(refusal([&] { writePicture(path("old.png"), picture); }), HasSubstr("disagree"));
    EXPECT_THAT(refusal([&] { encodePng(picture); }), HasSubstr("disagree"));
  }
  EXPECT_EQ(readPicture(path("old.png")).samples, good.samples);
  EXPECT_THAT(refusal([] { encodeJpeg(noise(4, 3, 3, 16), 90); }), HasSubstr("16 bits per sample"));
  EXPECT_LT(encodeJpeg(noise(64, 64, 3, 8), 20).size(), encodeJpeg(noise(64, 64, 3, 8), 95).size());

  const struct {
    const char* name;
    Picture picture;
    const char* reason;
  } cases[] = {{"a.gif", good, "ending"},
               {"a", good, "ending"},
               {"a.jpg", noise(4, 3, 3, 16), ".jpg can't hold 16 bits"},
               {"a.ppm", noise(4, 3, 1, 8), ".ppm can't hold a grey"},
               {"a.pgm", good, ".pgm can't hold colours"},
               {"wide.jpg", Picture(70000, 1, 3, 8), "more than .jpg can hold"},
               {"no/such/folder/a.png", good, "a.png"}};
  for (const auto& c : cases) {
    EXPECT_THAT(refusal([&] { writePicture(path(c.name), c.picture); }), HasSubstr(c.reason));
    EXPECT_FALSE(std::filesystem::exists(path(c.name))) << c.name;
  }
}

TEST(PictureThreads, AreOneOrMore) {
  setPictureThreads(1);
  EXPECT_THROW(setPictureThreads(0), std::invalid_argument);
}

TEST(PictureInMemory, IsCopiedWithoutTheGapsOfItsRows) {
  const std::array<std::uint8_t, 9> grey{1, 2, 99, 3, 4, 99, 5, 6, 99};
  const Picture gaps = pictureOf(std::span(grey), 2, 3, 1, 3);
  EXPECT_EQ(gaps.samples, (std::vector<std::uint16_t>{1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(gaps.bits, 8);
  EXPECT_EQ(pictureOf(std::span(grey).first(8), 2, 3, 1, 3).samples, gaps.samples);
  const std::array<std::uint16_t, 6> pixels{0, 65535, 2, 3, 4, 5};
  const Picture whole = pictureOf(std::span(pixels), 1, 2, 3);
  EXPECT_TRUE(isWellFormed(whole));
  EXPECT_EQ(whole.bits, 16);
  EXPECT_EQ(whole.pixel(0, 1)[0], 3);

  const std::span<const std::uint8_t> few = std::span(grey).first(7);
  EXPECT_THROW(pictureOf(few, 2, 3, 1, 3), std::invalid_argument);
  EXPECT_THROW(pictureOf(few, 2, 3, 1, 1), std::invalid_argument);
  EXPECT_THROW(pictureOf(few, 2, 1, 2), std::invalid_argument);
  EXPECT_THROW(pictureOf(few, 0, 1, 1), std::invalid_argument);
  EXPECT_THROW(pictureOf(few, 1, 8, 1), std::invalid_argument);
}

}  // namespace
}  // namespace greycard
