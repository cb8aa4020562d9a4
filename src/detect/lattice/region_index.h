#pragma once

#include <optional>
#include <vector>

#include "lattice/flat_regions.h"

namespace greycard {

/// Finds the regions near a place: a grid of bins over the picture, about as many as regions.
class RegionIndex {
 public:
  explicit RegionIndex(const std::vector<FlatRegion>& regions);

  /// Calls use(region number) for every region whose centre lies in the square round the place, and
  /// maybe for some a little outside.
  template <typename Use>
  void forEachNear(const Point2& place, double radius, Use use) const {
    const int left = binOf(place.x - radius - origin_.x, columns_);
    const int right = binOf(place.x + radius - origin_.x, columns_);
    const int top = binOf(place.y - radius - origin_.y, rows_);
    const int bottom = binOf(place.y + radius - origin_.y, rows_);
    for (int y = top; y <= bottom; ++y) {
      const auto row = static_cast<std::size_t>(y) * static_cast<std::size_t>(columns_);
      const int first = starts_[row + static_cast<std::size_t>(left)];
      const int end = starts_[row + static_cast<std::size_t>(right) + 1];
      for (int i = first; i < end; ++i) use(sorted_[static_cast<std::size_t>(i)]);
    }
  }

 private:
  int binOf(double offset, int count) const;

  Point2 origin_;
  double side_ = 1.0;  // of a bin
  int columns_ = 1, rows_ = 1;
  std::vector<int> starts_;  // per bin the first of its numbers in sorted_, and the end
  std::vector<int> sorted_;
};

}  // namespace greycard
