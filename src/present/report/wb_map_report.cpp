#include "greycard/number_text.h"
#include "greycard/present/fitting.h"
#include "html_page.h"
#include "report_page.h"
#include "svg_plot.h"

namespace greycard::present {
namespace {

Point2 inGainPlane(const WhiteBalancePoint& point) {
  return {point.rg, point.bg};
}

std::string gainPlane(const WhiteBalanceMapping& mapping) {
  SvgPlot plot("From one sensor's plane to the other's", {"R/G", {}, {}}, {"B/G", {}, {}});
  std::vector<Point2> from, to, points, mapped;
  for (std::size_t k = 0; k < mapping.from.size(); ++k) {
    from.push_back(inGainPlane(mapping.from[k]));
    to.push_back(inGainPlane(mapping.to[k]));
    plot.addArrow(from.back(), to.back(), quietColour());
    plot.addText(to.back(), "reference " + std::to_string(k + 1));
  }
  for (std::size_t i = 0; i < mapping.points.size(); ++i) {
    points.push_back(inGainPlane(mapping.points[i]));
    mapped.push_back(inGainPlane(mapping.transform(mapping.points[i])));
    plot.addArrow(points.back(), mapped.back(), quietColour());
    plot.addText(mapped.back(), std::to_string(i + 1));
  }
  plot.addMarkers("references, source", from, plotColour(0), SvgPlot::kRing);
  plot.addMarkers("references, target", to, plotColour(0));
  if (!points.empty()) {
    plot.addMarkers("points", points, plotColour(1), SvgPlot::kCross);
    plot.addMarkers("points, mapped", mapped, plotColour(1), SvgPlot::kSquare);
  }
  return plot.svg();
}

std::string pointTable(const WhiteBalanceMapping& mapping) {
  constexpr int kDigits = 7;
  std::vector<std::vector<std::string>> rows = {
      {"", "R/G", "B/G", "mapped R/G", "mapped B/G", "target R/G", "target B/G"}};
  const auto add = [&](const std::string& name, const WhiteBalancePoint& point,
                       const WhiteBalancePoint* target) {
    const WhiteBalancePoint mapped = mapping.transform(point);
    rows.push_back({name});
    for (const double value : {point.rg, point.bg, mapped.rg, mapped.bg})
      rows.back().push_back(general(value, kDigits));
    rows.back().push_back(target != nullptr ? general(target->rg, kDigits) : "");
    rows.back().push_back(target != nullptr ? general(target->bg, kDigits) : "");
  };
  for (std::size_t k = 0; k < mapping.from.size(); ++k)
    add("reference " + std::to_string(k + 1), mapping.from[k], &mapping.to[k]);
  for (std::size_t i = 0; i < mapping.points.size(); ++i)
    add("point " + std::to_string(i + 1), mapping.points[i], nullptr);
  return htmlTable(rows);
}

}  // namespace

std::string wbMapReport(const WhiteBalanceMapping& mapping,
                        const std::optional<Provenance>& provenance) {
  constexpr int kDigits = 8;
  const AffineTransform& t = mapping.transform;
  const auto row = [](const char* formula, double x, double y, double constant) {
    return std::vector<std::string>{formula, general(x, kDigits), general(y, kDigits),
                                    general(constant, kDigits)};
  };
  const std::string transform = htmlTable({{"", "X (R/G)", "Y (B/G)", "constant"},
                                           row("X'", t.a, t.b, t.e),
                                           row("Y'", t.c, t.d, t.f)}) +
                                htmlNote("X' = a X + b Y + e, Y' = c X + d Y + f.");
  const std::string body =
      htmlKeyFigure("Largest difference", general(mapping.largestResidual(), 3),
                    "Of a mapped reference from its target, in R/G or B/G. The transform carries "
                    "the three references onto their targets, so this is rounding.") +
      htmlSection("The mapping", htmlSideBySide({gainPlane(mapping), transform})) +
      htmlSection("Points", pointTable(mapping));
  return reportPage({"White-balance mapping",
                     {"3 references", std::to_string(mapping.points.size()) + " points"},
                     {}},
                    body, provenance);
}

}  // namespace greycard::present
