// Where axes, lines, labels and bars of the drawings go, worked by hand: a plot's area reaches from
// (66, 34) to (582, 380), 516 x 346 pixels.

#include <gmock/gmock.h>

#include <cmath>
#include <random>
#include <tuple>

#include "svg_axis.h"
#include "svg_bars.h"
#include "svg_labels.h"
#include "svg_plot.h"

namespace greycard::present {
namespace {

using testing::DoubleNear;
using testing::HasSubstr;
using testing::Not;
using testing::Pointwise;

TEST(AxisScale, GoesOutwardToRoundNumbers) {
  using Bound = std::optional<double>;
  const std::tuple<double, double, Bound, Bound, double, double, std::vector<double>> cases[] = {
      {0, 1, {}, {}, 0, 1, {0, 0.2, 0.4, 0.6, 0.8, 1}},
      {-3.2, 7.1, {}, {}, -4, 8, {-4, -2, 0, 2, 4, 6, 8}},
      {0, 600, {}, {}, 0, 600, {0, 100, 200, 300, 400, 500, 600}},
      {0, 31, {}, {}, 0, 40, {0, 10, 20, 30, 40}},
      {5, 5, {}, {}, 2, 8, {2, 3, 4, 5, 6, 7, 8}},
      {0, 0, {}, {}, -0.6, 0.6, {-0.6, -0.4, -0.2, 0, 0.2, 0.4, 0.6}},
      {0, 10, 1.0, {}, 1, 10, {2, 4, 6, 8, 10}},
      {3, 10, {}, 9.5, 2, 9.5, {2, 4, 6, 8}},
      {1, 2, 7.0, 1.0, 1, 7, {1, 2, 3, 4, 5, 6, 7}}};
  for (const auto& [from, to, first, last, low, high, ticks] : cases) {
    const AxisScale scale = AxisScale::over(from, to, first, last);
    EXPECT_NEAR(scale.low, low, 1e-12);
    EXPECT_NEAR(scale.high, high, 1e-12);
    EXPECT_THAT(scale.ticks, Pointwise(DoubleNear(1e-12), ticks));
  }
  const AxisScale wide = AxisScale::over(2, 4, {}, {}).widenedTo(6);
  EXPECT_THAT(wide.ticks, Pointwise(DoubleNear(1e-12), {0.0, 1.0, 2.0, 3.0, 4.0, 5.0, 6.0}));
  EXPECT_TRUE(wide.holds(0.0) && wide.holds(6.0));
  EXPECT_FALSE(wide.holds(-1e-9) || wide.holds(6.0 + 1e-9) || wide.holds(NAN));
}

SvgPlot unitPlot() {
  return {"t", {"x", 0.0, 1.0}, {"y", 0.0, 1.0}};
}

TEST(SvgPlot, DrawsWhatLiesInItsArea) {
  SvgPlot plot = unitPlot();
  plot.addLine("", {{0, 0}, {0.5, 0.5}, {NAN, 1}, {1, 1}, {1, NAN}, {2, 0}}, plotColour(0));
  plot.addMarkers("", {{1, 0}, {0, 1}, {1.01, 0}, {0, NAN}}, plotColour(0), SvgPlot::kSquare);
  plot.addArrow({0, 0.5}, {0.5, 0.5}, plotColour(0));
  plot.addArrow({0, 0.5}, {1.01, 0.5}, plotColour(0));
  plot.addText({0.5, 0.25}, "beside");
  plot.addText({0.5, 1.25}, "outside");
  plot.addTextAt({0.5, 0.75}, "here");
  const std::string svg = plot.svg();
  for (const char* part :
       {"viewBox=\"0 0 600 430\"", "d=\"M66.00 380.00L324.00 207.00M582.00 34.00M1098.00 380.00\"",
        "d=\"M578.00 376.00L586.00 376.00L586.00 384.00L578.00 384.00Z\"",
        "d=\"M62.00 30.00L70.00 30.00L70.00 38.00L62.00 38.00Z\"",
        "points=\"324.00,207.00 318.00,209.70 318.00,204.30\"",
        // A gap of 5 to the upper right of (324, 293.5); 11 high, its letters' foot at 85 %.
        "x=\"329.00\" y=\"286.85\" font-size=\"11\">beside<",
        "x=\"324.00\" y=\"124.50\" font-size=\"11\" text-anchor=\"middle\">here<"})
    EXPECT_THAT(svg, HasSubstr(part));
  EXPECT_THAT(svg, Not(HasSubstr("outside")));
  EXPECT_THAT(svg, Not(HasSubstr("M582.00 34.00L")));
  std::size_t arrows = 0;
  for (std::size_t at = 0; (at = svg.find("<polygon", at)) != std::string::npos; ++at) ++arrows;
  EXPECT_EQ(arrows, 1U);
}

TEST(SvgPlot, TakesARowMoreForALegendThatIsTooLongAndScalesAlike) {
  SvgPlot plot = unitPlot();
  for (const int letters : {30, 30, 1})  // 34 + 30 * 7.4 and 18 between are 256 and 274
    plot.addLine(std::string(static_cast<std::size_t>(letters), 'n'), {{0, 0}}, plotColour(1));
  const std::string svg = plot.svg();
  EXPECT_THAT(svg, HasSubstr("x=\"100.00\" y=\"44.00\">nnn"));
  EXPECT_THAT(svg, HasSubstr("x=\"100.00\" y=\"64.00\">nnn"));
  EXPECT_THAT(svg, HasSubstr("x=\"374.00\" y=\"64.00\">n<"));
  EXPECT_THAT(svg, HasSubstr("<rect x=\"66.00\" y=\"76.00\" width=\"516.00\" height=\"304.00\""));
  SvgPlot square = unitPlot();
  square.useEqualScales();  // 496 pixels for 1, 516 for 1.04
  square.addMarkers("", {{0.5, 0.5}, {0, 0}}, plotColour(0));
  EXPECT_THAT(square.svg(), testing::AllOf(HasSubstr("cx=\"324.00\" cy=\"282.00\""),
                                           HasSubstr("cx=\"76.00\" cy=\"530.00\"")));
}

TEST(Labels, CoverNeitherEachOtherNorMarkersNorTheEdge) {
  std::mt19937 random(7);
  const PatchRegion area{50, 40, 500, 400};
  std::vector<Label> labels;
  std::vector<Point2> points;
  for (int i = 0; i < 24; ++i) {
    points.push_back(
        {250.0 + static_cast<double>(random() % 120), 200.0 + static_cast<double>(random() % 90)});
    labels.push_back({points.back(), 14, 11});
  }
  labels[0].point = points[0] = {549, 41};
  const auto places = placeLabels(labels, points, area);
  const auto meet = [](const Point2& a, const Point2& b, double width, double height) {
    return std::abs(a.x - b.x) < width && std::abs(a.y - b.y) < height;
  };
  for (std::size_t i = 0; i < places.size(); ++i) {
    const Point2 corner = places[i].corner;
    EXPECT_TRUE(corner.x >= 50 && corner.x <= 536 && corner.y >= 40 && corner.y <= 429) << i;
    for (std::size_t k = 0; k < i; ++k)
      EXPECT_FALSE(meet(corner, places[k].corner, 14, 11)) << i << " and " << k;
    for (const Point2& point : points)
      EXPECT_FALSE(meet({corner.x + 7, corner.y + 5.5}, point, 7, 5.5)) << i;
  }
}

TEST(Labels, FarFromTheirPointTheyAreAway) {
  const std::vector<Label> same(4, Label{{100, 100}, 60, 40});
  const auto places = placeLabels(same, {}, {0, 0, 300, 300});
  for (const LabelPlace& place : places) EXPECT_FALSE(place.away);
  EXPECT_EQ(places[3].corner.x, 35.0);  // lower left, last of the four corners
  const auto crowded = placeLabels(same, {}, {100, 0, 200, 100});
  EXPECT_FALSE(crowded[0].away);
  EXPECT_TRUE(crowded[1].away);
}

TEST(BarChart, EndsAtTheRoundNumberBehindItsLongestBar) {
  BarChart chart("t", "a", {""});
  chart.addBar({"one", {}, {0.2, NAN, 0.25}, "0.45", 0.3});
  EXPECT_THAT(chart.svg(), HasSubstr("x=\"150.00\" y=\"87.50\" width=\"159.20\""));  // of 398
  EXPECT_THAT(chart.svg(), HasSubstr("x=\"309.20\" y=\"87.50\" width=\"199.00\""));
  EXPECT_THAT(chart.svg(), HasSubstr("cx=\"388.80\" cy=\"93.50\""));
  chart.addLimit(0.9, "limit");  // 0.99
  EXPECT_THAT(chart.svg(), HasSubstr("x=\"150.00\" y=\"87.50\" width=\"79.60\""));
  chart.reachTo(2.0);
  EXPECT_THAT(chart.svg(), HasSubstr("x=\"150.00\" y=\"87.50\" width=\"39.80\""));
}

}  // namespace
}  // namespace greycard::present
