#pragma once
#include <iostream>
#include "greycard/files.h"
#include "json_reader.h"
#include "json_writer.h"
#include "svg_plot.h"
namespace greycard {
inline void to_json(nlohmann::ordered_json& json, const Point2& point) {
  json = {point.x, point.y};
}
namespace cli {
using present::hexColour;
using present::Json;
using present::parsedJson;
using present::PlotAxis;
using present::plotColour;
using present::refuseField;
using present::SvgPlot;
inline double numberFrom(const std::string& name, const Json& json) {
  if (!json.is_number()) refuseField(name, "a number");
  return json.get<double>();
}
inline void readNumbers(const std::string& name, const Json& json, std::span<double> values) {
  if (!json.is_array() || json.size() != values.size())
    refuseField(name, "a list of " + std::to_string(values.size()) + " numbers");
  for (std::size_t i = 0; i < values.size(); ++i)
    values[i] = numberFrom(name + "[" + std::to_string(i) + "]", json[i]);
}
inline void refuseUnknownFields(const std::string& prefix, const Json& object,
                                const std::vector<std::string>& known) {
  for (const auto& item : object.items())
    if (std::find(known.begin(), known.end(), item.key()) == known.end())
      present::refuseName("field", prefix + item.key(), known);
}
inline void writeJson(const std::string& target, const Json& json) {
  if (target.empty()) return;
  if (target == "-")
    std::cout << present::jsonText(json);
  else
    writeWholeFile(target, present::jsonText(json));
}
}  // namespace cli
}  // namespace greycard
