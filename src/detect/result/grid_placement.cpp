#include "result/grid_placement.h"

#include <algorithm>
#include <cmath>

#include "result/chart_placement.h"
#include "result/local_picture.h"
#include "window/chart_window.h"
#include "window/patch_side.h"

namespace greycard {

ChartPlacement placementOfGrid(const Picture& picture, const std::optional<SampleLevels>& levels,
                               const ChartDetection& detection) {
  std::array<PlanePoint, kPatchCount> points;
  for (std::size_t i = 0; i < points.size(); ++i)
    points[i] = {{static_cast<double>(i % 6) + 0.5, static_cast<double>(i / 6) + 0.5},
                 detection.points[i]};
  ChartPlacement placement;
  placement.centres = detection.points;
  placement.supportingPatches = std::min(detection.quadsUsed, int{kPatchCount});
  const auto map = fitPlane(points, lensOf(picture), false);
  if (!map) return placement;
  const auto local = localPicture(picture, levels, detection.points, map->pitchAt(3.0, 2.0));
  if (!local) return placement;

  std::array<bool, kPatchCount> supported;
  supported.fill(true);
  auto window = judgeWindow(*local, *map, supported);
  window.halfSide = halfPatchSide(*local, *map);
  placement = placementOf(window);
  placement.centres = detection.points;
  placement.supportingPatches = std::min(detection.quadsUsed, int{kPatchCount});
  return placement;
}

}  // namespace greycard
