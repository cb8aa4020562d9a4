#include "svg_elements.h"

#include "greycard/names.h"
#include "greycard/number_text.h"
#include "html_page.h"

namespace greycard::present::svg {
namespace {

std::string paint(const char* property, const char* mark, const PlotColour& colour) {
  std::string text = " ";
  if (*colour.role != '\0') text += std::string("class=\"") + colour.role + " " + mark + "\" ";
  return text + property + "=\"" + htmlEscape(colour.hex) + "\"";
}

std::string path(const Marker& kind, const Point2& at) {
  const double r = kind.radius;
  const auto to = [&](const char* command, double dx, double dy) {
    return command + number(at.x + dx) + " " + number(at.y + dy);
  };
  if (kind.shape == Marker::Shape::Cross)
    return to("M", -r, -r) + to("L", r, r) + to("M", r, -r) + to("L", -r, r);
  if (kind.shape == Marker::Shape::Triangle)
    return to("M", 0.0, -1.2 * r) + to("L", 1.1 * r, 0.8 * r) + to("L", -1.1 * r, 0.8 * r) + "Z";
  return to("M", -r, -r) + to("L", r, -r) + to("L", r, r) + to("L", -r, r) + "Z";
}

}  // namespace

std::string number(double value) {
  return fixed(value, 2);
}

std::string attribute(const char* name, double value) {
  return std::string(" ") + name + "=\"" + number(value) + "\"";
}

std::string fill(const PlotColour& colour) {
  return paint("fill", "f", colour);
}

std::string stroke(const PlotColour& colour) {
  return paint("stroke", "k", colour);
}

std::string line(const Point2& from, const Point2& to, const std::string& attributes) {
  return "<line" + attribute("x1", from.x) + attribute("y1", from.y) + attribute("x2", to.x) +
         attribute("y2", to.y) + attributes + "/>\n";
}

std::string rectangle(double x, double y, double width, double height,
                      const std::string& attributes) {
  return "<rect" + attribute("x", x) + attribute("y", y) + attribute("width", width) +
         attribute("height", height) + attributes + "/>\n";
}

std::string text(double x, double y, const std::string& attributes, const std::string& text) {
  return "<text" + attribute("x", x) + attribute("y", y) + attributes + ">" +
         htmlEscape(printable(text)) + "</text>\n";
}

double textWidth(const std::string& text) {
  constexpr double kLetter = 7.4;
  double letters = 0.0;
  for (const char c : text)
    if ((static_cast<unsigned char>(c) & 0xC0U) != 0x80U) ++letters;  // bytes that begin a letter
  return kLetter * letters;
}

std::string opened(double width, double height, const std::string& title) {
  return "<svg xmlns=\"http://www.w3.org/2000/svg\" class=\"plot\" viewBox=\"0 0 " +
         fixed(width, 0) + " " + fixed(height, 0) + "\"" + attribute("width", width) +
         attribute("height", height) +
         " font-family=\"sans-serif\" font-size=\"13\" role=\"img\">\n<title>" +
         htmlEscape(printable(title)) + "</title>\n" +
         "<rect class=\"paper\" width=\"100%\" height=\"100%\" fill=\"#fff\"/>\n";
}

std::string marker(const Marker& kind, const Point2& at, const PlotColour& colour) {
  const bool outlined = kind.hollow || kind.shape == Marker::Shape::Cross;
  const std::string look =
      outlined ? " fill=\"none\" stroke-width=\"1.6\"" + stroke(colour) : fill(colour);
  if (kind.shape == Marker::Shape::Circle)
    return "<circle" + attribute("cx", at.x) + attribute("cy", at.y) + attribute("r", kind.radius) +
           look + "/>\n";
  return "<path d=\"" + path(kind, at) + "\"" + look + "/>\n";
}

}  // namespace greycard::present::svg
