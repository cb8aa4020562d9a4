#include "convex_quad.h"

#include <cmath>
#include <stdexcept>
#include <string>

#include "text.h"

namespace greycard {

bool isConvex(const PatchQuad& quad) {
  int left = 0, right = 0;
  for (std::size_t k = 0; k < 4; ++k) {
    const auto &a = quad[k], &b = quad[(k + 1) % 4], &c = quad[(k + 2) % 4];
    const double turn = (b.x - a.x) * (c.y - b.y) - (b.y - a.y) * (c.x - b.x);
    // NaN counts for neither side.
    left += turn < 0.0;
    right += turn > 0.0;
    if (!std::isfinite(turn)) return false;
  }
  return left == 4 || right == 4;
}

void requireConvex(const PatchQuads& patches) {
  for (std::size_t i = 0; i < patches.size(); ++i) {
    if (isConvex(patches[i])) continue;
    std::string corners;
    for (const auto& p : patches[i])
      corners += (corners.empty() ? "" : " ") + formatGeneral(p.x) + "," + formatGeneral(p.y);
    throw std::invalid_argument("patch " + std::to_string(i + 1) + ": its corners " + corners +
                                " are not those of a convex quadrilateral");
  }
}

}  // namespace greycard
