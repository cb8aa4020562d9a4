#include "svg_plot.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "svg_axis.h"
#include "svg_labels.h"

namespace greycard::present {
namespace {

using svg::attribute;
using svg::number;

// All in pixels.
constexpr double kWidth = 600.0, kHeight = 430.0, kSquareHeight = 580.0;
constexpr double kLegendRow = 20.0, kLegendKey = 34.0, kLegendGap = 18.0;
constexpr double kArrowHead = 6.0;
constexpr double kPlotLabelHeight = 11.0,
                 kPlotLabelLetters = 11.0 / 13.0;  // of the size of other texts

// Room around the area of a plot, and of one inside another.

bool isFinite(const Point2& point) {
  return std::isfinite(point.x) && std::isfinite(point.y);
}

std::string dashes(SvgPlot::Stroke kind) {
  if (kind == SvgPlot::Stroke::Solid || kind == SvgPlot::Stroke::Broad) return "";
  return std::string(" stroke-dasharray=\"") +
         (kind == SvgPlot::Stroke::Dashed ? "7 4\"" : "1.5 3.5\" stroke-linecap=\"round\"");
}

std::string lineLook(const PlotColour& colour, SvgPlot::Stroke kind) {
  const char* const width = kind == SvgPlot::Stroke::Broad
                                ? " stroke-width=\"7\" stroke-opacity=\".45\""
                                : " stroke-width=\"1.8\"";
  return std::string(" fill=\"none\" stroke-linejoin=\"round\"") + width + svg::stroke(colour) +
         dashes(kind);
}

}  // namespace

struct SvgPlot::Inset {
  SvgPlot plot;
  Point2 lowerLeft, upperRight;
};

// One rendering: where the plot's area lies in the picture, and the scales of its axes.
class SvgPlot::Drawing {
  struct Margins {
    double left, top, right, bottom;
  };
  static constexpr Margins kMargins{66.0, 34.0, 18.0, 50.0}, kInsetMargins{34.0, 20.0, 8.0, 20.0};

 public:
  // \param frame  of the plot with its margins
  Drawing(const SvgPlot& plot, const PatchRegion& frame, bool isInset)
      : m_plot(plot), m_frame(frame), m_margins(isInset ? kInsetMargins : kMargins) {
    if (!isInset) placeLegend();
    chooseScales();
  }

  std::string text() const {
    std::string drawn = m_legend + axes() + lines();
    for (const auto& arrow : m_plot.m_arrows) drawn += arrowOf(arrow);
    for (const auto& series : m_plot.m_series) drawn += markersOf(series);
    return drawn + labels() + inset();
  }

 private:
  // Rows of keys between the title and the area, so that no curve can run behind them.
  void placeLegend() {
    double x = left(), y = m_margins.top + 10.0;
    for (const auto& series : m_plot.m_series) {
      if (series.name.empty()) continue;
      const double width = kLegendKey + svg::textWidth(series.name);
      if (x > left() && x + width > right()) {
        x = left();
        y += kLegendRow;
      }
      if (series.line)
        m_legend += svg::line({x, y - 4.0}, {x + kLegendKey - 8.0, y - 4.0},
                              lineLook(series.colour, *series.line));
      else
        m_legend += rimmed(
            series, svg::marker(series.marker, {x + 0.4 * kLegendKey, y - 4.0}, series.colour));
      m_legend += svg::text(x + kLegendKey, y, "", series.name);
      x += width + kLegendGap;
    }
    if (!m_legend.empty()) m_margins.top = y + 12.0;
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

  double left() const { return m_frame.left + m_margins.left; }
  double right() const { return m_frame.left + m_frame.width - m_margins.right; }
  double top() const { return m_frame.top + m_margins.top; }
  double bottom() const { return m_frame.top + m_frame.height - m_margins.bottom; }
  double areaWidth() const { return right() - left(); }
  double areaHeight() const { return bottom() - top(); }
  PatchRegion area() const { return {left(), top(), areaWidth(), areaHeight()}; }
  bool isInset() const { return m_margins.left == kInsetMargins.left; }

  Point2 toPixels(const Point2& point) const {
    return {left() + (point.x - m_xScale.low) / m_xScale.range() * areaWidth(),
            bottom() - (point.y - m_yScale.low) / m_yScale.range() * areaHeight()};
  }
  bool isShown(const Point2& point) const {
    return m_xScale.holds(point.x) && m_yScale.holds(point.y);
  }

  static std::string gridLine(const Point2& from, const Point2& to, bool isZero) {
    return svg::line(
        from, to,
        isZero ? " class=\"zero\" stroke=\"#999\"" : " class=\"grid\" stroke=\"#e3e3e3\"");
  }

  std::string axes() const {
    const std::string size = isInset() ? " font-size=\"10\"" : "";
    const double below = isInset() ? 12.0 : 17.0;
    std::string drawn;
    for (const double tick : m_xScale.ticks) {
      const double x = toPixels({tick, m_yScale.low}).x;
      drawn += gridLine({x, top()}, {x, bottom()}, tick == 0.0);
      drawn +=
          svg::text(x, bottom() + below, " text-anchor=\"middle\"" + size, AxisScale::label(tick));
    }
    for (const double tick : m_yScale.ticks) {
      const double y = toPixels({m_xScale.low, tick}).y;
      drawn += gridLine({left(), y}, {right(), y}, tick == 0.0);
      drawn +=
          svg::text(left() - 5.0, y + 4.5, " text-anchor=\"end\"" + size, AxisScale::label(tick));
    }
    drawn += svg::rectangle(left(), top(), areaWidth(), areaHeight(),
                            " class=\"frame\" fill=\"none\" stroke=\"#555\"");
    const std::string centred = " text-anchor=\"middle\"";
    const double middle = top() + 0.5 * areaHeight();
    if (isInset())
      return drawn + svg::text(left() + 0.5 * areaWidth(), top() - 6.0,
                               centred + " font-size=\"11\"", m_plot.m_title);
    return drawn +
           svg::text(left(), m_frame.top + 22.0, " font-size=\"15\" font-weight=\"bold\"",
                     m_plot.m_title) +
           svg::text(left() + 0.5 * areaWidth(), m_frame.top + m_frame.height - 12.0, centred,
                     m_plot.m_x.title) +
           svg::text(16.0, middle, centred + " transform=\"rotate(-90 16 " + number(middle) + ")\"",
                     m_plot.m_y.title);
  }

  // An inner element in picture coordinates cuts the lines off at the area's edge.
  std::string lines() const {
    std::string drawn = "<svg" + attribute("x", left()) + attribute("y", top()) +
                        attribute("width", areaWidth()) + attribute("height", areaHeight()) +
                        " viewBox=\"" + number(left()) + " " + number(top()) + " " +
                        number(areaWidth()) + " " + number(areaHeight()) + "\">\n";
    for (const auto& series : m_plot.m_series) {
      if (!series.line) continue;
      std::string path;
      const char* command = "M";
      for (const auto& point : series.points) {
        if (isFinite(point)) {
          const auto at = toPixels(point);
          path += command + number(at.x) + " " + number(at.y);
          command = "L";
        } else {
          command = "M";
        }
      }
      if (!path.empty())
        drawn += "<path d=\"" + path + "\"" + lineLook(series.colour, *series.line) + "/>\n";
    }
    return drawn + "</svg>\n";
  }

  static std::string rimmed(const Series& series, const std::string& markers) {
    if (series.marker.hollow || series.marker.shape == Marker::Shape::Cross) return markers;
    const char* const width = series.marker.radius < 3.0 ? "0.4" : "0.8";
    return std::string("<g stroke-width=\"") + width + "\"" +
           (series.rim ? svg::stroke(*series.rim) : " class=\"rim\" stroke=\"#333\"") + ">" +
           markers + "</g>\n";
  }

  std::string markersOf(const Series& series) const {
    std::string drawn;
    if (!series.line)
      for (const auto& point : series.points)
        if (isShown(point)) drawn += svg::marker(series.marker, toPixels(point), series.colour);
    return drawn.empty() ? "" : rimmed(series, drawn);
  }

  std::string arrowOf(const Arrow& arrow) const {
    if (!isShown(arrow.from) || !isShown(arrow.to)) return {};
    const auto from = toPixels(arrow.from), to = toPixels(arrow.to);
    const double length = std::hypot(to.x - from.x, to.y - from.y);
    std::string drawn = svg::line(from, to, svg::stroke(arrow.colour));
    if (length < 1.0) return drawn;
    const double ux = (to.x - from.x) / length, uy = (to.y - from.y) / length;
    const double head = std::min(kArrowHead, length);
    const auto corner = [&](double side) {
      return number(to.x - head * ux - side * head * uy) + "," +
             number(to.y - head * uy + side * head * ux);
    };
    return drawn + "<polygon points=\"" + number(to.x) + "," + number(to.y) + " " + corner(0.45) +
           " " + corner(-0.45) + "\"" + svg::fill(arrow.colour) + "/>\n";
  }

  std::string labels() const {
    std::vector<Label> wanted;
    std::vector<std::string> texts;
    std::string drawn;
    for (const auto& item : m_plot.m_texts) {
      if (item.stays || !isShown(item.at)) continue;
      wanted.push_back(
          {toPixels(item.at), kPlotLabelLetters * svg::textWidth(item.text), kPlotLabelHeight});
      texts.push_back(item.text);
    }
    for (const auto& item : m_plot.m_texts) {
      if (!item.stays) continue;
      const Point2 at = toPixels(item.at);
      drawn += svg::text(at.x, at.y + 4.0, " font-size=\"11\" text-anchor=\"middle\"", item.text);
    }
    if (wanted.empty()) return drawn;
    std::vector<Point2> obstacles;
    for (const auto& series : m_plot.m_series)
      if (!series.line)
        for (const auto& point : series.points)
          if (isShown(point)) obstacles.push_back(toPixels(point));
    const auto places = placeLabels(wanted, obstacles, area());
    std::string leaders;
    for (std::size_t i = 0; i < wanted.size(); ++i) {
      const auto& [corner, away] = places[i];
      const Point2 at = wanted[i].point;
      if (away)
        leaders += svg::line(at,
                             {std::clamp(at.x, corner.x, corner.x + wanted[i].width),
                              std::clamp(at.y, corner.y, corner.y + wanted[i].height)},
                             " class=\"zero\" stroke=\"#999\"");
      drawn +=
          svg::text(corner.x, corner.y + 0.85 * wanted[i].height, " font-size=\"11\"", texts[i]);
    }
    return leaders + drawn;
  }

  std::string inset() const {
    if (!m_plot.m_inset) return {};
    const Point2 low = toPixels(m_plot.m_inset->lowerLeft),
                 high = toPixels(m_plot.m_inset->upperRight);
    const PatchRegion frame{low.x, high.y, high.x - low.x, low.y - high.y};
    return svg::rectangle(frame.left, frame.top, frame.width, frame.height,
                          " class=\"paper\" fill=\"#fff\"") +
           Drawing(m_plot.m_inset->plot, frame, true).text();
  }

  const SvgPlot& m_plot;
  PatchRegion m_frame;
  Margins m_margins;
  std::string m_legend;
  AxisScale m_xScale, m_yScale;
};

SvgPlot::SvgPlot(std::string title, PlotAxis x, PlotAxis y)
    : m_title(std::move(title)), m_x(std::move(x)), m_y(std::move(y)) {}

void SvgPlot::addLine(std::string name, std::vector<Point2> points, PlotColour colour,
                      Stroke stroke) {
  m_series.push_back({std::move(name), std::move(colour), std::move(points), stroke, {}, {}});
}

void SvgPlot::addMarkers(std::string name, std::vector<Point2> points, PlotColour colour,
                         Marker kind, const std::optional<PlotColour>& rim) {
  m_series.push_back(
      {std::move(name), std::move(colour), std::move(points), std::nullopt, kind, rim});
}

void SvgPlot::addArrow(Point2 from, Point2 to, PlotColour colour) {
  m_arrows.push_back({from, to, std::move(colour)});
}

void SvgPlot::addText(Point2 at, std::string text) {
  m_texts.push_back({at, std::move(text)});
}

void SvgPlot::addTextAt(Point2 middle, std::string text) {
  m_texts.push_back({middle, std::move(text), true});
}

void SvgPlot::setInset(SvgPlot inset, Point2 lowerLeft, Point2 upperRight) {
  m_inset = std::make_shared<const Inset>(Inset{std::move(inset), lowerLeft, upperRight});
}

std::string SvgPlot::svg() const {
  const double height = m_equalScales ? kSquareHeight : kHeight;
  return svg::opened(kWidth, height, m_title) +
         Drawing(*this, {0.0, 0.0, kWidth, height}, false).text() + "</svg>\n";
}

}  // namespace greycard::present
