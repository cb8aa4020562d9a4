#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "greycard/types.h"

namespace greycard {

/// As [x, y], like the JSON files of measured photographs.
inline void to_json(nlohmann::ordered_json& json, const Point2& point) {
  json = {point.x, point.y};
}
inline void to_json(nlohmann::ordered_json& json, const PatchRegion& region) {
  json = {region.left, region.top, region.width, region.height};
}

namespace cli {

/// Fields keep the order in which they are set, so that the same job gives the same bytes.
using Json = nlohmann::ordered_json;

/// Writes the document to the file, or to standard output for "-"; does nothing when `target` is
/// empty. Numbers read back to the same bits; a number that is not finite becomes null.
void writeJson(const std::string& target, const Json& json);

}  // namespace cli
}  // namespace greycard
