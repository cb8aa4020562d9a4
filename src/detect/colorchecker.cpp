#include "colorchecker.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "channels.h"
#include "patch_average.h"
#include "quads.h"

namespace greycard {
namespace {

constexpr int kColumnGaps = kChartColumns - 1, kRowGaps = kChartRows - 1;

// The lattice of patch centres: from the first corner along the columns and along the rows.
struct Grid {
  cv::Point2f corner;
  cv::Point2d alongColumns, alongRows;  // unit steps
  cv::Size2d spacing;
};

double roundedDistance(cv::Point2f a, cv::Point2f b) {
  return euclidean_distance(cv::Point(a), cv::Point(b));
}

double slope(cv::Point2f from, cv::Point2f to) {
  return (double{to.y} - from.y) / (double{to.x} - from.x);
}

// (1, m) / sqrt(m^2 + 1) for the slope m between two corners, pointed at the second. An upright
// chart has an infinite slope, whose limit is a step straight up or down; equal corners give no
// step.
cv::Point2d unitStep(cv::Point2f from, cv::Point2f to) {
  if (from.x == to.x) return {0.0, static_cast<double>((to.y > from.y) - (to.y < from.y))};
  const double m = slope(from, to);
  const double towards = (to.x > from.x ? 1.0 : -1.0) / std::sqrt(m * m + 1.0);
  return {towards, m * towards};
}

// Corners of the chart box, numbered so that the columns run from the first to the second and the
// rows from the first to the fourth. With box angles in [-90, 0) both numberings keep the rows to
// the right of the columns, as on the chart; which end is the first remains open.
std::array<cv::Point2f, 4> chartCorners(const cv::RotatedRect& box) {
  std::array<cv::Point2f, 4> corners;
  box.points(corners.data());
  if (roundedDistance(corners[0], corners[1]) < roundedDistance(corners[1], corners[2])) {
    printError("Box is upright, rotating\n");
    rotate_box(corners);
  }
  return corners;
}

int averageContainedSize(std::span<const cv::RotatedRect> boxes) {
  int sum = 0;
  for (const auto& box : boxes) {
    const auto rect = contained_rectangle(box);
    sum += std::min(rect.width, rect.height);
  }
  return sum / static_cast<int>(boxes.size());
}

void sampleGrid(const Grid& grid, const cv::Mat& image, ColorChecker& checker) {
  const int size = static_cast<int>(checker.size);
  for (int x = 0; x < kChartColumns; ++x) {
    for (int y = 0; y < kChartRows; ++y) {
      const double down = y * grid.spacing.height, across = x * grid.spacing.width;
      const cv::Point2f rowStart(static_cast<float>(grid.corner.x + grid.alongRows.x * down),
                                 static_cast<float>(grid.corner.y + grid.alongRows.y * down));
      const cv::Point patch(static_cast<int>(rowStart.x + grid.alongColumns.x * across),
                            static_cast<int>(rowStart.y + grid.alongColumns.y * across));
      checker.points(y, x) = cv::Vec2f(static_cast<float>(patch.x), static_cast<float>(patch.y));
      const auto mean = rect_average({patch.x - size / 2, patch.y - size / 2, size, size}, image);
      for (int i = 0; i < 3; ++i) checker.values(y, x)[i] = static_cast<float>(mean[i]);
    }
  }
}

void halfTurn(cv::Mat matrix) {
  cv::flip(matrix, matrix, -1);
}

// Turns the values, the points or neither, so that both stand in chart order.
void orient(ColorChecker& checker) {
  const double error1 = check_colorchecker(checker.values);
  halfTurn(checker.values);
  const double error2 = check_colorchecker(checker.values);
  printError("Orientation 1: %f\n", error1);
  printError("Orientation 2: %f\n", error2);
  halfTurn(error1 < error2 ? cv::Mat(checker.values) : cv::Mat(checker.points));
  checker.error = error1 <= error2 ? error1 : error2;
}

}  // namespace

ColorChecker find_colorchecker(std::span<const cv::RotatedRect> boxes,
                               const cv::Mat& originalImage) {
  std::vector<cv::Point2f> centres(boxes.size());
  std::transform(boxes.begin(), boxes.end(), centres.begin(),
                 [](const auto& box) { return box.center; });
  const auto chart = min_area_rect(centres);
  printError("Box:\n\tCenter: %f,%f\n\tSize: %f,%f\n\tAngle: %f\n", chart.center.x, chart.center.y,
             chart.size.width, chart.size.height, chart.angle);

  const auto corners = chartCorners(chart);
  ColorChecker checker;
  checker.values.create(kChartRows, kChartColumns);
  checker.points.create(kChartRows, kChartColumns);
  checker.spacing = {roundedDistance(corners[0], corners[1]) / kColumnGaps,
                     roundedDistance(corners[1], corners[2]) / kRowGaps};
  printError("Spacing is %f %f\n", checker.spacing.width, checker.spacing.height);
  printError("Slope is %f %f\n", slope(corners[0], corners[1]), slope(corners[0], corners[3]));
  checker.size = averageContainedSize(boxes);
  printError("Average contained rect size is %d\n", static_cast<int>(checker.size));

  sampleGrid({corners[0], unitStep(corners[0], corners[1]), unitStep(corners[0], corners[3]),
              checker.spacing},
             originalImage, checker);
  orient(checker);
  return checker;
}

double check_colorchecker(const cv::Mat_<cv::Vec3f>& values) {
  double sum = 0.0;
  for (int patch = 0; patch < kPatchCount; ++patch) {
    const auto& value = values(patch / kChartColumns, patch % kChartColumns);
    for (int i = 0; i < 3; ++i) {
      const double difference = colorchecker_srgb[static_cast<std::size_t>(patch)][i] - value[i];
      sum += difference * difference;
    }
  }
  return sum;
}

void rotate_box(std::array<cv::Point2f, 4>& corners) {
  std::rotate(corners.begin(), corners.end() - 1, corners.end());
}

PatchRegions patchRegions(const ColorChecker& checker) {
  const double threeQuarters = checker.size * 3.0 * 0.25;
  const double side = 2.0 * threeQuarters;
  PatchRegions regions;
  auto region = regions.begin();
  for (const auto& point : checker.points)
    *region++ = {point[0] - threeQuarters, point[1] - threeQuarters, side, side};
  return regions;
}

}  // namespace greycard
