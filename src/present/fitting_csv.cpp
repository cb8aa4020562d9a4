#include <algorithm>

#include "greycard/number_text.h"
#include "greycard/present/fitting.h"

namespace greycard::present {

std::string wbMapCsv(const WhiteBalanceMapping& mapping) {
  std::string csv = "rg,bg,mapped_rg,mapped_bg\n";
  for (const WhiteBalancePoint& point : mapping.points) {
    const WhiteBalancePoint mapped = mapping.transform(point);
    csv += exact(point.rg) + "," + exact(point.bg) + "," + exact(mapped.rg) + "," +
           exact(mapped.bg) + "\n";
  }
  return csv;
}

std::string skinCsv(const SkinCalibration& skin) {
  constexpr std::size_t kPerVariant = SkinColorHelper::kSpectra;
  std::string csv = "light,brightness,spectrum,upper,lower,h,s,y,red,green,blue\n";
  const std::size_t count =
      std::min({skin.colours.size(), skin.upper.points.size(), skin.lower.points.size()});
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t variant = i / kPerVariant;
    const bool inUpper = skin.upper.holds(i), inLower = skin.lower.holds(i);
    csv += std::string(kSkinLights[variant / kSkinVariants.size() % kSkinLights.size()]) + "," +
           kSkinVariants[variant % kSkinVariants.size()] + "," +
           std::to_string(i % kPerVariant + 1) + (inUpper ? ",1" : ",0") +
           (inLower ? ",1," : ",0,");
    const SkinColorHelper::DataPt& point = (inUpper ? skin.upper : skin.lower).points[i];
    csv += inUpper || inLower ? exact(point.h) + "," + exact(point.s) + "," + exact(point.y) : ",,";
    for (const float component : skin.colours[i]) csv += "," + exact(component);
    csv += "\n";
  }
  return csv;
}

}  // namespace greycard::present
