#include <algorithm>
#include <array>
#include <cmath>
#include <opencv2/imgproc.hpp>

#include "detect_options.h"
#include "greycard/chart_search_pictures.h"
#include "lattice/contrast_map.h"
#include "lattice/flat_regions.h"
#include "lattice/lattice_growth.h"
#include "lattice/lattice_search.h"
#include "picture_mat.h"
#include "result/working_image.h"

namespace greycard {
namespace {

cv::Mat imageOf(const ContrastMap& contrast) {
  cv::Mat image(contrast.height, contrast.width, CV_8UC3);
  for (int y = 0; y < contrast.height; ++y)
    for (int x = 0; x < contrast.width; ++x)
      image.at<cv::Vec3b>(y, x) = cv::Vec3b::all(contrast.row(y)[x]);
  return image;
}

// The ellipse that holds a region's points if it is one.
void drawRegion(cv::Mat& image, const FlatRegion& region, const WorkingPicture& picture,
                const cv::Scalar& colour) {
  const auto centre = picture.toWorking(region.centre);
  const double radius = std::sqrt(region.area / std::acos(-1.0)) / picture.factor;
  cv::circle(image, cv::Point(static_cast<int>(centre.x + 0.5), static_cast<int>(centre.y + 0.5)),
             std::max(1, static_cast<int>(0.7 * radius)), colour, 1, cv::LINE_AA);
}

cv::Mat withRegions(const cv::Mat& image, const std::vector<FlatRegion>& regions,
                    const WorkingPicture& working) {
  auto marked = image.clone();
  for (const auto& region : regions) drawRegion(marked, region, working, cv::Scalar(0, 215, 255));
  return marked;
}

// One colour per grid.
cv::Mat withGrids(const cv::Mat& image, const std::vector<FlatRegion>& regions,
                  const WorkingPicture& working) {
  const std::array<cv::Scalar, 6> colours{
      {{0, 0, 255}, {0, 255, 0}, {255, 80, 0}, {0, 255, 255}, {255, 0, 255}, {255, 255, 0}}};
  auto marked = image.clone();
  std::size_t grid = 0;
  for (const auto& lattice : growLattices(regions)) {
    for (const auto& node : lattice.nodes)
      drawRegion(marked, regions[static_cast<std::size_t>(node.region)], working,
                 colours[grid % colours.size()]);
    ++grid;
  }
  return marked;
}

}  // namespace

std::vector<StagePicture> chartSearchStages(const Picture& picture, const DetectOptions& options) {
  std::vector<StagePicture> stages;
  if (!isWellFormed(picture)) return stages;
  const auto window = checkedWindow(picture, options);
  const auto search = searchLattices(picture, window, options.levels,
                                     {options.smallestGate, 1, options.finestPixels});
  if (search.furthest.threshold == 0) return stages;
  const WorkingPictures pictures(picture, window, search.furthest.levels);
  const auto working = workingPicture(pictures, search.furthest);
  const auto contrast = contrastMap(working);
  const auto regions = flatRegions(contrast, search.furthest.threshold, working);
  const auto image = workingImage(working);
  stages.push_back({"1_working", fromMat(image)});
  stages.push_back({"2_contrast", fromMat(imageOf(contrast))});
  stages.push_back({"3_regions", fromMat(withRegions(image, regions, working))});
  stages.push_back({"4_grids", fromMat(withGrids(image, regions, working))});
  return stages;
}

}  // namespace greycard
