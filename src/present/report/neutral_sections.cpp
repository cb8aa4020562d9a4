#include "neutral_sections.h"

#include <array>
#include <cmath>

#include "greycard/image_utils_ex.h"
#include "greycard/number_text.h"
#include "html_page.h"
#include "svg_plot.h"

namespace greycard::present {
namespace {

constexpr std::size_t kFirstGrey = 18;
constexpr std::array<SvgPlot::Marker, 3> kChannelMarkers{SvgPlot::kDot, SvgPlot::kSquare,
                                                         SvgPlot::kTriangle};
constexpr std::array<std::size_t, 3> kChannelColours{1, 2, 0};  // of the palette: R, G, B

// Linear sRGB of a colour in L*a*b*.
Vector3 linearOf(const Vector3& lab) {
  Vector3 encoded{};
  ImageUtilsEx::CIELabTosRGB(encoded, lab);
  for (double& value : encoded)
    value = value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
  return encoded;
}

}  // namespace

std::string greyLightness(const ColourStory& story) {
  SvgPlot plot("Lightness of the neutral row", {"reference L*", 0.0, 100.0}, {"L*", {}, {}});
  const auto row = [&](const PatchTable& lab) {
    std::vector<Point2> points;
    for (std::size_t i = kFirstGrey; i < kPatchCount; ++i)
      points.push_back({story.referenceLab[i][0], lab[i][0]});
    return points;
  };
  plot.addLine("as the reference", {{0.0, 0.0}, {100.0, 100.0}}, quietColour(),
               SvgPlot::Stroke::Dashed);
  if (story.before)
    plot.addMarkers(story.before->name, row(story.before->lab), plotColour(1), SvgPlot::kRing);
  const std::vector<Point2> result = row(story.result.lab);
  plot.addLine(story.result.name, result, plotColour(0));
  plot.addMarkers("", result, plotColour(0));
  for (std::size_t i = 0; i < result.size(); ++i)
    plot.addText(result[i], std::to_string(kFirstGrey + i + 1));
  return htmlFigure(plot.svg(),
                    "A straight row off the line is exposure, a bent one another tone curve.");
}

std::string greyBalance(const ColourStory& story) {
  SvgPlot plot("R, G and B of the neutral row", {"patch", 18.5, 24.5},
               {"difference from the mean of R, G, B, per cent", {}, {}});
  plot.addLine("neutral", {{18.5, 0.0}, {24.5, 0.0}}, quietColour(), SvgPlot::Stroke::Dashed);
  std::array<std::vector<Point2>, 3> rows;
  for (std::size_t i = kFirstGrey; i < kPatchCount; ++i) {
    const Vector3 rgb = linearOf(story.result.lab[i]);
    const double mean = (rgb[0] + rgb[1] + rgb[2]) / 3.0;
    for (std::size_t c = 0; c < 3; ++c)
      rows[c].push_back({static_cast<double>(i + 1), 100.0 * (rgb[c] / mean - 1.0)});
  }
  const char* const names[] = {"R", "G", "B"};
  for (std::size_t c = 0; c < 3; ++c) {
    const PlotColour colour = plotColour(kChannelColours[c]);
    plot.addLine("", rows[c], colour, SvgPlot::Stroke::Dotted);
    plot.addMarkers(names[c], rows[c], colour, kChannelMarkers[c]);
  }
  return htmlFigure(plot.svg(),
                    "Linear sRGB, " + story.result.name + "; patch 19 is white, 24 black.");
}

std::string toneCurvePlot(const CameraGamma& gamma) {
  const double fullScale = static_cast<double>((1 << gamma.bits) - 1);
  SvgPlot plot("Tone curve " + gamma.name, {"linear light, full scale 1", 0.0, 1.0},
               {"output, full scale 1", 0.0, 1.0});
  const bool common = gamma.tables[0] == gamma.tables[1] && gamma.tables[0] == gamma.tables[2];
  std::vector<Point2> srgb;
  for (int i = 0; i <= 100; ++i) {
    const double light = i / 100.0;
    srgb.push_back(
        {light, light <= 0.0031308 ? 12.92 * light : 1.055 * std::pow(light, 1.0 / 2.4) - 0.055});
  }
  plot.addLine("sRGB", srgb, quietColour(), SvgPlot::Stroke::Dashed);
  const char* const names[] = {"R", "G", "B"};
  for (std::size_t c = 0; c < (common ? 1 : 3); ++c) {
    std::vector<Point2> points;
    const auto& table = gamma.tables[c];
    for (std::size_t i = 0; i < table.size(); ++i)
      points.push_back(
          {static_cast<double>(i) / static_cast<double>(table.size() - 1), table[i] / fullScale});
    plot.addLine(common ? "R, G, B" : names[c], points,
                 common ? plotColour(0) : plotColour(kChannelColours[c]));
  }
  return htmlFigure(plot.svg(), "What the corrected photograph is encoded with.");
}

}  // namespace greycard::present
