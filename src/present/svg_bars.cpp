#include "svg_bars.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "svg_axis.h"
#include "svg_elements.h"

namespace greycard::present {
namespace {

// All in pixels.
constexpr double kBarsWidth = 600.0, kBarsLeft = 150.0, kBarsRight = 52.0, kBarsTop = 84.0,
                 kBarsBottom = 44.0;
constexpr double kRow = 19.0, kThickness = 12.0, kChip = 12.0;
constexpr double kSpan = kBarsWidth - kBarsLeft - kBarsRight;
// Blue, orange and yellow: told apart by colour-blind eyes and, in this order, by lightness.
constexpr std::array<std::size_t, 3> kPartColours{0, 1, 5};

PlotColour partColour(std::size_t part) {
  return plotColour(kPartColours[part % kPartColours.size()]);
}

double across(double value, double end) {
  return kBarsLeft + std::clamp(value / end, 0.0, 1.0) * kSpan;
}

std::string markAt(double x, double middle) {
  return svg::marker({svg::Marker::Shape::Circle, 4.0, true}, {x, middle}, plotColour(4));
}

}  // namespace

BarChart::BarChart(std::string title, std::string axisTitle, std::vector<std::string> parts)
    : m_title(std::move(title)), m_axisTitle(std::move(axisTitle)), m_parts(std::move(parts)) {}

// Of the axis: all bars, marks and limits lie before it.
double BarChart::end() const {
  double most = m_least;
  const auto take = [&](double value) {
    if (std::isfinite(value)) most = std::max(most, value);
  };
  for (const Bar& bar : m_bars) {
    double sum = 0.0;
    for (const double part : bar.parts) sum += std::isfinite(part) ? part : 0.0;
    take(sum);
    if (bar.mark) take(*bar.mark);
  }
  for (const auto& [value, text] : m_limits) take(1.1 * value);
  return AxisScale::over(0.0, most, 0.0, {}).high;
}

std::string BarChart::legend() const {
  std::string drawn;
  double x = 16.0;
  const auto name = [&](const std::string& text) {
    drawn += svg::text(x + 18.0, 48.0, "", text);
    x += 18.0 + svg::textWidth(text) + 14.0;
  };
  for (std::size_t i = 0; i < m_parts.size(); ++i) {
    if (m_parts[i].empty()) continue;
    drawn += svg::rectangle(x, 38.0, kChip, kChip, svg::fill(partColour(i)));
    name(m_parts[i]);
  }
  if (!m_markName.empty()) {
    drawn += markAt(x + 6.0, 44.0);
    name(m_markName);
  }
  return drawn;
}

std::string BarChart::axis(double end, double bottom) const {
  std::string drawn;
  for (const double tick : AxisScale::over(0.0, end, 0.0, end).ticks) {
    const double x = across(tick, end);
    drawn += svg::line(
        {x, kBarsTop - 6.0}, {x, bottom},
        tick == 0.0 ? " class=\"zero\" stroke=\"#999\"" : " class=\"grid\" stroke=\"#e3e3e3\"");
    drawn += svg::text(x, bottom + 16.0, " text-anchor=\"middle\"", AxisScale::label(tick));
  }
  for (const auto& [value, text] : m_limits) {
    const double x = across(value, end);
    drawn +=
        svg::line({x, kBarsTop - 8.0}, {x, bottom},
                  " stroke-width=\"1.4\" stroke-dasharray=\"5 3\"" + svg::stroke(quietColour()));
    drawn += svg::text(x, kBarsTop - 12.0, " font-size=\"11\" text-anchor=\"middle\"", text);
  }
  return drawn +
         svg::text(kBarsLeft + 0.5 * kSpan, bottom + 34.0, " text-anchor=\"middle\"", m_axisTitle);
}

std::string BarChart::row(const Bar& bar, double end, double top) const {
  const double middle = top + 0.5 * kRow;
  std::string drawn;
  double nameAt = 16.0;
  if (bar.chip) {
    drawn +=
        svg::rectangle(16.0, middle - 0.5 * kChip, kChip, kChip,
                       svg::fill(*bar.chip) + " class=\"rim\" stroke=\"#333\" stroke-width=\".6\"");
    nameAt += kChip + 6.0;
  }
  drawn += svg::text(nameAt, middle + 4.0, " font-size=\"12\"", bar.name);
  double from = 0.0;
  for (std::size_t i = 0; i < bar.parts.size(); ++i) {
    if (!(std::isfinite(bar.parts[i]) && bar.parts[i] > 0.0)) continue;
    const double x = across(from, end);
    from += bar.parts[i];
    drawn += svg::rectangle(x, middle - 0.5 * kThickness, across(from, end) - x, kThickness,
                            svg::fill(partColour(i)));
  }
  double valueAt = across(from, end);
  if (bar.mark && std::isfinite(*bar.mark)) {
    const double x = across(*bar.mark, end);
    drawn += markAt(x, middle);
    if (std::abs(x - valueAt) < 44.0) valueAt = std::max(valueAt, x + 4.0);
  }
  return drawn + svg::text(valueAt + 5.0, middle + 4.0, " font-size=\"11\"", bar.value);
}

std::string BarChart::svg() const {
  const double bottom = kBarsTop + kRow * static_cast<double>(m_bars.size());
  const double last = end();
  std::string drawn = svg::opened(kBarsWidth, bottom + kBarsBottom, m_title) +
                      svg::text(16.0, 22.0, " font-size=\"15\" font-weight=\"bold\"", m_title) +
                      legend() + axis(last, bottom);
  double top = kBarsTop;
  for (const Bar& bar : m_bars) {
    drawn += row(bar, last, top);
    top += kRow;
  }
  return drawn + "</svg>\n";
}

}  // namespace greycard::present
