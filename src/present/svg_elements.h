#pragma once

// The small parts that drawings are made of, as SVG text. Classes are for the page around them:
// without its style sheet the attributes count.

#include <string>

#include "greycard/types.h"
#include "svg_colour.h"

namespace greycard::present::svg {

/// With two decimals.
std::string number(double value);
std::string attribute(const char* name, double value);
/// As attributes.
std::string fill(const PlotColour& colour);
std::string stroke(const PlotColour& colour);
std::string line(const Point2& from, const Point2& to, const std::string& attributes);
std::string rectangle(double x, double y, double width, double height,
                      const std::string& attributes);
/// \param attributes  more of them, each with a blank before it
std::string text(double x, double y, const std::string& attributes, const std::string& text);
/// Pixels that a text of 13 pixels takes at most, generously.
double textWidth(const std::string& text);

/// The element around a drawing, with its title for those who can't see it.
std::string opened(double width, double height, const std::string& title);

/// What stands at a point.
struct Marker {
  enum class Shape { Circle, Square, Triangle, Cross };
  Shape shape = Shape::Circle;
  double radius = 4.0;
  bool hollow = false;
};
std::string marker(const Marker& kind, const Point2& at, const PlotColour& colour);

}  // namespace greycard::present::svg
