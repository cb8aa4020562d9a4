#include "swatch_chart.h"

#include <cstddef>

#include "html_page.h"
#include "svg_elements.h"

namespace greycard::present {
namespace {

constexpr int kInset = 16;

std::string triangle(const std::array<Point2, 3>& corners, const PlotColour& colour) {
  std::string points;
  for (const Point2& corner : corners)
    points += svg::number(corner.x) + "," + svg::number(corner.y) + " ";
  points.pop_back();
  return "<polygon points=\"" + points + "\"" + svg::fill(colour) + "/>";
}

}  // namespace

std::string swatchFigure(const ColourStory& story) {
  const SwatchLayout layout;
  const std::string width = std::to_string(layout.width()),
                    height = std::to_string(layout.height());
  std::string drawn = "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " + width + " " +
                      height + "\" width=\"" + width + "\" style=\"width:100%\" role=\"img\">\n" +
                      "<title>Reference and measured colours</title>\n<rect width=\"" + width +
                      "\" height=\"" + height + "\" fill=\"#1c1c1c\"/>\n";
  for (int i = 0; i < kPatchCount; ++i) {
    const auto patch = static_cast<std::size_t>(i);
    const double x = i % kChartColumns * layout.pitch + layout.gap,
                 y = i / kChartColumns * layout.pitch + layout.gap;
    const double left = x + kInset, top = y + kInset;
    const double right = x + layout.side() - kInset, bottom = y + layout.side() - kInset;
    drawn += svg::rectangle(x, y, layout.side(), layout.side(),
                            svg::fill(hexColourOfLab(story.referenceLab[patch])));
    const PlotColour result = hexColourOfLab(story.result.lab[patch]);
    if (story.before) {
      drawn += triangle({{{left, top}, {right, top}, {left, bottom}}}, result);
      drawn += triangle({{{right, top}, {right, bottom}, {left, bottom}}},
                        hexColourOfLab(story.before->lab[patch]));
    } else {
      drawn += svg::rectangle(left, top, right - left, bottom - top, svg::fill(result));
    }
    drawn += "\n";
  }
  return htmlFigure(drawn + "</svg>\n",
                    std::string("Edge: reference. Inside") +
                        (story.before ? ", upper left: " : ": ") + story.result.name +
                        (story.before ? "; lower right: " + story.before->name : std::string()) +
                        ". Colours outside sRGB are clipped.");
}

}  // namespace greycard::present
