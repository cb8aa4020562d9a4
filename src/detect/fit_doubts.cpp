#include "fit_doubts.h"

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>
#include <optional>

#include "text.h"

namespace greycard {
namespace {

constexpr int kNeutralRow = kChartRows - 1;
constexpr double kTieLevels = 2.0;         // noise; clipped neighbours are equal, not wrong
constexpr double kSmallestContrast = 0.7;  // a black patch is well below this share of the white
constexpr int kSmallestSize = 4;           // half patch sides in pixels
constexpr int kCellsPerSide = 3;
constexpr double kUnevenShare = 0.06, kUnevenLevels = 4.0;
constexpr double kSmallestCorrelation = 0.75;

double level(const cv::Vec3f& value) {
  return (value[0] + value[1] + value[2]) / 3.0;
}

std::optional<std::string> pointsOutside(const ColorChecker& checker, cv::Size image) {
  int outside = 0;
  for (const auto& point : checker.points)
    outside +=
        !(point[0] >= 0.0F && point[1] >= 0.0F && point[0] < static_cast<float>(image.width) &&
          point[1] < static_cast<float>(image.height));
  if (outside == 0) return std::nullopt;
  return std::to_string(outside) + " of the 24 patch centres lie outside the picture";
}

std::optional<std::string> neutralsNotDarkening(const ColorChecker& checker) {
  const auto* row = checker.values[kNeutralRow];
  for (int x = 1; x < kChartColumns; ++x) {
    // Written so that NaN is doubted too: every comparison with it is false.
    if (!(level(row[x]) <= level(row[x - 1]) + kTieLevels))
      return "the neutral row does not darken from white to black: patch " +
             std::to_string(19 + x) + " is brighter than patch " + std::to_string(18 + x);
  }
  if (!(level(row[kChartColumns - 1]) < kSmallestContrast * level(row[0])))
    return "the neutral row does not darken from white to black: patches 19 and 24 are nearly "
           "equal";
  return std::nullopt;
}

// Largest difference, in any channel, between the mean of one of 3 x 3 cells and that of the
// region.
double unevenness(const cv::Mat& part) {
  const auto whole = cv::mean(part);
  const auto cut = [](int length, int i) { return length * i / kCellsPerSide; };
  double largest = 0.0;
  for (int y = 0; y < kCellsPerSide; ++y) {
    const cv::Range rows(cut(part.rows, y), cut(part.rows, y + 1));
    for (int x = 0; x < kCellsPerSide; ++x) {
      const auto cell = cv::mean(part(rows, {cut(part.cols, x), cut(part.cols, x + 1)}));
      for (int i = 0; i < 3; ++i) largest = std::max(largest, std::fabs(cell[i] - whole[i]));
    }
  }
  return largest;
}

// A grid off the patches has gaps and neighbours in its squares. Means of cells tell these from
// noise.
std::optional<std::string> patchesNotUniform(const ColorChecker& checker, const cv::Mat& image) {
  double brightest = 0.0;
  for (const auto& value : checker.values) brightest = std::max(brightest, level(value));
  const double allowed = std::max(kUnevenLevels, kUnevenShare * brightest);

  int uneven = 0, worstPatch = 0, patch = 0;
  double worst = 0.0;
  for (const auto& centre : checker.points) {
    ++patch;
    // Half a patch wide: inside the patch at any turn, which the regions' corners are not.
    const cv::Rect2d square(centre[0] - checker.size / 2, centre[1] - checker.size / 2,
                            checker.size, checker.size);
    const cv::Rect rect = cv::Rect(square) & cv::Rect({0, 0}, image.size());
    if (rect.width < kCellsPerSide || rect.height < kCellsPerSide) continue;
    const double difference = unevenness(image(rect));
    uneven += difference > allowed;
    if (difference <= worst) continue;
    worst = difference;
    worstPatch = patch;
  }
  if (uneven == 0) return std::nullopt;
  return std::to_string(uneven) + " of the 24 regions are not uniform, most of all that of patch " +
         std::to_string(worstPatch) + " (parts of it differ from its mean by " +
         formatFixed(worst, 0) + " of 255 levels)";
}

// Mean over the channels of the correlation between measured and reference patches; blind to
// exposure and white balance. A channel without any variation counts as 0.
double referenceCorrelation(const cv::Mat_<cv::Vec3f>& values) {
  double sum = 0.0;
  for (int channel = 0; channel < 3; ++channel) {
    double v = 0.0, r = 0.0, vv = 0.0, rr = 0.0, vr = 0.0;
    auto reference = colorchecker_srgb.begin();
    for (const auto& value : values) {
      const double x = value[channel], y = (*reference++)[channel];
      v += x, r += y, vv += x * x, rr += y * y, vr += x * y;
    }
    const double spread = (kPatchCount * vv - v * v) * (kPatchCount * rr - r * r);
    if (spread > 0.0) sum += (kPatchCount * vr - v * r) / std::sqrt(spread);
  }
  return sum / 3.0;
}

std::optional<std::string> coloursUnlike(const ColorChecker& checker) {
  const double correlation = referenceCorrelation(checker.values);
  if (correlation >= kSmallestCorrelation) return std::nullopt;
  return "the patches do not follow the chart's colours (correlation " +
         formatFixed(correlation, 2) + ", a chart gives above " +
         formatFixed(kSmallestCorrelation, 2) + ")";
}

std::optional<std::string> patchesTiny(const ColorChecker& checker) {
  if (checker.size >= kSmallestSize) return std::nullopt;
  return "the patches are only about " + formatFixed(2.0 * checker.size, 0) +
         " pixels wide, too few to judge the fit";
}

}  // namespace

std::vector<std::string> fitDoubts(const ColorChecker& checker, const cv::Mat& image) {
  std::vector<std::string> doubts;
  for (auto& doubt :
       {pointsOutside(checker, image.size()), neutralsNotDarkening(checker),
        patchesNotUniform(checker, image), coloursUnlike(checker), patchesTiny(checker)})
    if (doubt) doubts.push_back(*doubt);
  return doubts;
}

}  // namespace greycard
