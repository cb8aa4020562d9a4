#include <gmock/gmock.h>
#include <unistd.h>

#include <filesystem>
#include <limits>

#include "greycard/errors.h"
#include "greycard/files.h"
#include "greycard/present/lut2d.h"
#include "round_trip.h"

namespace greycard::present {
namespace {

using testing::HasSubstr;

Lut2DConfig draggedTable() {
  Lut2DConfig table = identityLut2d({{0.0F, 0.1F, 0.9F, 1.0F}, 0.3F});
  dragLut2d(table, {118.0, 0.52, -30.0, 0.1, 2, 3});
  table.hs_lut_bank_sel = -5;
  table.K_b_integer = 1e-30F;
  table.inverse_flag = 1.0F;
  return table;
}

TEST(Lut2dJson, WhatIsWrittenReadsBackToTheSame) {
  EXPECT_EQ(roundTrip(draggedTable()), draggedTable());
  EXPECT_EQ(roundTrip(Lut2dIdentityOptions{{0.1F, 0.2F, 0.3F, 0.4F}, 0.5F, 6.0F, 7.0F}).fade[3],
            0.4F);
  const auto drag = roundTrip(Lut2dDragOptions{1.0, 0.2, 3.0, 0.4, 5, 6, true});
  EXPECT_EQ(drag.byHueDeg, 3.0);
  EXPECT_EQ(drag.rangeColumns, 6);
  EXPECT_TRUE(drag.keepNode);
  EXPECT_EQ(roundTrip(Lut2dDragReport{{1, 2}, 3.0, 0.4, 5, 6}).node, (Lut2dNode{1, 2}));
  const auto summary = roundTrip(Lut2dSummary{1, 2.5, 0.25, 3, draggedTable()});
  EXPECT_EQ(summary.table, draggedTable());
  EXPECT_EQ(summary.largestSatChange, 0.25);
  EXPECT_EQ(roundTrip(Lut2dApplyOptions{10}).bits, 10);
  EXPECT_EQ(roundTrip(Lut2dApplyReport{"a.png", "b.json", 1023, 12, 7}).changedPixels, 7u);
  const auto inverse = roundTrip(Lut2dInverseReport{4, {{0.1, 0.2}, {0.3, 0.4}}});
  EXPECT_EQ(inverse.roundTrip.sat.worst, 0.4);
}

TEST(Lut2dJson, AColourTableIsReadWholeOrNotAtAll) {
  Lut2DConfig table = identityLut2d();
  const std::string whole = toJson(table);
  const std::string row = "    [0.0,0.0,0.0,0.0,0.0,0.0,0.0,0.0,0.0,0.0,0.0,0.0,0.0,0.0,0.0,0.0]";
  const struct {
    std::string text;
    const char* says;
  } cases[] = {
      {"", "the file is empty"},
      {"{", "it is not JSON from line 1, column 2 on"},
      {"[1, 2]", "it must hold one object"},
      {"{}", "enabled is missing"},
      {replaced(whole, "\"h_shift\": 2.0", "\"h_shift\": \"2\""), "h_shift must be a number"},
      {replaced(whole, "\"h_shift\": 2.0", "\"h_shift\": null"), "h_shift must be a number"},
      {replaced(whole, "\"h_shift\": 2.0", "\"h_shift\": -3"), "h_shift is -3; it must be"},
      {replaced(whole, "\"s_shift\": 2.0", "\"s_shift\": 1e99"),
       "s_shift must be a number that fits 32 bits"},
      {replaced(whole, "\"enabled\": 1", "\"enabled\": 300"),
       "enabled must be a whole number from 0 to 255"},
      {replaced(whole, "\"enabled\": 1", "\"enabled\": true"), "enabled must be a number"},
      {replaced(whole, "[0.0,15.0,", "[15.0,"), "lut_1d_h must be a list of 25 numbers"},
      {replaced(whole, "[0.0,15.0,", "[0.0,null,"), "lut_1d_h[1] must be a number"},
      {replaced(whole, "[0.0,15.0,", "[0.0,31.0,"), "that don't fall; entry 3 is 30"},
      {replaced(whole, row + ",\n", ""), "lut_2d_h must be 24 lists of 16 numbers"},
      {replaced(whole, row, "    [0.0]"), "lut_2d_h[0] must be a list of 16 numbers"},
      {replaced(whole, row, replaced(row, "0.0", "\"\"")), "lut_2d_h[0][0] must be a number"},
      {replaced(whole, "\"y_blend_factor\": 0.0", "\"y_blend_factor\": 1.5"),
       "y_blend_factor must be from 0 to 1"},
      {replaced(whole, "{", "{\"colour\": 1,"), "there is no field \"colour\""},
  };
  for (const auto& [text, says] : cases) expectRefused(text, table, says);

  const auto file =
      std::filesystem::path(testing::TempDir()) / ("table" + std::to_string(::getpid()) + ".json");
  writeWholeFile(file, "{}");
  try {
    readLut2d(file);
    FAIL();
  } catch (const JobError& error) {
    EXPECT_THAT(error.what(), HasSubstr(".json\" is no hue/saturation table: enabled is missing"));
  }
  writeWholeFile(file, whole);
  EXPECT_EQ(readLut2d(file), table);
  std::filesystem::remove(file);
}

TEST(Lut2dWheel, DrawsAnArrowForEveryChangeThatIsANumber) {
  Lut2DConfig table = identityLut2d();
  EXPECT_THAT(lut2dWheel(table), testing::Not(HasSubstr("<polygon")));
  table.lut_2d_h[5] = 30.0;
  EXPECT_THAT(lut2dWheel(table, "a.json"),
              testing::AllOf(HasSubstr(">Hue/saturation table a.json<"), HasSubstr("<polygon")));
  table.lut_2d_h[5] = table.lut_1d_h[3] = std::numeric_limits<double>::quiet_NaN();
  const std::string svg = lut2dWheel(table);
  EXPECT_THAT(svg, testing::Not(testing::AnyOf(HasSubstr("<polygon"), HasSubstr("nan"))));
}

}  // namespace
}  // namespace greycard::present
