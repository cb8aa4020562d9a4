#include "greycard/patch_quads.h"

#include "lattice/plane_map.h"

namespace greycard {

PatchQuads quadsOf(const PatchRegions& regions) {
  PatchQuads quads;
  for (std::size_t i = 0; i < regions.size(); ++i) {
    const auto& r = regions[i];
    const double right = r.left + r.width, bottom = r.top + r.height;
    quads[i] = {{{r.left, r.top}, {right, r.top}, {right, bottom}, {r.left, bottom}}};
  }
  return quads;
}

Point2 ChartMapping::toPicture(const Point2& plane) const {
  return PlaneMap(homography, radial, {lensCentre, lensRadius})(plane);
}

}  // namespace greycard
