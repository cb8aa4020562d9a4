// The picture path against its definition, bit for bit.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <thread>

#include "greycard/two_d_lut_helper.h"
#include "lut2d_process.h"
#include "lut2d_record.h"
#include "lut_fixtures.h"
#include "packed_nodes.h"
#include "reference_image.h"

namespace greycard {
namespace {

struct TableCase {
  const char* name;
  Lut2DConfig config;
  std::size_t pixels = 300'007;  // the last block is partly filled
};
void PrintTo(const TableCase& c, std::ostream* os) {
  *os << c.name;
}

template <typename Change>
TableCase changed(const char* name, Lut2DConfig config, Change change) {
  change(config);
  return {name, config};
}

std::vector<TableCase> tables() {
  const auto shifts = [](float h, float s) {
    return [=](Lut2DConfig& c) { c.h_shift = h, c.s_shift = s; };
  };
  const auto hueNodes = [](auto degrees) {
    return [=](Lut2DConfig& c) {
      for (std::size_t i = 0; i < 25; ++i) c.lut_1d_h[i] = degrees(static_cast<double>(i));
    };
  };
  const auto satNodes = [](auto saturation) {
    return [=](Lut2DConfig& c) {
      for (std::size_t j = 0; j < 16; ++j) c.lut_1d_s[j] = saturation(static_cast<double>(j));
    };
  };
  const auto fades = [](float a, float b, float c, float d) {
    return [=](Lut2DConfig& config) {
      config.l_boundary_start_a = a, config.l_boundary_start_b = b;
      config.l_boundary_end_a = c, config.l_boundary_end_b = d;
    };
  };
  const auto blend = [](float y) { return [=](Lut2DConfig& c) { c.y_blend_factor = y; }; };
  const Lut2DConfig some = randomTable(7, 30.0, 0.3), wild = randomTable(8, 400.0, 2.0);
  return {
      {"Zero", {}},
      {"Identity", identityTable(), 2'000'000},
      {"Some", some, 4'000'000},
      {"Wild", wild, 1'000'000},
      changed("FinestSteps", wild, shifts(0, 0)),
      changed("CoarseSteps", wild, shifts(5, 3)),
      changed("BeyondATurn", wild, shifts(6, 6)),
      changed("ManyTurns", wild, shifts(12, 10)),
      changed("LargestShifts", wild, shifts(24, 23.9F)),
      changed("LumaKept", some, blend(1.0F)),
      changed("LumaPartly", wild, blend(0.3125F)),  // an odd number of sixteenths
      changed("LumaReversed", wild, blend(-1.9F)),
      changed("LumaOverdone", wild, blend(1.9F)),
      changed("LumaSent", some, blend(3.0F)),
      changed("LumaSentBack", wild, blend(-40.0F)),
      changed("LumaFarBeyond", some, blend(3e4F)),
      changed("UnevenHues", some, hueNodes([](double i) { return 0.625 * i * i; })),
      changed("HuesFromThirty", some, hueNodes([](double i) { return 30.0 + 12.0 * i; })),
      changed("HuesBackwards", wild, hueNodes([](double i) { return 360.0 - 15.0 * i; })),
      changed("HuesFarApart", wild, hueNodes([](double i) { return 60.0 * i - 720.0; })),
      changed("HuesOverManyTurns", some, hueNodes([](double i) { return 300.0 * i - 4000.0; })),
      changed("OneHueCell", some, hueNodes([](double i) { return i > 3.0 ? 360.0 : 0.0; })),
      changed("SatsFromAFifth", some, satNodes([](double j) { return 0.2 + 0.05 * j; })),
      changed("NarrowLastSat", wild, satNodes([](double j) { return 0.001 * j; })),
      changed("NarrowerLastSat", wild,
              satNodes([](double j) { return j < 15 ? 0.01 * j : 0.1405; })),
      changed("NoLastSat", wild, satNodes([](double j) { return 0.01 * std::min(j, 14.0); })),
      changed("NarrowLastSatManyTurns", randomTable(9, 36000.0, 100.0),
              [](Lut2DConfig& c) {
                for (std::size_t j = 0; j < 16; ++j)
                  c.lut_1d_s[j] = -4.0 + 0.0005 * static_cast<double>(j);
                c.h_shift = c.s_shift = 12.0F;
              }),
      changed("LargestProducts", randomTable(10, 36000.0, 100.0),
              [](Lut2DConfig& c) {
                c.lut_1d_h.fill(-719.98);
                c.lut_1d_h[0] = -720.0;
                c.lut_1d_s.fill(-4.0);
                c.lut_1d_s[15] = -4.0 + 1.0 / 2048.0;
                c.h_shift = 21.0F, c.s_shift = 18.0F;
                c.l_boundary_start_a = -2.0F;
                c.l_boundary_start_b = c.l_boundary_end_a = c.l_boundary_end_b = 2.0F;
              }),
      changed("SatsInATangle", wild, satNodes([](double j) { return j * (15.0 - j) / 60.0; })),
      changed("SatsFromFarBelow", some, satNodes([](double j) { return j - 14.7; })),
      changed("SatsFarAbove", wild, satNodes([](double j) { return 7.0 * j * j; })),
      changed("FarEntries", randomTable(11, 1e6, 1e4), shifts(9, 9)),
      changed("NoEffect", some, fades(0, 0, 0, 0)),
      changed("SteepFades", wild, fades(0.3F, 0.3F, 0.7F, 0.7F)),
      changed("FadesCross", wild, fades(-2.0F, 0.8F, 0.2F, 2.0F)),
      changed("FadesFromAfar", some, fades(-7.5F, 0.9F, 0.95F, 7.5F)),
      changed("FadesBackwards", wild, fades(0.6F, 0.2F, 0.9F, 0.4F)),
  };
}

class PicturePath : public testing::TestWithParam<TableCase> {};

TEST_P(PicturePath, IsItsDefinition) {
  lut2d_cfg record{};
  checkConfig(GetParam().config);
  fillRecord(GetParam().config, record);
  const std::size_t rows = GetParam().pixels / 1001;
  Planes planes = noisePlanes(5, GetParam().pixels);
  // Every order of components, ties, and colours next to grey, black and white.
  for (std::size_t k = 0; k < 27 * 512; ++k) {
    constexpr int kNear[] = {-1, 0, 1};
    const int grey = static_cast<int>(k / 27 * 2);
    const auto sample = [&](std::size_t digit) {
      return static_cast<std::uint16_t>(std::clamp(grey + kNear[digit % 3], 0, 1023));
    };
    planes.r[k] = sample(k), planes.g[k] = sample(k / 3), planes.b[k] = sample(k / 9);
  }
  Planes expected = planes;
  ASSERT_EQ(reference::processimage(expected.r.data(), expected.g.data(), expected.b.data(), 1001,
                                    static_cast<std::uint16_t>(rows), record),
            1);
  ASSERT_EQ(processimage(planes.r.data(), planes.g.data(), planes.b.data(), 1001,
                         static_cast<std::uint16_t>(rows), record),
            1);
  EXPECT_TRUE(planes == expected);
}
INSTANTIATE_TEST_SUITE_P(Tables, PicturePath, testing::ValuesIn(tables()),
                         [](const auto& p) { return std::string(p.param.name); });

TEST(PicturePathExact, SeededTables) {
  for (std::uint32_t seed = 0; seed < 60; ++seed) {
    SCOPED_TRACE(seed);
    Lut2DConfig config = randomTable(seed, 5.0 * seed, 0.02 * seed);
    config.h_shift = static_cast<float>(seed % 7);
    config.s_shift = static_cast<float>(seed % 5);
    lut2d_cfg record{};
    fillRecord(config, record);
    Planes planes = noisePlanes(seed, 20'000), expected = planes;
    reference::processimage(expected.r.data(), expected.g.data(), expected.b.data(), 200, 100,
                            record);
    processimage(planes.r.data(), planes.g.data(), planes.b.data(), 200, 100, record);
    EXPECT_TRUE(planes == expected);
  }
}

TEST(PicturePathExact, UsualTablesTakeTheFastLookUp) {
  // Changes of more than a turn can't.
  for (const float shift : {0.0F, 2.0F, 4.0F, 6.0F}) {
    Lut2DConfig config = randomTable(1, shift < 6.0F ? 180.0 : 400.0, 1.0);
    config.h_shift = shift;
    lut2d_cfg record{};
    fillRecord(config, record);
    LutTables tables;
    buildTables(record, tables);
    EXPECT_EQ(PackedNodes().build(tables), shift < 6.0F) << shift;
  }
}

// One prepared table serves both.
TEST(PicturePathTwoThreads, GiveWhatOneGives) {
  TwoDLutHelper helper;
  helper.SetConfig(randomTable(4, 40.0, 0.4));
  const TwoDLutHelper& prepared = helper;
  std::array<Planes, 2> alone{noisePlanes(1, 60'000), noisePlanes(2, 60'000)}, together = alone;
  const auto process = [&](Planes& p) { prepared.ProcessImage(p.r, p.g, p.b, 300, 200, 10); };
  for (Planes& planes : alone) process(planes);
  std::thread other([&] { process(together[1]); });
  process(together[0]);
  other.join();
  EXPECT_TRUE(together == alone);
}

TEST(PicturePathExact, RefusesShortPlanesAndReadsNothingElse) {
  TwoDLutHelper helper;
  Planes planes = noisePlanes(1, 6);
  const auto run = [&](std::int32_t w, std::int32_t h) {
    return helper.ProcessImage(planes.r, planes.g, planes.b, w, h, 10);
  };
  EXPECT_FALSE(run(3, 2));
  helper.SetConfig(randomTable(3, 30.0, 0.3));
  const Planes before = planes;
  planes.b.resize(5);
  EXPECT_FALSE(run(3, 2));
  EXPECT_FALSE(run(-1, 1));  // 65535 pixels
  EXPECT_TRUE(run(0, 7));
  EXPECT_TRUE(run(65536, 7));  // 0 pixels
  EXPECT_EQ(planes.r, before.r);
  EXPECT_TRUE(run(5, 1));  // the longer planes keep their rest
  EXPECT_NE(planes.r, before.r);
  EXPECT_EQ(planes.r[5], before.r[5]);

  Planes tooLarge = noisePlanes(2, 900), clipped = tooLarge;
  for (std::size_t k = 0; k < 900; k += 7) tooLarge.g[k] = 65535, clipped.g[k] = 1023;
  EXPECT_TRUE(helper.ProcessImage(tooLarge.r, tooLarge.g, tooLarge.b, 30, 30, 10));
  EXPECT_TRUE(helper.ProcessImage(clipped.r, clipped.g, clipped.b, 30, 30, 10));
  EXPECT_TRUE(tooLarge == clipped);
}

}  // namespace
}  // namespace greycard
