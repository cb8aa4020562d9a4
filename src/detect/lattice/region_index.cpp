#include "lattice/region_index.h"

#include <algorithm>
#include <cmath>

namespace greycard {

RegionIndex::RegionIndex(const std::vector<FlatRegion>& regions) {
  constexpr double kMostPerSide = 1024.0;
  Point2 end;
  for (std::size_t i = 0; i < regions.size(); ++i) {
    const auto& p = regions[i].centre;
    origin_ = i == 0 ? p : Point2{std::min(origin_.x, p.x), std::min(origin_.y, p.y)};
    end = i == 0 ? p : Point2{std::max(end.x, p.x), std::max(end.y, p.y)};
  }
  const double width = end.x - origin_.x, height = end.y - origin_.y;
  const auto count = static_cast<double>(std::max<std::size_t>(1, regions.size()));
  side_ = std::max(
      {1.0, std::sqrt(width * height / count), width / kMostPerSide, height / kMostPerSide});
  columns_ = static_cast<int>(width / side_) + 1;
  rows_ = static_cast<int>(height / side_) + 1;

  std::vector<std::size_t> bins(regions.size());
  starts_.assign(static_cast<std::size_t>(columns_) * static_cast<std::size_t>(rows_) + 1, 0);
  for (std::size_t i = 0; i < regions.size(); ++i) {
    const auto& p = regions[i].centre;
    bins[i] = static_cast<std::size_t>(binOf(p.y - origin_.y, rows_)) *
                  static_cast<std::size_t>(columns_) +
              static_cast<std::size_t>(binOf(p.x - origin_.x, columns_));
    ++starts_[bins[i] + 1];
  }
  for (std::size_t i = 1; i < starts_.size(); ++i) starts_[i] += starts_[i - 1];
  auto next = starts_;
  sorted_.resize(regions.size());
  for (std::size_t i = 0; i < regions.size(); ++i)
    sorted_[static_cast<std::size_t>(next[bins[i]]++)] = static_cast<int>(i);
}

int RegionIndex::binOf(double offset, int count) const {
  return static_cast<int>(std::clamp(std::floor(offset / side_), 0.0, count - 1.0));
}

}  // namespace greycard
