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
      {replaced(whole, "[0,5,9]", "[-2147483649]"), "table[0] must be a whole number from"},
      {replaced(whole, "[0,5,9]", "[2147483648]"), "table[0] must be a whole number from"},
      {replaced(whole, "[255,255]", "[255]"), "points[1] must be a list of 2 numbers"},
      {replaced(whole, "\"table_green\"", "\"table_gren\""), "table_green is missing"},
      {replaced(whole, "false", "0"), "unified must be true or false"},
  };
  for (const auto& [text, says] : cases) expectRefused(text, curve, says);
  EXPECT_EQ(curve, threeChannels());
  const CurveImportReport report{{}, {{"a.txt", "why", {"n"}}}};
  EXPECT_EQ(roundTrip(report).refused.at(0).notes, report.refused[0].notes);

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
  GammaCurveModel model(true);
  const GammaCurvePtr curve = model.GetGammaCurveByName("VOutdoor");
  ShownCurve shown = showCurve(*curve);
  EXPECT_NE(curvePlot(*curve, shown), curvePlot(curveTables(*curve)));
  shown.unified = false;
  EXPECT_EQ(curvePlot(*curve, shown), curvePlot(curveTables(*curve)));
  const ImportedCurve one{oneChannel(), {}, {}, {}}, other{threeChannels(), {}, {}, {}};
  EXPECT_EQ(curvePlot(CurveImportReport{{one}}), curvePlot(oneChannel()));
  const std::string several = curvePlot(CurveImportReport{{one, other}});
  EXPECT_THAT(several, HasSubstr(">Imported tone curves</text>"));
  EXPECT_THAT(several, HasSubstr(">one \u66f2</text>"));
  EXPECT_THAT(several, HasSubstr(">three, blue</text>"));
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
