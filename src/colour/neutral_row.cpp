#include "greycard/neutral_row.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "colour_space.h"

namespace greycard {
namespace {

constexpr std::size_t kFirst = 18, kFewest = 3;

struct Grey {
  int patch;
  double light, referenceL;
};

// L* of a grey, and back: Y of white is 1.
double lightness(double light) {
  return 116.0 * labF(light) - 16.0;
}
double lightOf(double l) {
  return CIELab_to_XYZ({l, 0.0, 0.0}, {1.0, 1.0, 1.0})[1];
}

// The patch that is farthest off, and how far.
Grey farthest(const std::vector<Grey>& greys) {
  double factor = 0.0;
  for (const Grey& grey : greys)
    factor += std::log(lightOf(grey.referenceL) / grey.light) / static_cast<double>(greys.size());
  Grey worst{static_cast<int>(kFirst), 0.0, 0.0};
  for (const Grey& grey : greys) {
    const double off = std::fabs(lightness(grey.light * std::exp(factor)) - grey.referenceL);
    if (off > worst.light) worst = {grey.patch, off, grey.referenceL};
  }
  return worst;
}

}  // namespace

NeutralRow neutralRow(const PatchTable& linearRgb, const PatchTable& referenceLab,
                      SampleEncoding encoding, const std::vector<int>& clipped) {
  std::vector<Grey> greys;
  for (std::size_t i = kFirst; i < kPatchCount; ++i) {
    const Vector3& rgb = linearRgb[i];
    const Grey grey{static_cast<int>(i), (rgb[0] + rgb[1] + rgb[2]) / 3.0, referenceLab[i][0]};
    if (std::ranges::find(clipped, grey.patch) == clipped.end() && std::isfinite(grey.light) &&
        grey.light > 0.0 && grey.referenceL > 0.0)
      greys.push_back(grey);
  }
  if (greys.size() < kFewest) return {};
  const Grey found = farthest(greys);
  for (Grey& grey : greys)
    grey.light = encoding == SampleEncoding::sRGB ? sRGBEncode(grey.light) : sRGBDecode(grey.light);
  return {found.light, found.patch, farthest(greys).light};
}

}  // namespace greycard
