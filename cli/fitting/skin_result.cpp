#include "skin_result.h"

#include <algorithm>
#include <cmath>

#include "greycard/names.h"
#include "greycard/number_text.h"
#include "text_table.h"

namespace greycard::cli {
namespace {

constexpr std::size_t kPerVariant = SkinColorHelper::kSpectra;
constexpr std::size_t kPerLight = kSkinVariants.size() * kPerVariant;

Json rangeJson(const ValueRange& range) {
  return range.empty() ? Json(nullptr) : Json{range.low, range.high};
}

Json setJson(const SkinSet& set) {
  Json json = {{"accepted", set.accepted}};
  for (std::size_t light = 0; light < kSkinLights.size(); ++light)
    json["accepted_under"][kSkinLights[light]] = set.acceptedUnder[light];
  json["h_not_finite"] = set.hueNotFinite;
  json["h"] = rangeJson(set.h);
  json["s"] = rangeJson(set.s);
  json["y"] = rangeJson(set.y);
  return json;
}

}  // namespace

void ValueRange::take(double value) {
  if (!std::isfinite(value)) return;
  low = empty() ? value : std::min(low, value);
  high = std::max(high, value);
}

SkinSet::SkinSet(const SkinColorHelper::DataArray& all) : points(&all) {
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (!holds(i)) continue;
    ++accepted;
    ++acceptedUnder[i / kPerLight];
    if (!std::isfinite(all[i].h)) ++hueNotFinite;
    h.take(all[i].h);
    s.take(all[i].s);
    y.take(all[i].y);
  }
}

std::string skinText(const SkinResult& result) {
  std::string text = std::to_string(result.upper.points->size()) +
                     " synthetic skin colours: 357 spectra, dark, plain and bright, under D65, A "
                     "and T84\nMatrix for all three lights from " +
                     printable(result.matrixFrom + ", tone curve " + result.gammaName) + "\n\n";
  std::vector<TextTable::Column> columns{{"", TextTable::Align::Left}, {"accepted"}};
  for (const char* light : kSkinLights) columns.push_back({light});
  for (const char* value : {"h", "s", "y"}) {
    columns.push_back({std::string(value) + " from"});
    columns.push_back({"to"});
  }
  columns.push_back({"h not finite"});
  TextTable table(std::move(columns));
  const auto addSet = [&table](const char* name, const SkinSet& set) {
    std::vector<std::string> cells{name, std::to_string(set.accepted)};
    for (const int count : set.acceptedUnder) cells.push_back(std::to_string(count));
    for (const ValueRange* range : {&set.h, &set.s, &set.y}) {
      cells.push_back(range->empty() ? "-" : fixed(range->low, 4));
      cells.push_back(range->empty() ? "-" : fixed(range->high, 4));
    }
    cells.push_back(std::to_string(set.hueNotFinite));
    table.addRow(std::move(cells));
  };
  addSet("upper set", result.upper);
  addSet("lower set", result.lower);
  text += table.text() + "h is Cb / Cr, s is (|Cr| + |Cb|) / 2Y, y is the luma.\n";
  for (const std::string& warning : result.warnings) text += "Warning: " + warning + "\n";
  return text;
}

Json skinJson(const SkinResult& result) {
  Json charts;
  for (std::size_t light = 0; light < kSkinLights.size(); ++light)
    charts[kSkinLights[light]] = result.charts[light].string();
  return {{"charts", charts},
          {"matrix", result.matrix},
          {"matrix_from", result.matrixFrom},
          {"gamma", result.gammaName},
          {"synthetic_colours", result.upper.points->size()},
          {"upper", setJson(result.upper)},
          {"lower", setJson(result.lower)},
          {"warnings", result.warnings}};
}

std::string skinCsv(const SkinResult& result) {
  std::string csv = "light,brightness,spectrum,upper,lower,h,s,y,red,green,blue\n";
  for (std::size_t i = 0; i < result.colours->size(); ++i) {
    const bool inUpper = result.upper.holds(i), inLower = result.lower.holds(i);
    csv += std::string(kSkinLights[i / kPerLight]) + "," +
           kSkinVariants[i % kPerLight / kPerVariant] + "," + std::to_string(i % kPerVariant + 1) +
           (inUpper ? ",1" : ",0") + (inLower ? ",1," : ",0,");
    const SkinColorHelper::DataPt& point = (*(inUpper ? result.upper : result.lower).points)[i];
    csv += inUpper || inLower ? exact(point.h) + "," + exact(point.s) + "," + exact(point.y) : ",,";
    for (const float component : (*result.colours)[i]) csv += "," + exact(component);
    csv += "\n";
  }
  return csv;
}

}  // namespace greycard::cli
