#include <algorithm>
#include <array>
#include <cmath>

#include "colour_sections.h"
#include "greycard/image_utils_ex.h"
#include "html_page.h"
#include "svg_plot.h"

namespace greycard::present {
namespace {

constexpr std::size_t kFirstNeutral = 18;

Point2 inPlane(const Vector3& lab) {
  return {lab[1], lab[2]};
}

// The most saturated sRGB colours round the hues: the edges of the cube from red over yellow,
// green, cyan, blue and magenta back.
std::vector<Point2> srgbOutline() {
  constexpr std::array<Vector3, 7> kCorners{
      {{1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 1, 1}, {0, 0, 1}, {1, 0, 1}, {1, 0, 0}}};
  constexpr int kSteps = 16;
  std::vector<Point2> outline;
  for (std::size_t corner = 0; corner + 1 < kCorners.size(); ++corner)
    for (int step = 0; step <= kSteps; ++step) {
      Vector3 rgb, lab;
      for (std::size_t c = 0; c < 3; ++c)
        rgb[c] = std::lerp(kCorners[corner][c], kCorners[corner + 1][c], step / double{kSteps});
      ImageUtilsEx::sRGBToCIELab(lab, rgb);
      outline.push_back(inPlane(lab));
    }
  return outline;
}

// Patches from one to before another: where each was, should be and is.
void addPatches(SvgPlot& plot, const ColourStory& story, std::size_t first, std::size_t end) {
  std::vector<Point2> before, reference;
  for (std::size_t i = first; i < end; ++i) {
    if (story.before) before.push_back(inPlane(story.before->lab[i]));
    reference.push_back(inPlane(story.referenceLab[i]));
    plot.addArrow(reference.back(), inPlane(story.result.lab[i]), quietColour());
  }
  if (story.before) plot.addMarkers(story.before->name, before, quietColour(), SvgPlot::kCross);
  plot.addMarkers("reference", reference, plotColour(4), SvgPlot::kRing);
  plot.addMarkers(story.result.name, {}, plotColour(0));
  for (std::size_t i = first; i < end; ++i) {
    plot.addMarkers("", {inPlane(story.result.lab[i])}, hexColourOfLab(story.referenceLab[i]));
    plot.addText(inPlane(story.result.lab[i]), std::to_string(i + 1));
  }
}

// The neutrals' own plane, square, with the origin in the middle.
SvgPlot neutralPlane(const ColourStory& story) {
  double reach = 2.0;
  for (std::size_t i = kFirstNeutral; i < kPatchCount; ++i)
    for (const Vector3& lab : {story.result.lab[i], story.referenceLab[i]})
      for (const double value : {lab[1], lab[2]})
        if (std::isfinite(value)) reach = std::max(reach, std::ceil(1.15 * std::abs(value)));
  SvgPlot plot("neutrals", {"a*", -reach, reach}, {"b*", -reach, reach});
  addPatches(plot, story, kFirstNeutral, kPatchCount);
  return plot;
}

}  // namespace

std::string chromaPlane(const ColourStory& story) {
  SvgPlot plot("Where the errors point", {"a*", -100.0, 110.0}, {"b*", -125.0, 105.0});
  plot.useEqualScales();
  plot.addLine("sRGB gamut", srgbOutline(), quietColour(), SvgPlot::Stroke::Dotted);
  addPatches(plot, story, 0, kFirstNeutral);
  // Below the line from cyan to blue, where no colour of a chart lies.
  plot.setInset(neutralPlane(story), {-119.0, -123.5}, {-41.0, -46.0});
  return htmlFigure(plot.svg(), "From the reference to the " + story.result.name +
                                    " colour, dots in the patches' colours, all lightnesses in one "
                                    "plane. The gamut is that of the most saturated colours.");
}

}  // namespace greycard::present
