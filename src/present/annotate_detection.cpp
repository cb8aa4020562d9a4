#include <algorithm>
#include <cmath>

#include "chart_marks.h"
#include "greycard/present/chart.h"
#include "picture_canvas.h"

namespace greycard::present {
namespace {

const cv::Scalar kWhite(255, 255, 255), kRed(235, 40, 40), kYellow(255, 215, 0);

Point2 middleOf(const PatchQuad& quad) {
  Point2 middle;
  for (const Point2& p : quad) {
    middle.x += 0.25 * p.x;
    middle.y += 0.25 * p.y;
  }
  return middle;
}

double shortestSide(const PatchQuads& patches) {
  double shortest = HUGE_VAL;
  for (const PatchQuad& patch : patches)
    for (std::size_t k = 0; k < 4; ++k)
      shortest = std::min(shortest, std::hypot(patch[(k + 1) % 4].x - patch[k].x,
                                               patch[(k + 1) % 4].y - patch[k].y));
  return shortest;
}

bool isInside(const Point2& p, const cv::Mat& image) {
  // Written so that NaN is outside too: every comparison with it is false.
  return p.x >= 0.0 && p.y >= 0.0 && p.x < image.cols && p.y < image.rows;
}

void drawPatches(cv::Mat& image, const PatchQuads& patches, const std::vector<int>& outliers,
                 const cv::Scalar& colour) {
  const double side = std::min<double>(shortestSide(patches), std::max(image.cols, image.rows));
  for (std::size_t i = 0; i < patches.size(); ++i) {
    const int number = static_cast<int>(i) + 1;
    drawQuad(image, patches[i], colour, strokeWidth(side));
    if (std::ranges::find(outliers, number) != outliers.end())
      crossOut(image, patches[i], kRed, strokeWidth(side));
    const Point2 middle = middleOf(patches[i]);
    if (isInside(middle, image))
      drawNumber(image, cv::Point(static_cast<int>(middle.x), static_cast<int>(middle.y)), side,
                 number);
  }
}

void drawCandidates(cv::Mat& image, const std::vector<PatchRegion>& regions) {
  const int stroke = strokeWidth(0.1 * std::min(image.cols, image.rows));
  for (const PatchRegion& region : regions) {
    const double right = region.left + region.width, bottom = region.top + region.height;
    drawQuad(
        image,
        {{{region.left, region.top}, {right, region.top}, {right, bottom}, {region.left, bottom}}},
        kYellow, stroke);
  }
}

}  // namespace

Picture annotatePatches(const Picture& picture, const PatchQuads& patches,
                        const std::vector<int>& outliers) {
  cv::Mat canvas = canvasOf(picture);
  drawPatches(canvas, patches, outliers, kWhite);
  return pictureOf(canvas);
}

Picture annotateDetections(const Picture& picture, const std::vector<ChartDetection>& charts) {
  cv::Mat canvas = canvasOf(picture);
  for (const ChartDetection& chart : charts)
    drawPatches(canvas, chart.placement.patches, chart.placement.outliers, kWhite);
  return pictureOf(canvas);
}

Picture annotateDetection(const Picture& picture, const ChartDetection& detection) {
  if (detection.found())
    return annotatePatches(picture, detection.placement.patches, detection.placement.outliers);
  cv::Mat canvas = canvasOf(picture);
  drawCandidates(canvas, detection.candidateRegions);
  if (const auto& candidate = detection.candidate)
    drawPatches(canvas, candidate->patches, candidate->outliers, kRed);
  return pictureOf(canvas);
}

}  // namespace greycard::present
