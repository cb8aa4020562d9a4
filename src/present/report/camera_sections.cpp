#include "camera_sections.h"

#include <algorithm>
#include <cmath>

#include "greycard/colour_temperature.h"
#include "greycard/number_text.h"
#include "html_page.h"
#include "svg_elements.h"
#include "svg_plot.h"

namespace greycard::present {
namespace {

double norm(const Vector3& row) {
  return std::hypot(row[0], row[1], row[2]);
}

// Of linear values, for a screen.
std::string shownColour(const Vector3& linear) {
  Vector3 encoded;
  for (std::size_t c = 0; c < 3; ++c)
    encoded[c] =
        linear[c] <= 0.0031308 ? 12.92 * linear[c] : 1.055 * std::pow(linear[c], 1.0 / 2.4) - 0.055;
  return hexColour(encoded);
}

std::string percentText(double part, double whole) {
  return fixed(whole > 0.0 ? 100.0 * part / whole : NAN, 1) + " %";
}

// The largest over the channels of their share of a patch's mean.
std::string largestShare(const Vector3& parts, const Vector3& mean) {
  double most = 0.0, of = 1.0;
  for (std::size_t c = 0; c < 3; ++c)
    if (parts[c] * of > most * mean[c]) {
      most = parts[c];
      of = mean[c];
    }
  return percentText(most, of);
}

std::string clippingText(const std::array<ChannelClipping, 3>& channels) {
  double ceiling = 0.0, floor = 0.0;
  for (const ChannelClipping& channel : channels) {
    ceiling = std::max(ceiling, channel.ceiling);
    floor = std::max(floor, channel.floor);
  }
  const auto part = [](const char* name, double share) {
    return share > SamplingReport::kClippedAbove
               ? std::string(name) + " " + fixed(100.0 * share, 0) + " %"
               : std::string();
  };
  const std::string white = part("white", ceiling), black = part("black", floor);
  return white + (white.empty() || black.empty() ? "" : ", ") + black;
}

}  // namespace

std::string lightPlot(Illum light) {
  const LightSpectrum spectrum = lightSpectrum(light);
  const double most = std::ranges::max(spectrum.power);
  std::vector<Point2> points;
  for (std::size_t i = 0; i < spectrum.power.size(); ++i)
    points.push_back({spectrum.wavelengthNm[i], spectrum.power[i] / most});
  SvgPlot plot("Light " + illumTitle(light), {"wavelength, nm", 400.0, 700.0},
               {"relative power", 0.0, 1.0});
  plot.addLine("", points, plotColour(0));
  std::string caption = "The spectrum behind the reference colours.";
  if (const auto temperature = correlatedColourTemperature(whitePoint(light)))
    caption = "The spectrum behind the reference colours. Correlated colour temperature " +
              fixed(temperature->kelvin, 0) + " K, Duv " + fixed(temperature->duv, 4) + ".";
  return htmlFigure(plot.svg(), caption);
}

std::string matrixTables(const ChartFit& fit) {
  const char* const names[] = {"R", "G", "B"};
  std::vector<std::vector<std::string>> matrix = {{"", "R", "G", "B", "noise", "noise with gains"}};
  for (std::size_t r = 0; r < 3; ++r) {
    matrix.push_back({names[r]});
    Vector3 withGains = fit.matrix[r];
    for (std::size_t c = 0; c < 3; ++c) {
      matrix.back().push_back(fixed(fit.matrix[r][c], 5));
      withGains[c] *= fit.exposure * fit.whiteBalance[c];
    }
    matrix.back().push_back(fixed(norm(fit.matrix[r]), 2));
    matrix.back().push_back(fixed(norm(withGains), 2));
  }
  std::vector<std::vector<std::string>> gains = {{"", "R", "G", "B"}, {"white-balance gains"}};
  for (const double gain : fit.whiteBalance) gains.back().push_back(fixed(gain, 4));
  return htmlSideBySide(
      {htmlTable(matrix) +
           htmlNote("Noise: what the matrix makes of equal noise in R, G and B (root of the sum of "
                    "squares of the row); with gains: of the measured values."),
       htmlTable(gains) + htmlTable({{"exposure gain", fixed(fit.exposure, 4)}})});
}

std::string samplingMap(const ChartStory& story) {
  constexpr double kCell = 98.0, kGap = 2.0, kTop = 34.0, kSide = kCell - kGap;
  constexpr double kMapWidth = 600.0, kMapLeft = 6.0;
  const double height = kTop + kCell * kChartRows + 6.0;
  std::string drawn =
      svg::opened(kMapWidth, height, "The patches as they were sampled") +
      svg::text(kMapLeft, 22.0, " font-size=\"15\" font-weight=\"bold\"", "As they were sampled");
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    const double x = kMapLeft + kCell * static_cast<double>(i % kChartColumns),
                 y = kTop + kCell * static_cast<double>(i / kChartColumns);
    const Vector3& mean = story.measuredRgb[i];
    const double luma = 0.2126 * mean[0] + 0.7152 * mean[1] + 0.0722 * mean[2];
    const std::string ink =
        std::string(" class=\"on\" fill=\"") + (luma > 0.18 ? "#000" : "#fff") + "\"";
    const auto clipped = clippingText(story.sampling.clipping[i]);
    drawn += svg::rectangle(x, y, kSide, kSide, svg::fill(shownColour(mean)));
    const auto line = [&](int row, const std::string& text, const char* more) {
      drawn += svg::text(x + 6.0, y + 17.0 + 17.0 * row, ink + " font-size=\"12\"" + more, text);
    };
    line(0, std::to_string(i + 1), " font-weight=\"bold\"");
    line(1, "uneven " + largestShare(story.unevenness[i], mean), "");
    line(2, "noise " + largestShare(story.noise[i], mean), "");
    if (!clipped.empty()) line(3, "clipped:", " font-weight=\"bold\"");
    if (!clipped.empty()) line(4, clipped, " font-weight=\"bold\"");
  }
  return htmlFigure(drawn + "</svg>\n",
                    "Per cent of the patch's mean, the worst channel: standard deviation of the "
                    "means of 3 x 3 cells (uneven) and of a pixel (noise). Clipped: pixels at the "
                    "ends of the scale, where more than 1 %.");
}

}  // namespace greycard::present
