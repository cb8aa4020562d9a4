#include "svg_plot.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "greycard/names.h"
#include "greycard/number_text.h"
#include "html_page.h"
#include "svg_axis.h"

namespace greycard::present {
namespace {

// All in pixels.
constexpr double kWidth = 600.0, kHeight = 430.0, kSquareHeight = 580.0;
constexpr double kLeft = 66.0, kRight = 18.0, kBottom = 50.0, kTitleHeight = 34.0;
constexpr double kLegendRow = 20.0, kLegendKey = 34.0, kLegendGap = 18.0;
constexpr double kMarkerRadius = 4.0, kSpeckRadius = 1.6, kArrowHead = 6.0;
// A generous mean width of a letter at the 13 pixels of the legend.
constexpr double kLetterWidth = 8.4;

bool isFinite(const Point2& point) {
  return std::isfinite(point.x) && std::isfinite(point.y);
}

std::string number(double value) {
  return fixed(value, 2);
}

std::string attribute(const char* name, double value) {
  return std::string(" ") + name + "=\"" + number(value) + "\"";
}

std::string textAt(double x, double y, const std::string& more, const std::string& text) {
  return "<text" + attribute("x", x) + attribute("y", y) + more + ">" +
         htmlEscape(printable(text)) + "</text>\n";
}

std::string stroke(const std::string& colour, bool dashed) {
  return " fill=\"none\" stroke=\"" + htmlEscape(colour) + "\" stroke-width=\"1.8\"" +
         " stroke-linejoin=\"round\"" + (dashed ? " stroke-dasharray=\"7 4\"" : "");
}

std::string marker(SvgPlot::Marker kind, const Point2& at, const std::string& colour) {
  const std::string safe = htmlEscape(colour);
  if (kind == SvgPlot::Marker::Speck)
    return "<circle" + attribute("cx", at.x) + attribute("cy", at.y) +
           attribute("r", kSpeckRadius) + " fill=\"" + safe +
           "\" stroke=\"#777\" stroke-width=\"0.3\"/>\n";
  if (kind == SvgPlot::Marker::Cross) {
    const auto stroke = [&](double side) {
      return "M" + number(at.x - kSpeckRadius) + " " + number(at.y - side) + "L" +
             number(at.x + kSpeckRadius) + " " + number(at.y + side);
    };
    return "<path d=\"" + stroke(kSpeckRadius) + stroke(-kSpeckRadius) + "\" stroke=\"" + safe +
           "\"/>\n";
  }
  const std::string rim = " stroke=\"#333\" stroke-width=\"0.8\"";
  if (kind == SvgPlot::Marker::Square)
    return "<rect" + attribute("x", at.x - kMarkerRadius) + attribute("y", at.y - kMarkerRadius) +
           attribute("width", 2 * kMarkerRadius) + attribute("height", 2 * kMarkerRadius) +
           " fill=\"" + safe + "\"" + rim + "/>\n";
  const std::string circle =
      "<circle" + attribute("cx", at.x) + attribute("cy", at.y) + attribute("r", kMarkerRadius);
  if (kind == SvgPlot::Marker::Ring)
    return circle + " fill=\"none\" stroke=\"" + safe + "\" stroke-width=\"1.8\"/>\n";
  return circle + " fill=\"" + safe + "\"" + rim + "/>\n";
}

}  // namespace

const char* plotColour(std::size_t index) {
  static constexpr std::array kColours{"#0072b2", "#d55e00", "#009e73",
                                       "#cc79a7", "#000000", "#e69f00"};
  return kColours[index % kColours.size()];
}

std::string hexColour(const Vector3& rgb) {
  constexpr const char* kDigits = "0123456789abcdef";
  std::string text = "#";
  for (const double component : rgb) {
    const long code =
        std::isnan(component) ? 0 : std::lround(255.0 * std::clamp(component, 0.0, 1.0));
    text += kDigits[code / 16];
    text += kDigits[code % 16];
  }
  return text;
}

// One rendering: where the plot's area lies in the picture, and the scales of its axes.
class SvgPlot::Drawing {
 public:
  explicit Drawing(const SvgPlot& plot) : m_plot(plot), m_height(heightOf(plot)) {
    placeLegend();
    chooseScales();
  }

  std::string text() const {
    std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " +
                      fixed(kWidth, 0) + " " + fixed(m_height, 0) + "\"" +
                      attribute("width", kWidth) + attribute("height", m_height) +
                      " font-family=\"sans-serif\" font-size=\"13\" role=\"img\">\n<title>" +
                      htmlEscape(printable(m_plot.m_title)) + "</title>\n" +
                      "<rect width=\"100%\" height=\"100%\" fill=\"#fff\"/>\n";
    svg += textAt(kLeft, 22.0, " font-size=\"15\" font-weight=\"bold\"", m_plot.m_title);
    svg += m_legend + axes() + lines();
    for (const auto& arrow : m_plot.m_arrows) svg += arrowOf(arrow);
    for (const auto& series : m_plot.m_series) {
      if (series.line) continue;
      for (const auto& point : series.points)
        if (isShown(point)) svg += marker(series.marker, toPixels(point), series.colour);
    }
    for (const auto& item : m_plot.m_texts) {
      if (!isShown(item.at)) continue;
      const auto at = toPixels(item.at);
      svg += textAt(at.x + 5.0, at.y - 5.0, " font-size=\"11\" fill=\"#444\"", item.text);
    }
    return svg + "</svg>\n";
  }

 private:
  static double heightOf(const SvgPlot& plot) {
    return plot.m_equalScales ? kSquareHeight : kHeight;
  }

  // Rows of keys between the title and the area, so that no curve can run behind them.
  void placeLegend() {
    double x = kLeft, y = kTitleHeight + 10.0;
    for (const auto& series : m_plot.m_series) {
      if (series.name.empty()) continue;
      const double width = kLegendKey + kLetterWidth * static_cast<double>(series.name.size());
      if (x > kLeft && x + width > kWidth - kRight) {
        x = kLeft;
        y += kLegendRow;
      }
      if (series.line)
        m_legend += "<line" + attribute("x1", x) + attribute("y1", y - 4.0) +
                    attribute("x2", x + kLegendKey - 8.0) + attribute("y2", y - 4.0) +
                    stroke(series.colour, *series.line == Stroke::Dashed) + "/>\n";
      else
        m_legend += marker(series.marker, {x + 0.4 * kLegendKey, y - 4.0}, series.colour);
      m_legend += textAt(x + kLegendKey, y, "", series.name);
      x += width + kLegendGap;
    }
    m_top = m_legend.empty() ? kTitleHeight : y + 12.0;
  }

  void chooseScales() {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    Point2 low{kInfinity, kInfinity}, high{-kInfinity, -kInfinity};
    const auto take = [&](const Point2& point) {
      if (!isFinite(point)) return;
      low = {std::min(low.x, point.x), std::min(low.y, point.y)};
      high = {std::max(high.x, point.x), std::max(high.y, point.y)};
    };
    for (const auto& series : m_plot.m_series)
      for (const auto& point : series.points) take(point);
    for (const auto& arrow : m_plot.m_arrows) {
      take(arrow.from);
      take(arrow.to);
    }
    if (!(low.x <= high.x)) low = high = {0.0, 0.0};
    m_xScale = AxisScale::over(low.x, high.x, m_plot.m_x.low, m_plot.m_x.high);
    m_yScale = AxisScale::over(low.y, high.y, m_plot.m_y.low, m_plot.m_y.high);
    if (!m_plot.m_equalScales) return;
    const double unitsPerPixel =
        std::max(m_xScale.range() / areaWidth(), m_yScale.range() / areaHeight());
    m_xScale = m_xScale.widenedTo(unitsPerPixel * areaWidth());
    m_yScale = m_yScale.widenedTo(unitsPerPixel * areaHeight());
  }

  double areaWidth() const { return kWidth - kLeft - kRight; }
  double areaHeight() const { return m_height - m_top - kBottom; }
  double areaBottom() const { return m_height - kBottom; }

  Point2 toPixels(const Point2& point) const {
    return {kLeft + (point.x - m_xScale.low) / m_xScale.range() * areaWidth(),
            areaBottom() - (point.y - m_yScale.low) / m_yScale.range() * areaHeight()};
  }
  bool isShown(const Point2& point) const {
    return m_xScale.holds(point.x) && m_yScale.holds(point.y);
  }

  std::string areaRectangle() const {
    return attribute("x", kLeft) + attribute("y", m_top) + attribute("width", areaWidth()) +
           attribute("height", areaHeight());
  }

  std::string gridLine(const Point2& from, const Point2& to, bool isZero) const {
    return "<line" + attribute("x1", from.x) + attribute("y1", from.y) + attribute("x2", to.x) +
           attribute("y2", to.y) + " stroke=\"" + (isZero ? "#999" : "#e3e3e3") + "\"/>\n";
  }

  std::string axes() const {
    std::string svg;
    for (const double tick : m_xScale.ticks) {
      const double x = toPixels({tick, m_yScale.low}).x;
      svg += gridLine({x, m_top}, {x, areaBottom()}, tick == 0.0);
      svg += textAt(x, areaBottom() + 17.0, " text-anchor=\"middle\"", AxisScale::label(tick));
    }
    for (const double tick : m_yScale.ticks) {
      const double y = toPixels({m_xScale.low, tick}).y;
      svg += gridLine({kLeft, y}, {kWidth - kRight, y}, tick == 0.0);
      svg += textAt(kLeft - 6.0, y + 4.5, " text-anchor=\"end\"", AxisScale::label(tick));
    }
    svg += "<rect" + areaRectangle() + " fill=\"none\" stroke=\"#555\"/>\n";
    svg += textAt(kLeft + 0.5 * areaWidth(), m_height - 12.0, " text-anchor=\"middle\"",
                  m_plot.m_x.title);
    const double middle = m_top + 0.5 * areaHeight();
    return svg +
           textAt(16.0, middle,
                  " text-anchor=\"middle\" transform=\"rotate(-90 16 " + number(middle) + ")\"",
                  m_plot.m_y.title);
  }

  // An inner element in picture coordinates cuts the lines off at the area's edge.
  std::string lines() const {
    std::string svg = "<svg" + areaRectangle() + " viewBox=\"" + number(kLeft) + " " +
                      number(m_top) + " " + number(areaWidth()) + " " + number(areaHeight()) +
                      "\">\n";
    for (const auto& series : m_plot.m_series) {
      if (!series.line) continue;
      std::string path;
      const char* command = "M";
      for (const auto& point : series.points) {
        if (isFinite(point)) {
          const auto at = toPixels(point);
          path += command + number(at.x) + " " + number(at.y);
        }
        command = isFinite(point) ? "L" : "M";
      }
      svg += "<path d=\"" + path + "\"" + stroke(series.colour, *series.line == Stroke::Dashed) +
             "/>\n";
    }
    return svg + "</svg>\n";
  }

  std::string arrowOf(const Arrow& arrow) const {
    if (!isShown(arrow.from) || !isShown(arrow.to)) return {};
    const auto from = toPixels(arrow.from), to = toPixels(arrow.to);
    const double length = std::hypot(to.x - from.x, to.y - from.y);
    const std::string colour = htmlEscape(arrow.colour);
    std::string svg = "<line" + attribute("x1", from.x) + attribute("y1", from.y) +
                      attribute("x2", to.x) + attribute("y2", to.y) + " stroke=\"" + colour +
                      "\" stroke-width=\"1.4\"/>\n";
    if (length < 1.0) return svg;  // no direction to show
    const double head = std::min(kArrowHead, 0.7 * length);
    const Point2 along{head * (to.x - from.x) / length, head * (to.y - from.y) / length};
    const auto corner = [&](double side) {
      return number(to.x - along.x - side * along.y) + "," +
             number(to.y - along.y + side * along.x);
    };
    return svg + "<polygon points=\"" + number(to.x) + "," + number(to.y) + " " + corner(0.45) +
           " " + corner(-0.45) + "\" fill=\"" + colour + "\"/>\n";
  }

  const SvgPlot& m_plot;
  double m_height, m_top = 0.0;
  std::string m_legend;
  AxisScale m_xScale, m_yScale;
};

SvgPlot::SvgPlot(std::string title, PlotAxis x, PlotAxis y)
    : m_title(std::move(title)), m_x(std::move(x)), m_y(std::move(y)) {}

void SvgPlot::addLine(std::string name, std::vector<Point2> points, std::string colour,
                      Stroke stroke) {
  m_series.push_back({std::move(name), std::move(colour), std::move(points), stroke, Marker::Dot});
}

void SvgPlot::addMarkers(std::string name, std::vector<Point2> points, std::string colour,
                         Marker kind) {
  m_series.push_back({std::move(name), std::move(colour), std::move(points), std::nullopt, kind});
}

void SvgPlot::addArrow(Point2 from, Point2 to, std::string colour) {
  m_arrows.push_back({from, to, std::move(colour)});
}

void SvgPlot::addText(Point2 at, std::string text) {
  m_texts.push_back({at, std::move(text)});
}

std::string SvgPlot::svg() const {
  return Drawing(*this).text();
}

}  // namespace greycard::present
