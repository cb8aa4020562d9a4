#include "chart_sections.h"

#include <algorithm>
#include <cstddef>

#include "greycard/chart_regions.h"
#include "greycard/number_text.h"
#include "greycard/present/chart.h"
#include "html_page.h"
#include "svg_plot.h"
#include "swatch_chart.h"

namespace greycard::present {
namespace {

constexpr int kPhotoSide = 900;       // pixels of the longer side in the page
constexpr double kCloserBelow = 0.7;  // share of the picture below which the chart is shown again
constexpr std::size_t kFirstGrey = 18;

struct Window {
  int left, top, width, height;
};

// The chart with half its size around it, as far as the picture goes.
Window aroundChart(const PatchQuads& patches, const Picture& picture) {
  double left = picture.width, top = picture.height, right = 0.0, bottom = 0.0;
  for (const PatchQuad& patch : patches)
    for (const Point2& corner : patch) {
      left = std::min(left, corner.x);
      top = std::min(top, corner.y);
      right = std::max(right, corner.x);
      bottom = std::max(bottom, corner.y);
    }
  const double margin = 0.5 * std::max(right - left, bottom - top);
  const auto inside = [](double value, int end) {
    return static_cast<int>(std::clamp(value, 0.0, static_cast<double>(end)));
  };
  const int x0 = inside(left - margin, picture.width - 1),
            y0 = inside(top - margin, picture.height - 1);
  return {x0, y0, inside(right + margin, picture.width - 1) - x0 + 1,
          inside(bottom + margin, picture.height - 1) - y0 + 1};
}

// The part of the picture in the window, brought to the page's size, with the patches drawn.
std::string annotatedPart(const Picture& picture, const Window& window, PatchQuads patches,
                          const char* description) {
  Picture part(window.width, window.height, picture.channels, picture.bits);
  for (int y = 0; y < window.height; ++y)
    std::copy_n(picture.pixel(window.left, window.top + y), window.width * picture.channels,
                part.pixel(0, y));
  const Picture small = shrinkPicture(part, kPhotoSide);
  const double scale = static_cast<double>(small.width) / window.width;
  for (PatchQuad& patch : patches)
    for (Point2& corner : patch)
      corner = {(corner.x - window.left) * scale, (corner.y - window.top) * scale};
  return htmlImage(annotatePatches(small, patches), description);
}

std::string labText(const Vector3& lab) {
  return fixed(lab[0], 1) + " " + fixed(lab[1], 1) + " " + fixed(lab[2], 1);
}

}  // namespace

std::string photoSection(const ChartFit& result, const Picture& picture) {
  const PatchQuads patches = result.chart.sampled();
  const Window whole{0, 0, picture.width, picture.height}, chart = aroundChart(patches, picture);
  std::string html =
      "<h2>Where the patches were sampled</h2>\n" +
      annotatedPart(picture, whole, patches, "The photograph with what was sampled of each patch");
  if (std::max(chart.width, chart.height) < kCloserBelow * std::max(whole.width, whole.height))
    html += "<h3>Closer</h3>\n" + annotatedPart(picture, chart, patches, "The chart");
  return html;
}

std::string swatchSection(const ChartFit& result) {
  return "<h2>Colours</h2>\n" +
         swatchChart(result.fit.m_targetLab, result.correctedLab, result.fit.m_uncorrectedLab) +
         "<p class=\"note\">Edge: reference. Inside, upper left: corrected. Lower right: before, "
         "with "
         "gains but without the matrix. Colours outside sRGB are clipped.</p>\n";
}

std::string chromaPlane(const ChartFit& result) {
  SvgPlot plot("Chroma plane: from the reference to the corrected colour", {"a*", {}, {}},
               {"b*", {}, {}});
  plot.useEqualScales();
  std::vector<Point2> reference, corrected, before;
  const auto plane = [](const Vector3& lab) { return Point2{lab[1], lab[2]}; };
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    reference.push_back(plane(result.fit.m_targetLab[i]));
    corrected.push_back(plane(result.correctedLab[i]));
    before.push_back(plane(result.fit.m_uncorrectedLab[i]));
    plot.addArrow(reference.back(), corrected.back(), plotColour(0));
    if (i < kFirstGrey) plot.addText(reference.back(), std::to_string(i + 1));
  }
  plot.addMarkers("before", before, quietColour());
  plot.addMarkers("reference", reference, quietColour(), SvgPlot::kRing);
  plot.addMarkers("corrected", corrected, plotColour(0));
  return plot.svg();
}

std::string greyRow(const ChartFit& result) {
  SvgPlot plot("Lightness of the neutral row", {"reference L*", 0.0, 100.0}, {"L*", 0.0, 100.0});
  std::vector<Point2> corrected, before;
  for (std::size_t i = kFirstGrey; i < kPatchCount; ++i) {
    const double reference = result.fit.m_targetLab[i][0];
    corrected.push_back({reference, result.correctedLab[i][0]});
    before.push_back({reference, result.fit.m_uncorrectedLab[i][0]});
    plot.addText(corrected.back(), std::to_string(i + 1));
  }
  plot.addLine("reference", {{0.0, 0.0}, {100.0, 100.0}}, quietColour(), SvgPlot::Stroke::Dashed);
  plot.addMarkers("before", before, plotColour(1), SvgPlot::kRing);
  plot.addLine("corrected", corrected, plotColour(0));
  plot.addMarkers("", corrected, plotColour(0));
  return plot.svg();
}

std::string matrixSection(const ChartFit& result) {
  std::vector<std::vector<std::string>> matrix = {{"", "R", "G", "B"}};
  const char* const names[] = {"R", "G", "B"};
  for (std::size_t r = 0; r < 3; ++r)
    matrix.push_back({names[r], fixed(result.matrix[r][0], 5), fixed(result.matrix[r][1], 5),
                      fixed(result.matrix[r][2], 5)});
  const Vector3& gains = result.whiteBalance;
  return "<h2>Matrix and gains</h2>\n<div class=\"side\"><div>" + htmlTable(matrix) +
         "</div><div>" +
         htmlTable(
             {{"", "R", "G", "B"},
              {"white balance", fixed(gains[0], 4), fixed(gains[1], 4), fixed(gains[2], 4)}}) +
         htmlTable({{"exposure gain", fixed(result.exposure, 4)}}) + "</div></div>\n";
}

std::string patchSection(const ChartFit& result) {
  std::vector<std::vector<std::string>> rows = {
      {"patch", "measured R G B", "noise", "before L* a* b*", "corrected L* a* b*",
       "reference L* a* b*", "dE76", "dE94", "dE00", "before: dE76", "dE00"}};
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    const Vector3& rgb = result.measuredRgb[i];
    const Vector3& noise = result.measuredNoise[i];
    rows.push_back(
        {std::to_string(i + 1) + " " + patchName(static_cast<int>(i)),
         fixed(rgb[0], 3) + " " + fixed(rgb[1], 3) + " " + fixed(rgb[2], 3),
         fixed(*std::max_element(noise.begin(), noise.end()), 4),
         labText(result.fit.m_uncorrectedLab[i]), labText(result.correctedLab[i]),
         labText(result.fit.m_targetLab[i]), fixed(result.after.cie76.patch[i], 2),
         fixed(result.after.cie94.patch[i], 2), fixed(result.after.ciede2000.patch[i], 2),
         fixed(result.before.cie76.patch[i], 2), fixed(result.before.ciede2000.patch[i], 2)});
  }
  return "<h2>Patches</h2>\n" + htmlTable(rows) +
         "<p class=\"note\">Measured: linear, full scale 1. Noise: standard deviation, the largest "
         "of "
         "the three channels.</p>\n";
}

std::string aboutPhoto(const ChartFit& result, const Picture& picture) {
  std::string html = std::string("<p>Light ") + illumName(result.light) + ", tone curve " +
                     htmlEscape(result.gamma.name) + ", " + std::to_string(picture.width) + " x " +
                     std::to_string(picture.height) + " pixels, " + std::to_string(picture.bits) +
                     " bits.</p>\n";
  for (const std::string& warning : result.warnings)
    html += "<p class=\"warning\">" + htmlEscape(warning) + "</p>\n";
  return html;
}

}  // namespace greycard::present
