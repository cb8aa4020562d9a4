#include "greycard/lut2d_table.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <stdexcept>

#include "greycard/ten_bit_planes.h"
#include "greycard/two_d_lut_helper.h"

namespace greycard {
namespace {

using testing::HasSubstr;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

std::size_t entry(int row, int column) {
  return static_cast<std::size_t>(row) * kLut2dSatColumns + static_cast<std::size_t>(column);
}

TEST(Lut2dTable, TheNearestNodeRunsRoundTheCircle) {
  const struct {
    double hue, sat;
    Lut2dNode node;
  } cases[] = {
      {118, 0.52, {8, 8}},     {359, 1, {0, 15}},    {-30, 0.33, {22, 5}},  {7.5, 0.033, {0, 0}},
      {187.4, 0.99, {12, 15}}, {352.6, 0.5, {0, 7}}, {-359, 0.034, {0, 1}},
  };
  const Lut2DConfig table = identityLut2d();
  for (const auto& [hue, sat, node] : cases)
    EXPECT_EQ(nearestNode(table, hue, sat), node) << hue << ", " << sat;
}

TEST(Lut2dTable, ADragMovesItsNodeAndLeavesOthersToTheBit) {
  const Lut2DConfig before = [] {
    Lut2DConfig table = identityLut2d();
    table.lut_2d_h[entry(20, 8)] = 0.123456789;
    table.lut_2d_s[entry(20, 8)] = 1e-17;
    return table;
  }();
  Lut2DConfig table = before;
  const Lut2dDragReport report = dragLut2d(table, {118.0, 0.52, -30.0, 0.1, 2, 3});
  EXPECT_EQ(report.node, (Lut2dNode{8, 8}));
  EXPECT_EQ(report.hueDeg, 120.0);
  EXPECT_EQ(report.sat, 8.0 / 15.0);
  EXPECT_EQ(table.lut_2d_h[entry(8, 8)], -30.0);
  EXPECT_NEAR(table.lut_2d_s[entry(8, 8)], 0.1, 1e-12);
  int moved = 0;
  for (std::size_t i = 0; i < kLut2dNodes; ++i)
    moved += table.lut_2d_h[i] != before.lut_2d_h[i] || table.lut_2d_s[i] != before.lut_2d_s[i];
  EXPECT_EQ(report.movedNodes, moved);
  EXPECT_EQ(table.lut_2d_h[entry(20, 8)], 0.123456789);
  EXPECT_EQ(table.lut_2d_s[entry(20, 8)], 1e-17);
  EXPECT_EQ(table.lut_2d_h[entry(8, 0)], 0.0);  // greys stay

  table = before;
  EXPECT_GT(dragLut2d(table, {118.0, 0.52, -30.0, 0.1, 2, 3, true}).movedNodes, 0);
  EXPECT_EQ(table.lut_2d_h[entry(8, 8)], 0.0);
  table = before;
  EXPECT_EQ(dragLut2d(table, {118.0, 0.52, 100.0, 0.0, 1, 1}).movedNodes, 0);  // too narrow a range
  EXPECT_EQ(table, before);
}

// With shift 2 the 511 steps are of 4/2048 of 60 degrees and of full saturation.
TEST(Lut2dTable, ChangesBeyondTheShiftsAreCounted) {
  Lut2DConfig table = identityLut2d();
  table.lut_2d_h[3] = 59.88;
  table.lut_2d_s[4] = -0.998;
  EXPECT_EQ(cutChanges(table).nodes, 0);
  EXPECT_EQ(cutChanges(table).warning, "");
  table.lut_2d_h[3] = -59.89;
  EXPECT_THAT(cutChanges(table).warning,
              HasSubstr("1 node changes more than h_shift 2 and s_shift 2 can hold"));
  table.lut_2d_s[4] = 0.9981;
  EXPECT_EQ(cutChanges(table).nodes, 2);
  const Lut2dSummary summary = summariseLut2d(table);
  EXPECT_EQ(summary.changedNodes, 2);
  EXPECT_EQ(summary.cutNodes, 2);
  EXPECT_EQ(summary.largestHueChangeDeg, 59.89);
}

TEST(Lut2dTable, RefusalsSayWhatMustBeAndLeaveTheTable) {
  const struct {
    Lut2dDragOptions drag;
    const char* says;
  } drags[] = {
      {{kNaN, 0.5}, "the hue of the colour to drag lies in -360 to 360, not -"},
      {{0.0, 1.5}, "the saturation of the colour to drag lies in 0 to 1, not 1.5"},
      {{0.0, 0.5, 361.0}, "the drag in hue lies in -360 to 360"},
      {{0.0, 0.5, 1.0, kNaN}, "the drag in saturation lies in -1 to 1"},
      {{0.0, 0.5, 1.0, 0.0, -1}, "the range in rows lies in 0 to 100"},
      {{0.0, 0.5, 1.0, 0.0, 1, 101}, "the range in columns lies in 0 to 100"},
  };
  const auto messageOf = [](auto call) -> std::string {
    try {
      call();
    } catch (const std::invalid_argument& error) {
      return error.what();
    }
    return "accepted";
  };
  Lut2DConfig table = identityLut2d();
  for (const auto& [drag, says] : drags)
    EXPECT_THAT(messageOf([&, d = drag] { dragLut2d(table, d); }), HasSubstr(says));
  EXPECT_EQ(table, identityLut2d());
  EXPECT_THAT(messageOf([] {
                identityLut2d({{0.2F, 0.1F, 1.0F, 1.0F}});
              }),
              HasSubstr("fade must be four numbers that don't fall"));
  EXPECT_THAT(messageOf([] {
                identityLut2d({{0.2F, 0.3F, 1.0F, 1.5F}});
              }),
              HasSubstr("l_boundary_end_b must be from 0 to 1"));
  const Lut2DConfig fading = identityLut2d({{0.1F, 0.2F, 0.3F, 0.4F}});
  EXPECT_EQ(fading.l_boundary_start_a, 0.1F);
  EXPECT_EQ(fading.l_boundary_start_b, 0.2F);
  EXPECT_EQ(fading.l_boundary_end_a, 0.3F);
  EXPECT_EQ(fading.l_boundary_end_b, 0.4F);
  table.lut_1d_s[3] = 0.1;
  EXPECT_THAT(messageOf([&] { checkLut2d(table); }),
              HasSubstr("lut_1d_s must be numbers from 0 to 1 that don't fall; entry 4 is 0.1"));
  EXPECT_THAT(messageOf([&] { dragLut2d(table, {}); }), HasSubstr("lut_1d_s"));
  table.lut_1d_s[0] = -0.25;
  EXPECT_THAT(messageOf([&] { checkLut2d(table); }), HasSubstr("entry 1 is -0.25"));
  table = identityLut2d();
  table.lut_1d_h[24] = 359.0;
  EXPECT_THAT(messageOf([&] { checkLut2d(table); }), HasSubstr("lut_1d_h must be from 0 to 360"));
}

TEST(TenBitPlanes, SamplesAreScaledToTheNearestStepAndBack) {
  Picture picture(256, 1, 3, 8);
  for (int x = 0; x < 256; ++x)
    for (int c = 0; c < 3; ++c) picture.pixel(x, 0)[c] = static_cast<std::uint16_t>((x + c) % 256);
  const TenBitPlanes planes(picture, 255);
  for (std::size_t x = 0; x < 256; ++x) {
    EXPECT_EQ(planes.r[x], std::lround(static_cast<double>(x) * 1023.0 / 255.0));
    EXPECT_EQ(planes.b[x], planes.r[(x + 2) % 256]);
  }
  EXPECT_EQ(planes.picture(255, 8).samples, picture.samples);

  Picture grey(3, 1, 1, 16);
  grey.samples = {0, 4095, 50000};
  const TenBitPlanes raw(grey, 4095);
  EXPECT_THAT(raw.g, testing::ElementsAre(0, 1023, 1023));
  EXPECT_EQ(raw.g, raw.b);
  TenBitPlanes other = raw;
  other.b[1] = 0;
  EXPECT_EQ(raw.differingPixels(other), 1u);

  Lut2DConfig table = identityLut2d();
  dragLut2d(table, {118.0, 0.52, -30.0, 0.1, 2, 3});
  TwoDLutHelper helper;
  helper.SetConfig(table);
  TenBitPlanes green = planes;
  green.r.assign(256, 300), green.g.assign(256, 700), green.b.assign(256, 320);
  TenBitPlanes moved = green, expected = green;
  moved.apply(helper);
  helper.ProcessImage(expected.r, expected.g, expected.b, 256, 1, 10);
  EXPECT_EQ(moved.differingPixels(expected), 0U);
  EXPECT_GT(moved.differingPixels(green), 0U);
  const Picture both = sideBySide(picture, planes.picture(255, 8));
  EXPECT_EQ(both.width, 256 + 5 + 256);
  EXPECT_EQ(both.pixel(256, 0)[1], 255);
  EXPECT_EQ(both.pixel(260, 0)[1], 255);
  EXPECT_EQ(both.pixel(261, 0)[0], picture.pixel(0, 0)[0]);
  EXPECT_THROW(sideBySide(picture, grey), std::invalid_argument);
  EXPECT_EQ(sideBySide(Picture(999, 1, 3, 8), picture).width, 999 + 19 + 256);
  EXPECT_EQ(sideBySide(Picture(1000, 1, 3, 8), picture).width, 1000 + 20 + 256);

  grey.samples.pop_back();
  EXPECT_THROW(TenBitPlanes(grey, 4095), std::invalid_argument);
  EXPECT_THROW(TenBitPlanes(picture, 0), std::invalid_argument);
}

}  // namespace
}  // namespace greycard
