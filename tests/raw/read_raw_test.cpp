#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>
#include <string>

#include "decode_raw.h"
#include "greycard/files.h"
#include "greycard/raw/write_dng.h"
#include "raw_fixture.h"
#include "raw_samples.h"
#include "tiff_directory.h"

namespace greycard {
namespace {

using testing::HasSubstr;
using namespace std::string_literals;

// The share of full scale at a sensor's place, as a DNG states it.
double shareAt(const Picture& codes, const DngDescription& d, int x, int y, int channel) {
  const auto place = static_cast<std::size_t>(d.pattern ? y % 2 * 2 + x % 2 : channel);
  const double black = d.blackLevels[place];
  return (codes.pixel(x, y)[d.pattern ? 0 : channel] - black) / (d.whiteLevel - black);
}

// A pixel from one cell: the mean of what its places of that colour hold, none below 0.
double expectedSample(const Picture& codes, const DngDescription& d, int x, int y, int channel) {
  if (!d.pattern) return std::clamp(shareAt(codes, d, x, y, channel), 0.0, 1.0);
  const auto colours = cellChannels(*d.pattern);
  double sum = 0.0, count = 0.0;
  for (std::size_t place = 0; place < 4; ++place) {
    if (colours[place] != channel) continue;
    const int across = static_cast<int>(place % 2), down = static_cast<int>(place / 2);
    const double share = shareAt(codes, d, 2 * x + across, 2 * y + down, channel);
    if (share >= 1.0) return 1.0;
    sum += std::max(share, 0.0);
    count += 1.0;
  }
  return sum / count;
}

TEST_F(RawTest, EveryKindOfDngGivesItsLinearSamples) {
  const struct {
    const char* name;
    std::optional<BayerPattern> pattern;
    int bits;
    std::array<int, 4> black;
    int white;
  } cases[] = {{"RGGB 14", BayerPattern::RGGB, 14, {512, 512, 512, 512}, 16383},
               {"BGGR 12", BayerPattern::BGGR, 12, {60, 64, 68, 80}, 4000},
               {"GRBG 10", BayerPattern::GRBG, 10, {0, 0, 0, 0}, 1023},
               {"GBRG 16", BayerPattern::GBRG, 16, {1000, 1010, 1020, 1030}, 60000},
               {"linear 16", {}, 16, {256, 256, 256, 256}, 65535},
               {"linear 8", {}, 8, {0, 0, 0, 0}, 255}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    DngDescription d;
    d.pattern = c.pattern;
    d.bits = c.bits;
    d.blackLevels = c.black;
    d.whiteLevel = c.white;
    const auto most = static_cast<unsigned>((1 << c.bits) - 1);
    const Picture codes = randomCodes(66, 38, c.pattern ? 1 : 3, most);
    writeDng(folder / "a.dng", codes, d);
    const RawCapture read = readRaw(folder / "a.dng");
    EXPECT_EQ(read.info.mosaic, c.pattern ? bayerPatternName(*c.pattern) : "linear");
    ASSERT_EQ(read.picture.width, c.pattern ? 33 : 66);
    ASSERT_EQ(read.picture.height, c.pattern ? 19 : 38);
    double worst = 0.0;
    for (int y = 0; y < read.picture.height; ++y)
      for (int x = 0; x < read.picture.width; ++x)
        for (int channel = 0; channel < 3; ++channel)
          worst = std::max(worst, std::abs(read.picture.pixel(x, y)[channel] -
                                           65535.0 * expectedSample(codes, d, x, y, channel)));
    EXPECT_LE(worst, 0.5 + 1.0 / 16.0);
  }
}

TEST_F(RawTest, TellsWhatTheFileTells) {
  DngDescription d;
  d.pattern = BayerPattern::RGGB;
  d.blackLevels = {512, 512, 512, 512};
  d.maker = "Maker";
  d.model = "Model 1";
  d.white = {0.4, 0.8, 0.5};
  d.iso = 400.0;
  d.exposureSeconds = 0.02;
  d.orientation = 6;
  writeDng(folder / "a.png", randomCodes(64, 48, 1, 16383), d);
  const CaptureInfo info = readRaw(folder / "a.png").info;
  EXPECT_EQ(info.format, "DNG");
  EXPECT_EQ(info.camera, "Maker Model 1");
  EXPECT_EQ(info.sensorWidth, 64);
  EXPECT_EQ(info.sensorHeight, 48);
  EXPECT_EQ(info.orientation, 6);
  EXPECT_EQ(info.iso, 400.0);
  EXPECT_NEAR(info.exposureSeconds.value(), 0.02, 1e-6);
  EXPECT_NEAR((*info.asShotGains)[0], 2.0, 1e-5);
  EXPECT_NEAR((*info.asShotGains)[2], 1.6, 1e-5);
  EXPECT_EQ(info.blackLevel, (Vector3{512, 512, 512}));
  EXPECT_EQ(info.whiteLevel, (Vector3{16383, 16383, 16383}));

  const CaptureInfo other = readRaw(folder / "a.png", {100.0, 8000.0}).info;
  EXPECT_EQ(other.blackLevel, (Vector3{100, 100, 100}));
  EXPECT_EQ(other.whiteLevel, (Vector3{8000, 8000, 8000}));
}

// EXIF 2.32, Orientation: where the file's first row and first column are seen.
TEST_F(RawTest, ObeysTheOrientationMark) {
  // A picture of 3 x 2 pixels, 1 2 3 / 4 5 6, as it is to be seen.
  const struct {
    int mark, width;
    std::array<int, 6> seen;
  } cases[] = {{1, 3, {1, 2, 3, 4, 5, 6}}, {2, 3, {3, 2, 1, 6, 5, 4}}, {3, 3, {6, 5, 4, 3, 2, 1}},
               {4, 3, {4, 5, 6, 1, 2, 3}}, {5, 2, {1, 4, 2, 5, 3, 6}}, {6, 2, {4, 1, 5, 2, 6, 3}},
               {7, 2, {6, 3, 5, 2, 4, 1}}, {8, 2, {3, 6, 2, 5, 1, 4}}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.mark);
    // Each seen pixel is a block, for decoders that refuse the very small.
    constexpr int kBlock = 16;
    Picture codes(3 * kBlock, 2 * kBlock, 3, 16);
    for (int y = 0; y < codes.height; ++y)
      for (int x = 0; x < codes.width; ++x)
        codes.pixel(x, y)[1] = static_cast<std::uint16_t>(1 + x / kBlock + 3 * (y / kBlock));
    DngDescription d;
    d.bits = 16;
    d.whiteLevel = 65535;
    d.orientation = c.mark;
    writeDng(folder / "a.dng", codes, d);
    const Picture read = readRaw(folder / "a.dng").picture;
    ASSERT_EQ(read.width, c.width * kBlock);
    for (int i = 0; i < 6; ++i)
      EXPECT_EQ(read.pixel(i % c.width * kBlock + 3, i / c.width * kBlock + 5)[1],
                c.seen[static_cast<std::size_t>(i)]);
  }
  const Picture codes = randomCodes(3, 2, 3, 9);
  for (const int unknown : {0, 9}) EXPECT_EQ(oriented(codes, unknown).samples, codes.samples);
}

// A DNG of 64 x 48 samples of 16 bits with some fields replaced.
std::string dngWith(const std::function<void(TiffDirectory&)>& change,
                    const std::string& samples = std::string(64 * 48 * 2, '\x20')) {
  TiffDirectory ifd;
  ifd.longs(254, {0});
  ifd.longs(256, {64});
  ifd.longs(257, {48});
  ifd.shorts(258, {16});
  ifd.shorts(259, {1});
  ifd.shorts(262, {32803});
  ifd.shorts(277, {1});
  ifd.longs(278, {48});
  ifd.longs(279, {static_cast<std::uint32_t>(samples.size())});
  ifd.shorts(33421, {2, 2});
  ifd.bytes(33422, "\0\1\1\2"s);
  ifd.bytes(50706, "\1\4\0\0"s);
  ifd.ascii(50708, "Maker Model");
  ifd.longs(273, {0});
  change(ifd);
  ifd.longs(273, {static_cast<std::uint32_t>(8 + ifd.at(8).size())});
  return "II*\0\x8\0\0\0"s + ifd.at(8) + samples;
}

TEST_F(RawTest, RefusesByName) {
  const std::string good = dngWith([](TiffDirectory&) {});
  const std::string xTrans =
      "\1\1\0\1\1\2\1\1\2\1\1\0\2\0\1\0\2\1\1\1\2\1\1\0\1\1\0\1\1\2\0\2\1\2\0\1"s;
  const struct {
    const char* says;
    std::string bytes;
  } cases[] = {
      {"X-Trans", dngWith([&](TiffDirectory& ifd) {
         ifd.shorts(33421, {6, 6});
         ifd.bytes(33422, xTrans);
       })},
      {"X-Trans", dngWith([&](TiffDirectory& ifd) { ifd.bytes(33422, xTrans); })},
      {"JPEG XL", dngWith([](TiffDirectory& ifd) { ifd.shorts(259, {52546}); })},
      {"damaged", dngWith([](TiffDirectory& ifd) {
         ifd.ascii(271, "Hasselblad");
         ifd.ascii(272, std::string(49, 'H'));
       })},
      {"damaged", dngWith([](TiffDirectory& ifd) {
         ifd.shorts(33422, {0, 1, 1, 2});
       })},
      {"damaged", dngWith([](TiffDirectory& ifd) { ifd.bytes(33422, ""); })},
      {"floating-point", dngWith([](TiffDirectory& ifd) { ifd.shorts(339, {3}); })},
      {"2x2", dngWith([](TiffDirectory& ifd) {
         ifd.shorts(33421, {4, 2});
         ifd.bytes(33422, "\0\1\1\2\1\0\2\1"s);
       })},
      {"Foveon", "FOVb" + std::string(100, 'x')},
      {"too short for 4096 x 4096", dngWith([](TiffDirectory& ifd) {
         ifd.longs(256, {4096});
         ifd.longs(257, {4096});
       })},
      {"fit in memory", dngWith([](TiffDirectory& ifd) {
         ifd.longs(256, {23171});  // squared: 2^29 and 24,329
         ifd.longs(257, {23171});
       })},
      {"too short for 23170 x 23170", dngWith([](TiffDirectory& ifd) {
         ifd.longs(256, {23170});
         ifd.longs(257, {23170});
       })},
      // 16 samples for each byte are the most.
      {"too short for 4096 x", dngWith([&](TiffDirectory& ifd) {
         ifd.longs(256, {4096});
         ifd.longs(257, {static_cast<std::uint32_t>(good.size() / 256 + 1)});
       })},
      {"damaged or cut short", dngWith([&](TiffDirectory& ifd) {
         ifd.longs(256, {4096});
         ifd.longs(257, {static_cast<std::uint32_t>(good.size() / 256)});
       })},
      {"no raw file", "\x89PNG\r\n\x1a\n" + std::string(100, 'x')},
      {"cut short", good.substr(0, good.size() - 2000)},
      {"known", "FUJIFILMCCD-RAW " + std::string(500, 'x')},
  };
  for (const auto& [says, bytes] : cases) {
    SCOPED_TRACE(says);
    writeWholeFile(folder / "a.dng", bytes);
    const std::string refusal = refusalOf([&] { readRaw(folder / "a.dng"); });
    EXPECT_THAT(refusal, HasSubstr(says));
    EXPECT_THAT(refusal, HasSubstr("a.dng"));
    EXPECT_THAT(refusalOf([&, &text = bytes] { decodeRaw(text, "the bytes", {}); }),
                HasSubstr(says));
  }
  EXPECT_EQ(decodeRaw(good, "", {}).picture.width, 32);
  const auto longest = dngWith([](TiffDirectory& ifd) {
    ifd.ascii(272, std::string(46, 'H') + "~\x1B");
    ifd.undefined(33422, "\0\1\1\2"s);
  });
  EXPECT_THAT(decodeRaw(longest, "", {}).info.camera, testing::EndsWith("HHH~"));
  EXPECT_EQ(decodeRaw(good, "", {100.0, 132.0}).picture.samples.front(), 65535);
  for (const RawOptions& levels : {RawOptions{70000.0, {}},
                                   {{}, 0.0},
                                   {{}, NAN},
                                   {-1e9, {}},
                                   {-1.0, {}},
                                   {100.0, 131.5},
                                   {{}, 65536.0}})
    EXPECT_THAT(refusalOf([&] { decodeRaw(good, "", levels); }), HasSubstr("white level"));
  EXPECT_THAT(refusalOf([&] { readRaw(folder / "missing.dng"); }), HasSubstr("missing.dng"));
}

// Black levels that repeat over four columns, and a sensor that is linear up to 0.9 of its range.
TEST_F(RawTest, LevelsMayRepeatAndEndEarly) {
  const auto levels = [](TiffDirectory& ifd) {
    ifd.shorts(50713, {1, 4});
    ifd.shorts(50714, {1000, 2000, 3000, 4000});
    ifd.longs(50717, {16000});
    ifd.rationals(50734, {0.9});
  };
  const auto share = [](double black) { return (0x2020 - black) / (0.9 * 16000.0 - black); };
  const RawCapture read = decodeRaw(dngWith(levels), "", {});
  for (int x = 0; x < 32; ++x) {
    const double left = x % 2 == 0 ? 1000.0 : 3000.0, right = left + 1000.0;
    const double wanted[] = {share(left), (share(left) + share(right)) / 2.0, share(right)};
    for (int c = 0; c < 3; ++c)
      ASSERT_NEAR(read.picture.pixel(x, 11)[c], 65535.0 * wanted[c], 0.6) << x << " " << c;
  }
  EXPECT_EQ(read.info.blackLevel, (Vector3{2500, 2500, 2500}));
  for (const double white : read.info.whiteLevel) EXPECT_NEAR(white, 14400.0, 0.01);

  std::string bytes = dngWith([&](TiffDirectory& ifd) {
    levels(ifd);
    ifd.shorts(262, {34892});
  });
  bytes.replace(bytes.size() - 2, 2, "\x10\x27");  // 10000
  const RawCapture grey = decodeRaw(bytes, "", {500.0, 10500.0});
  EXPECT_EQ(grey.info.mosaic, "grey");
  EXPECT_EQ(grey.picture.channels, 1);
  EXPECT_EQ(grey.picture.width, 64);
  EXPECT_NEAR(grey.picture.pixel(62, 47)[0], 65535.0 * (0x2020 - 500.0) / 10000.0, 0.6);
  EXPECT_NEAR(grey.picture.pixel(63, 47)[0], 65535.0 * 0.95, 0.6);
}

// A table from stored to linear codes sends a mosaic through another path, which gives the same.
TEST_F(RawTest, MosaicsAreTheSameThroughATable) {
  const Picture codes = randomCodes(64, 48, 1, 4095);
  const std::string samples(reinterpret_cast<const char*>(codes.samples.data()), 64 * 48 * 2);
  std::vector<std::uint16_t> table(4096);
  std::iota(table.begin(), table.end(), std::uint16_t{0});
  const auto change = [&](bool withTable) {
    return [&, withTable](TiffDirectory& ifd) {
      ifd.longs(50717, {4095});
      if (withTable) ifd.shorts(50712, table);
    };
  };
  EXPECT_EQ(decodeRaw(dngWith(change(true), samples), "", {}).picture.samples,
            decodeRaw(dngWith(change(false), samples), "", {}).picture.samples);
}

// Any bytes may be refused; none may crash, hang or take memory beyond what they declare.
TEST_F(RawTest, DamagedFilesAreReadOrRefused) {
  DngDescription d;
  d.pattern = BayerPattern::RGGB;
  writeDng(folder / "mosaic.dng", randomCodes(64, 48, 1, 16383), d);
  d.pattern.reset();
  writeDng(folder / "linear.dng", randomCodes(32, 24, 3, 16383), d);
  std::mt19937 random(11);
  int read = 0, refused = 0;
  for (const char* name : {"mosaic.dng", "linear.dng"}) {
    const std::string whole = readWholeFile(folder / name);
    constexpr std::size_t kDirectories = 700;
    for (int i = 0; i < 1500; ++i) {
      std::string bytes = whole;
      for (unsigned flips = 1 + random() % 4; flips > 0; --flips)
        bytes[random() % (random() % 8 != 0 ? kDirectories : bytes.size())] ^=
            static_cast<char>(1U << random() % 8);
      if (i % 5 == 0) bytes.resize(random() % bytes.size());
      try {
        EXPECT_TRUE(isWellFormed(decodeRaw(bytes, "damaged", {}).picture));
        ++read;
      } catch (const FileError&) {
        ++refused;
      } catch (const std::invalid_argument&) {
        ++refused;  // levels that make no scale
      }
    }
  }
  EXPECT_GT(read, 500);
  EXPECT_GT(refused, 500);
}

}  // namespace
}  // namespace greycard
