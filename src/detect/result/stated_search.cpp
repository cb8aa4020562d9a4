#include "result/stated_search.h"

#include <cmath>
#include <opencv2/core.hpp>
#include <string>

#include "fit_doubts.h"
#include "macbeth.h"
#include "result/grid_placement.h"
#include "result/working_image.h"
#include "search_image.h"

namespace greycard {
namespace {

std::string candidates(int count) {
  return count == 1 ? "the only patch candidate spans"
                    : "the " + std::to_string(count) + " patch candidates of the grid span";
}

// Of the stated search; `used` candidates carry the grid.
std::string reasonOf(ChartStage stage, int used) {
  switch (stage) {
    case ChartStage::Contours:
      return "nothing in the picture is enclosed by something darker; photograph the chart "
             "sharply, "
             "evenly lit and with its whole dark frame in view";
    case ChartStage::Quads:
      return "no outline is large, convex and square enough to be a patch; photograph the chart "
             "straight from the front and larger, each patch above 1/2400 of the picture";
    case ChartStage::Grid:
      return candidates(used) +
             " no area, so no 4 x 6 grid can be hung on them; photograph the chart larger, evenly "
             "lit "
             "and straight from the front";
    default:
      return {};
  }
}

ChartRefusal refusalOf(ChartStage stage) {
  switch (stage) {
    case ChartStage::Picture:
      return ChartRefusal::Picture;
    case ChartStage::Done:
      return ChartRefusal::None;
    case ChartStage::Grid:
      return ChartRefusal::NoGrid;
    default:
      return ChartRefusal::NoPatches;
  }
}

void fill(ChartDetection& detection, const ColorChecker& checker) {
  auto point = detection.points.begin();
  for (const auto& centre : checker.points) *point++ = {centre[0], centre[1]};
  detection.regions = patchRegions(checker);
  detection.size = checker.size;
  detection.error = checker.error;
}

// What the search looks at.
cv::Mat imageOf(const Picture& picture, const PixelWindow& window,
                const std::optional<SampleLevels>& levels, int factor) {
  if (factor > 1) return workingImage(WorkingPictures(picture, window, levels).reduced(factor));
  return searchImage(picture,
                     levels)(cv::Rect(window.left, window.top, window.width, window.height));
}

// From pixels of the image to pixels of the picture, points whole again.
void toPicture(ChartDetection& detection, const PixelWindow& window, int factor) {
  for (auto& point : detection.points)
    point = {std::nearbyint((point.x + 0.5) * factor - 0.5) + window.left,
             std::nearbyint((point.y + 0.5) * factor - 0.5) + window.top};
  for (auto& region : detection.regions)
    region = {region.left * factor + window.left, region.top * factor + window.top,
              region.width * factor, region.height * factor};
  detection.size *= factor;
}

}  // namespace

ChartDetection detectStated(const Picture& picture, const PixelWindow& window,
                            const std::optional<SampleLevels>& levels, int factor) {
  const auto image = imageOf(picture, window, levels, factor);
  const auto search = search_macbeth(image, StrayClusters::Passed);
  ChartDetection detection;
  detection.stage = search.stage;
  detection.reason = reasonOf(search.stage, search.quadsUsed);
  detection.refusal = refusalOf(search.stage);
  detection.quads = search.quads;
  detection.quadsUsed = search.quadsUsed;
  if (search.stage != ChartStage::Done) return detection;
  detection.method = ChartMethod::Stated;
  fill(detection, *search.checker);
  detection.doubts = fitDoubts(*search.checker, image);
  toPicture(detection, window, factor);
  detection.placement = placementOfGrid(picture, levels, detection);
  return detection;
}

}  // namespace greycard
