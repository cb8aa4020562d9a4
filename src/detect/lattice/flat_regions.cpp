#include "lattice/flat_regions.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "lattice/row_runs.h"

namespace greycard {
namespace {

constexpr std::int64_t kSmallestArea = 16;  // working pixels
constexpr std::int64_t kLargestShare = 30;  // a region is at most one part in so many
constexpr int kSmallestSide = 4;            // of the box
constexpr double kLongestBox = 4.0;         // its longer side over its shorter
constexpr double kSmallestBoxShare = 0.40;  // area over that of the box
constexpr double kSmallestFill = 0.88, kLargestFill = 1.08;
constexpr double kLongestShape = 3.4;  // side ratio of the rectangle of equal moments
constexpr std::size_t kMostRegions = 8000;

// Pixels left..right of one row.
struct Run {
  int left, right, set;
};

// A set of connected runs; sums over its pixels.
struct PixelSet {
  std::int64_t area = 0, x = 0, y = 0, xx = 0, xy = 0, yy = 0;
  int left = std::numeric_limits<int>::max(), right = 0, top = 0, bottom = 0;

  void add(const PixelSet& other) {
    area += other.area, x += other.x, y += other.y;
    xx += other.xx, xy += other.xy, yy += other.yy;
    left = std::min(left, other.left), right = std::max(right, other.right);
    top = std::min(top, other.top), bottom = std::max(bottom, other.bottom);
  }
};

// Sum of the squares 0 .. n.
std::int64_t squaresTo(std::int64_t n) {
  return n * (n + 1) * (2 * n + 1) / 6;
}

PixelSet ofRun(std::int64_t left, std::int64_t right, std::int64_t row) {
  PixelSet set;
  set.area = right - left + 1;
  set.x = set.area * (left + right) / 2;
  set.y = set.area * row;
  set.xx = squaresTo(right) - squaresTo(left - 1);
  set.xy = set.x * row;
  set.yy = set.y * row;
  set.left = static_cast<int>(left), set.right = static_cast<int>(right);
  set.top = set.bottom = static_cast<int>(row);
  return set;
}

// Joins the runs of row after row; only the last row's are kept.
class RunJoiner {
 public:
  // The pixels left..left + length - 1 of a row.
  void addRow(const std::uint8_t* contrast, int left, int length, int y, int threshold) {
    above_.swap(row_);
    row_.clear();
    std::size_t first = 0;  // of the runs above that may still touch
    runs_.find(contrast + left, length, threshold);
    runs_.forEach([&](int begin, int end) {
      while (first < above_.size() && above_[first].right < left + begin) ++first;
      addRun(left + begin, left + end, y, first);
    });
  }

  /// The sets that are not part of another.
  template <typename Use>
  void forEachSet(Use use) const {
    for (std::size_t i = 0; i < sets_.size(); ++i)
      if (parents_[i] == static_cast<int>(i)) use(sets_[i]);
  }

 private:
  int rootOf(int set) {
    while (parents_[at(set)] != set) set = parents_[at(set)] = parents_[at(parents_[at(set)])];
    return set;
  }

  void addRun(int left, int right, int y, std::size_t above) {
    int set = -1;
    for (; above < above_.size() && above_[above].left <= right; ++above) {
      const int other = rootOf(above_[above].set);
      if (set < 0) set = other;
      if (set == other) continue;
      // The older set swallows the younger.
      const int kept = std::min(set, other), gone = std::max(set, other);
      sets_[at(kept)].add(sets_[at(gone)]);
      parents_[at(gone)] = kept;
      set = kept;
    }
    const auto run = ofRun(left, right, y);
    if (set < 0) {
      set = static_cast<int>(sets_.size());
      parents_.push_back(set);
      sets_.push_back(run);
    } else {
      sets_[at(set)].add(run);
    }
    row_.push_back({left, right, set});
  }

  static std::size_t at(int set) { return static_cast<std::size_t>(set); }

  RowRuns runs_;
  std::vector<Run> above_, row_;
  std::vector<PixelSet> sets_;
  std::vector<int> parents_;
};

bool hasPatchBox(const PixelSet& set, std::int64_t largestArea) {
  if (set.area < kSmallestArea || set.area > largestArea) return false;
  const int width = set.right - set.left + 1, height = set.bottom - set.top + 1;
  const int shorter = std::min(width, height), longer = std::max(width, height);
  return shorter >= kSmallestSide && longer <= kLongestBox * shorter &&
         static_cast<double>(set.area) >= kSmallestBoxShare * width * height;
}

// In working pixels.
FlatRegion momentsOf(const PixelSet& set) {
  const auto n = static_cast<double>(set.area);
  const double x = static_cast<double>(set.x) / n, y = static_cast<double>(set.y) / n;
  // About the box's corner the sums keep their digits; a pixel itself has variance 1/12.
  const auto about = [n](std::int64_t sum, double a, double b) {
    return static_cast<double>(sum) / n - a * b;
  };
  return {{x, y},
          n,
          about(set.xx, x, x) + 1.0 / 12.0,
          about(set.xy, x, y),
          about(set.yy, y, y) + 1.0 / 12.0};
}

bool hasPatchShape(const FlatRegion& region) {
  const double determinant = region.xx * region.yy - region.xy * region.xy;
  if (!(determinant > 0.0)) return false;
  const double fill = region.area / (12.0 * std::sqrt(determinant));
  if (fill < kSmallestFill || fill > kLargestFill) return false;
  // Of the eigenvalues: ratio r of sides means trace / sqrt(det) = r + 1 / r.
  return (region.xx + region.yy) / std::sqrt(determinant) <= kLongestShape + 1.0 / kLongestShape;
}

FlatRegion inPicture(FlatRegion region, const WorkingPicture& picture) {
  const double square = picture.factor * picture.factor;
  region.centre = picture.toPicture(region.centre.x, region.centre.y);
  region.area *= square;
  region.xx *= square, region.xy *= square, region.yy *= square;
  return region;
}

bool isLarger(const FlatRegion& a, const FlatRegion& b) {
  if (a.area != b.area) return a.area > b.area;
  return a.centre.y != b.centre.y ? a.centre.y < b.centre.y : a.centre.x < b.centre.x;
}

}  // namespace

std::vector<FlatRegion> flatRegions(const ContrastMap& contrast, int threshold,
                                    const WorkingPicture& picture) {
  return flatRegions(contrast, threshold, picture, {0, 0, contrast.width, contrast.height});
}

std::vector<FlatRegion> flatRegions(const ContrastMap& contrast, int threshold,
                                    const WorkingPicture& picture, const PixelWindow& part) {
  RunJoiner joiner;
  for (int y = part.top; y < part.top + part.height; ++y)
    joiner.addRow(contrast.row(y), part.left, part.width, y, threshold);

  std::vector<FlatRegion> regions;
  const auto largest = static_cast<std::int64_t>(picture.planeSize()) / kLargestShare;
  joiner.forEachSet([&](const PixelSet& set) {
    if (!hasPatchBox(set, largest)) return;
    const auto region = momentsOf(set);
    if (hasPatchShape(region)) regions.push_back(inPicture(region, picture));
  });
  std::sort(regions.begin(), regions.end(), isLarger);
  if (regions.size() > kMostRegions) regions.resize(kMostRegions);
  return regions;
}

}  // namespace greycard
