#include "macbeth.h"

#include <cmath>
#include <utility>

#include "channels.h"
#include "drawing.h"
#include "greycard/chart_regions.h"
#include "greycard/errors.h"
#include "quads.h"
#include "search_image.h"
#include "threshold_mask.h"

namespace greycard {
namespace {

constexpr int kMostQuadsOfOneChart = kPatchCount;
constexpr int kClusterIterations = 10;
constexpr double kClusterAccuracy = 1.0;  // pixels

// OpenCV's generator belongs to the thread and to everyone on it.
class SeededGenerator {
 public:
  SeededGenerator() : saved_(std::exchange(cv::theRNG(), cv::RNG())) {}
  ~SeededGenerator() { cv::theRNG() = saved_; }
  SeededGenerator(const SeededGenerator&) = delete;
  SeededGenerator& operator=(const SeededGenerator&) = delete;

 private:
  cv::RNG saved_;
};

bool spansArea(const ColorChecker& checker) {
  return checker.size > 0.0 && checker.spacing.area() > 0.0;
}

// Of two charts, the one whose colours fit better, the second on a tie; a cluster that can't be
// judged never wins over one that can.
void fitBetterCluster(const std::array<std::vector<cv::RotatedRect>, 2>& clusters,
                      const cv::Mat& image, StrayClusters stray, MacbethSearch& search) {
  for (const auto& boxes : clusters) {
    if (boxes.empty()) continue;
    auto checker = find_colorchecker(boxes, image);
    const bool keepsFirst =
        search.checker && (search.checker->error < checker.error ||
                           (std::isnan(checker.error) && !std::isnan(search.checker->error)));
    const bool firstSpans = search.checker && spansArea(*search.checker);
    const bool tellsApart =
        stray == StrayClusters::Passed && search.checker && firstSpans != spansArea(checker);
    if (tellsApart ? firstSpans : keepsFirst) continue;
    search.checker = std::move(checker);
    search.quadsUsed = static_cast<int>(boxes.size());
  }
}

}  // namespace

std::array<std::vector<cv::RotatedRect>, 2> split_in_two(std::span<const cv::RotatedRect> boxes) {
  cv::Mat_<cv::Vec2f> centres(static_cast<int>(boxes.size()), 1);
  for (int i = 0; i < centres.rows; ++i) {
    const auto centre = boxes[static_cast<std::size_t>(i)].center;
    centres(i) = cv::Vec2f(centre.x, centre.y);
  }
  cv::Mat_<int> labels;
  const SeededGenerator seeded;
  cv::kmeans(
      centres, 2, labels,
      {cv::TermCriteria::EPS + cv::TermCriteria::COUNT, kClusterIterations, kClusterAccuracy}, 1,
      cv::KMEANS_RANDOM_CENTERS);

  std::array<std::vector<cv::RotatedRect>, 2> clusters;
  for (int i = 0; i < labels.rows; ++i)
    clusters[static_cast<std::size_t>(labels(i))].push_back(boxes[static_cast<std::size_t>(i)]);
  return clusters;
}

MacbethSearch search_macbeth(const cv::Mat& image, StrayClusters stray) {
  MacbethSearch search;
  const auto found = find_quads(thresholdMask(image), image);
  if (!found.anyContour) return search;

  search.quads = static_cast<int>(found.quads.size());
  printError("%d initial quads found", search.quads);
  const bool twoCharts = search.quads > kMostQuadsOfOneChart;
  printError(twoCharts ? " (probably a Passport)\n" : "\n");
  if (found.boxes.empty()) {
    search.stage = ChartStage::Quads;
    return search;
  }
  if (twoCharts) {
    fitBetterCluster(split_in_two(found.boxes), image, stray, search);
  } else {
    search.checker = find_colorchecker(found.boxes, image);
    search.quadsUsed = search.quads;
  }
  search.stage = spansArea(*search.checker) ? ChartStage::Done : ChartStage::Grid;
  return search;
}

cv::Mat find_macbeth(const std::filesystem::path& img, const std::filesystem::path& savePath) {
  cv::Mat image;
  try {
    image = searchImage(readPicture(img), {});
    const auto search = search_macbeth(image);
    if (!search.checker) return image;
    draw_colorchecker(search.checker->values, search.checker->points, image,
                      static_cast<int>(search.checker->size));
    writeRegions(savePath, patchRegions(*search.checker));
  } catch (const FileError& error) {
    printError("%s\n", error.what());
  }
  return image;
}

}  // namespace greycard
