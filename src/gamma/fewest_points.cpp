#include "greycard/fewest_points.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <stdexcept>
#include <utility>
#include <vector>

#include "interpolator.h"

namespace greycard {
namespace {

constexpr std::int32_t kXScale = 4, kYScale = 64, kLastX = 255, kLastY = 255, kCeiling = 16383;
constexpr std::int32_t kLongestXStep = 32, kLongestYStep = 8;
constexpr std::size_t kMostWithAllStarts = 12;  // more would take longer than a second

struct Deviation {
  std::int64_t worst = 0;
  std::size_t where = 0;
  double cost = 0.0;  // a smooth stand-in of the worst one
};

class PointSearch {
 public:
  PointSearch(std::span<const std::int32_t> table, double codes) : table_(table), codes_(codes) {}

  std::optional<ControlPointList> run() {
    ControlPointList best = start(2, 1.0);
    // The curve passes through its ends, whose Y are whole.
    for (const ControlPoint& end : best)
      if (std::abs(end.Y * kYScale - table_[static_cast<std::size_t>(end.X) * kXScale]) > codes_)
        return std::nullopt;
    for (std::size_t count = 2; count <= kMostFewestPoints; ++count) {
      if (count > 2) best = bestOf(count, best);
      descend(best);
      if (static_cast<double>(deviation(best).worst) <= codes_) return best;
    }
    return std::nullopt;
  }

 private:
  std::int32_t yAt(std::int32_t x) const {
    const double y = static_cast<double>(table_[static_cast<std::size_t>(x) * kXScale]) / kYScale;
    return std::clamp(static_cast<std::int32_t>(std::lround(y)), 0, kLastY);
  }

  // X at 255 (i / (count - 1))^crowding, at least 1 apart.
  ControlPointList start(std::size_t count, double crowding) const {
    ControlPointList points;
    for (std::size_t i = 0; i < count; ++i) {
      const double part =
          std::pow(static_cast<double>(i) / static_cast<double>(count - 1), crowding);
      const auto place = static_cast<std::int32_t>(std::lround(kLastX * part));
      const auto room = static_cast<std::int32_t>(count - 1 - i);
      const std::int32_t least = points.empty() ? 0 : points.back().X + 1;
      const std::int32_t x = std::clamp(place, least, std::max(least, kLastX - room));
      points.push_back({x, yAt(x)});
    }
    return points;
  }

  // The points with another in the middle of a gap, if there is room.
  std::optional<ControlPointList> split(ControlPointList points, std::size_t gap) const {
    const std::int32_t x = (points[gap].X + points[gap + 1].X) / 2;
    if (x == points[gap].X) return std::nullopt;
    points.insert(points.begin() + static_cast<std::ptrdiff_t>(gap) + 1, {x, yAt(x)});
    return points;
  }

  // The gap in which the curve is farthest off.
  std::size_t worstGap(const ControlPointList& points) {
    const auto x = static_cast<std::int32_t>(deviation(points).where / kXScale);
    std::size_t gap = 0;
    while (gap + 2 < points.size() && points[gap + 1].X <= x) ++gap;
    return gap;
  }

  ControlPointList bestOf(std::size_t count, const ControlPointList& before) {
    std::vector<ControlPointList> starts;
    for (const double crowding : {1.0, 2.0, 3.0, 5.0}) starts.push_back(start(count, crowding));
    if (count == 3)  // the middle one anywhere: this is what can be proved, so it should be right
      for (std::int32_t x = 1; x < kLastX; x += x < 32 ? 1 : 8)
        starts.push_back({{0, yAt(0)}, {x, yAt(x)}, {kLastX, yAt(kLastX)}});
    const std::size_t worst = worstGap(before);
    for (std::size_t gap = 0; gap + 1 < before.size(); ++gap)
      if (count <= kMostWithAllStarts || gap == worst)
        if (auto points = split(before, gap)) starts.push_back(std::move(*points));
    for (ControlPointList& points : starts) descend(points);
    return *std::ranges::min_element(
        starts, {}, [&](const ControlPointList& points) { return deviation(points).worst; });
  }

  Deviation deviation(const ControlPointList& points) {
    interpolator_.GenerateCurve(points, kXScale, kYScale, curve_);
    Deviation result;
    for (std::size_t i = 0; i < curve_.size(); ++i) {
      const std::int64_t off = std::abs(std::int64_t{curve_[i]} - table_[i]);
      if (off > result.worst) result.worst = off, result.where = i;
      const double part = static_cast<double>(off) / codes_;
      double power = part * part;
      for (int k = 1; k < doublings_; ++k) power *= power;
      result.cost += power;
    }
    return result;
  }

  // Two neighbours (or one and itself) by so much, if that lowers the cost. A new X takes the
  // table's Y.
  bool tryMove(ControlPointList& points, std::size_t i, ControlPoint by, std::size_t k = 0,
               std::int32_t otherY = 0) {
    const ControlPointList before = points;
    points[i] = {points[i].X + by.X, by.X == 0 ? points[i].Y + by.Y : yAt(points[i].X + by.X)};
    points[k].Y += otherY;
    const auto isCode = [](std::int32_t y) { return y >= 0 && y <= kLastY; };
    if (isCode(points[i].Y) && isCode(points[k].Y)) {
      const double cost = deviation(points).cost;
      if (cost < cost_) {
        cost_ = cost;
        return true;
      }
    }
    points = before;
    return false;
  }

  bool moveAlongX(ControlPointList& points, std::size_t i, std::int32_t step) {
    if (i == 0 || i + 1 == points.size()) return false;
    const std::int32_t x = points[i].X + step;
    return x > points[i - 1].X && x < points[i + 1].X && tryMove(points, i, {step, 0});
  }
  // Alone, and with its neighbour the same way and the other.
  bool moveAlongY(ControlPointList& points, std::size_t i, std::int32_t step) {
    bool better = tryMove(points, i, {0, step});
    if (i + 1 < points.size())
      for (const std::int32_t other : {step, -step})
        better = tryMove(points, i, {0, step}, i + 1, other) || better;
    return better;
  }

  // First by the 8th power of deviations, then by the 32nd, which is nearly the worst alone.
  void descend(ControlPointList& points) {
    for (doublings_ = 3; doublings_ <= 5; doublings_ += 2) descendFrom(points, kLongestXStep);
  }

  void descendFrom(ControlPointList& points, std::int32_t longestStep) {
    cost_ = deviation(points).cost;
    for (std::int32_t step = longestStep; step > 0; step /= 2)
      for (bool better = true; better;) {
        better = false;
        for (std::size_t i = 0; i < points.size(); ++i)
          for (const std::int32_t move : {step, -step}) {
            better = moveAlongX(points, i, move) || better;
            if (step <= kLongestYStep) better = moveAlongY(points, i, move) || better;
          }
      }
  }

  std::span<const std::int32_t> table_;
  double codes_;
  double cost_ = 0.0;
  int doublings_ = 3;  // of the power, from 1, that the cost raises deviations to
  Interpolator interpolator_{kCeiling};
  std::array<std::int32_t, kCurveEntries> curve_{};
};

}  // namespace

std::optional<ControlPointList> fewestControlPoints(std::span<const std::int32_t> table,
                                                    double codes) {
  if (table.size() != kCurveEntries || !(codes > 0.0))
    throw std::invalid_argument(
        "control points are sought for a table of 1024 entries and a limit above 0");
  return PointSearch(table, codes).run();
}

}  // namespace greycard
