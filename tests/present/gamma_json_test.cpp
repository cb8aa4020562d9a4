#include <gmock/gmock.h>

#include <cmath>
#include <stdexcept>

#include "greycard/present/gamma.h"
#include "round_trip.h"

namespace greycard::present {
namespace {

using testing::HasSubstr;
using testing::Not;

CurveTables threeChannels() {
  return {"three", false, {{{{0, 5, 9}, {{0, 0}, {255, 255}}}, {{1, 6, 9}, {}}, {{2, 7, 9}, {}}}}};
}
CurveTables oneChannel() {
  return {"one \u66f2", true, {{{{0, 16383}, {{1, -2}}}, {}, {}}}};
}

TEST(GammaJson, WhatIsWrittenReadsBackToTheSame) {
  EXPECT_EQ(roundTrip(threeChannels()), threeChannels());
  EXPECT_EQ(roundTrip(oneChannel()), oneChannel());
  const auto listing = roundTrip(GammaCatalogueListing{{{"a", 1024, false, true}, {"b", 2}}});
  EXPECT_EQ(listing.curves.at(0).entries, 1024u);
  EXPECT_TRUE(listing.curves.at(0).immutable);
  EXPECT_EQ(roundTrip(ShowCurveOptions{CurveChannel::Blue, 5}).channel, CurveChannel::Blue);
  const auto shown =
      roundTrip(ShownCurve{"s", CurveChannel::Red, false, true, {1, 2, 3}, true, {{4, 5}}});
  EXPECT_EQ(shown.table, (GammaTable{1, 2, 3}));
  EXPECT_EQ(shown.points, (ControlPointList{{4, 5}}));
  EXPECT_EQ(roundTrip(CurveLutOptions{LutKind::To12Bits, {}, 8}).bits, 8);
  EXPECT_FALSE(roundTrip(CurveLutOptions{}).bits.has_value());
  const auto lut = roundTrip(CurveLut{"l", {}, LutKind::Of14Bits, 14, {0.1, 1.0 / 3.0}});
  EXPECT_EQ(lut.values.at(1), 1.0 / 3.0);
  EXPECT_EQ(roundTrip(CurveFileForm{64, 8}).bits, 8);
  const auto exported = roundTrip(CurveExport{threeChannels(), "a/b.txt", {256, 10}});
  EXPECT_EQ(exported.curve, threeChannels());
  EXPECT_EQ(exported.form.values, 256);
  const auto import = roundTrip(CurveImportReport{{ImportedCurve{
      oneChannel(), "c.txt", {{CurveChannel::Green, 64, 0}}, {{3, "word", "is skipped"}}}}});
  EXPECT_EQ(import.curves.at(0).fileTables.at(0).channel, CurveChannel::Green);
  EXPECT_EQ(import.curves.at(0).notes.at(0).line, 3u);
  const auto reduction = roundTrip(
      ControlPointReduction{"p", CurveChannel::Green, {{1, 2}}, -7, 1023, {1, 2}, {3, 4}});
  EXPECT_EQ(reduction.largestDeviation, -7);
  EXPECT_EQ(roundTrip(StandardCurveOptions{StandardCurveKind::HLG, 9}).nits, 9);
  EXPECT_EQ(roundTrip(StandardCurve{StandardCurveKind::HLG, 1.0, {0, 16}, {64, 99}}).table[1], 99);
  const auto found = roundTrip(
      DeGammaResult{"d", {1.0, 2.5, 255.0}, {1.0, std::nan(""), 3.0}, {{{0.0625}, {1}, {2}}}});
  EXPECT_TRUE(std::isnan(found.positions[1]));
  EXPECT_EQ(found.tables[0].at(0), 0.0625);
}

TEST(GammaJson, FieldsThatCantBeAreNamedAndTheValueStays) {
  CurveTables curve = threeChannels();
  const std::string whole = toJson(curve);
  const struct {
    std::string text;
    const char* says;
  } cases[] = {
      {"{}", "name is missing"},
      {replaced(whole, "[0,5,9]", "[0,\"5\",9]"), "table[1] must be a number"},
      {replaced(whole, "[0,5,9]", "[0,5.5,9]"), "table[1] must be a whole number from -2147483648"},
      {replaced(whole, "[255,255]", "[255]"), "points[1] must be a list of 2 numbers"},
      {replaced(whole, "\"table_green\"", "\"table_gren\""), "table_green is missing"},
      {replaced(whole, "false", "0"), "unified must be true or false"},
  };
  for (const auto& [text, says] : cases) expectRefused(text, curve, says);
  EXPECT_EQ(curve, threeChannels());

  ShowCurveOptions show;
  expectRefused("{\"chanel\": \"red\"}", show, "there is no field \"chanel\"");
  expectRefused("{\"channel\": \"rad\"}", show,
                "there is no channel \"rad\"; did you mean \"red\"");
  fromJson("{\"channel\": \"GREEN\"}", show);
  EXPECT_EQ(show.channel, CurveChannel::Green);
  EXPECT_EQ(show.points, 17);
  CurveLutOptions lut;
  expectRefused("{\"kind\": \"13bit\"}", lut, "there is no kind of table \"13bit\"");
}

TEST(GammaPlots, HoldTheirCurvesWhateverTheTables) {
  const std::string three = curvePlot(threeChannels(), oneChannel());
  for (const char* part : {">three, red</text>", ">three, blue</text>", ">one \u66f2</text>",
                           ">control points</text>", "stroke-dasharray"})
    EXPECT_THAT(three, HasSubstr(part));
  const ImportedCurve one{oneChannel(), {}, {}, {}}, other{threeChannels(), {}, {}, {}};
  EXPECT_EQ(curvePlot(CurveImportReport{{one}}), curvePlot(oneChannel()));
  const std::string several = curvePlot(CurveImportReport{{one, other}});
  EXPECT_THAT(several, HasSubstr(">Imported tone curves</text>"));
  EXPECT_THAT(several, HasSubstr(">three</text>"));
  EXPECT_THAT(several, Not(HasSubstr("red")));
  EXPECT_THAT(curvePlot(StandardCurve{StandardCurveKind::HDR10, 1000.0, {}, {64, 99}}),
              HasSubstr("HDR10 (PQ) up to 1000 cd/m\u00b2"));
  // Empty tables, and numbers that aren't: what a stranger's JSON can hold.
  const double nan = std::nan("");
  for (const std::string& svg :
       {curvePlot(CurveTables{}), curvePlot(ShownCurve{"s", {}, true, true, {5}, true, {}}),
        curvePlot(ControlPointReduction{}), curvePlot(CurveImportReport{}),
        curvePlot(StandardCurve{StandardCurveKind::HLG, nan, {}, {1, 2}}),
        curvePlot(DeGammaResult{"d", {nan, 0, 0}, {nan, nan, 1e300}, {}}, threeChannels())}) {
    EXPECT_THAT(svg, testing::EndsWith("</svg>\n"));
    for (const char* bad : {"nan", "inf"}) EXPECT_THAT(svg, Not(HasSubstr(bad)));
  }
}

}  // namespace
}  // namespace greycard::present
