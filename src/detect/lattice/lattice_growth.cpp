#include "lattice/lattice_growth.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "lattice/region_index.h"

namespace greycard {
namespace {

constexpr double kLikeArea = 2.2;                      // largest ratio of areas of neighbours
constexpr double kNearest = 0.6, kFarthestStep = 2.8;  // neighbours' distance in region sides
constexpr std::size_t kMostNeighbours = 8;
constexpr double kSmallestFit = 0.72;                       // of the steps to the region's shape
constexpr double kCornerWithin = 0.25, kStepWithin = 0.22;  // of the step
constexpr std::size_t kFewestNodes = 7, kMostNodes = 64;
constexpr double kInsideShare = 0.4;  // like regions inside the cells, per node
constexpr int kPasses = 3;
constexpr int kLatticeReach = 24;  // places from the seed, each way
// Looks at the neighbourhood of a place: a bound that only noise and endless patterns meet.
constexpr int kMostLooks = 4000, kMostLooksPerRegion = 5;
constexpr std::size_t kMostLattices = 32;

Point2 operator+(const Point2& a, const Point2& b) {
  return {a.x + b.x, a.y + b.y};
}
Point2 operator-(const Point2& a, const Point2& b) {
  return {a.x - b.x, a.y - b.y};
}
double squaredLength(const Point2& a) {
  return a.x * a.x + a.y * a.y;
}
double cross(const Point2& a, const Point2& b) {
  return a.x * b.y - a.y * b.x;
}

// How well a aT + b bT is proportional to the region's covariance C: 4 det(X) / trace(X)^2 of
// X = C^-1 (a aT + b bT), 1 for a perfect fit.
double shapeFit(const FlatRegion& region, const Point2& a, const Point2& b) {
  const double xx = a.x * a.x + b.x * b.x, xy = a.x * a.y + b.x * b.y, yy = a.y * a.y + b.y * b.y;
  const double determinant = region.xx * region.yy - region.xy * region.xy;
  const double trace = region.yy * xx - 2.0 * region.xy * xy + region.xx * yy;
  return 4.0 * determinant * (xx * yy - xy * xy) / (trace * trace);
}

bool areLike(double areaA, double areaB) {
  return areaA < kLikeArea * areaB && areaB < kLikeArea * areaA;
}

struct Steps {
  Point2 a, b;
  double fit;
};

class Grower {
 public:
  explicit Grower(const std::vector<FlatRegion>& regions)
      : regions_(regions), index_(regions), taken_(regions.size(), 0), usedIn_(regions.size(), 0) {}

  std::vector<RegionLattice> all() {
    std::vector<RegionLattice> lattices;
    for (int seed = 0; seed < static_cast<int>(regions_.size()); ++seed) {
      if (lattices.size() >= kMostLattices || isExhausted()) break;
      if (taken_[at(seed)]) continue;
      auto lattice = bestFrom(seed);
      if (lattice.nodes.size() < kFewestNodes) continue;
      for (const auto& node : lattice.nodes) taken_[at(node.region)] = 1;
      lattices.push_back(std::move(lattice));
    }
    return lattices;
  }

 private:
  static std::size_t at(int i) { return static_cast<std::size_t>(i); }
  const FlatRegion& region(int i) const { return regions_[at(i)]; }
  bool isExhausted() const {
    return looks_ >= kMostLooks + kMostLooksPerRegion * static_cast<int>(regions_.size());
  }

  // The lattice from this seed that most nodes agree to.
  RegionLattice bestFrom(int seed) {
    RegionLattice best;
    double bestFit = kFewestNodes - 1;
    for (const auto& steps : startsFrom(seed)) {
      if (isExhausted()) break;
      auto lattice = grow(seed, steps);
      const double fit = agreement(lattice, steps);
      if (lattice.endless) return lattice;
      if (!(fit > bestFit) || isCoarse(lattice, steps)) continue;
      best = std::move(lattice);
      bestFit = fit;
    }
    return best;
  }

  // Sum over the nodes of how well their own steps suit their own shape; those that don't, don't
  // count.
  double agreement(const RegionLattice& lattice, const Steps& steps) const {
    double sum = 0.0;
    for (const auto& node : lattice.nodes) {
      const double fit =
          shapeFit(region(node.region), stepAt(node, 1, 0, steps.a), stepAt(node, 0, 1, steps.b));
      if (fit >= kSmallestFit) sum += fit;
    }
    return sum;
  }

  // Whether the cells hold like regions inside: then the lattice leaves out patches.
  bool isCoarse(const RegionLattice& lattice, const Steps& steps) const {
    int inside = 0;
    for (const auto& node : lattice.nodes) {
      const auto a = stepAt(node, 1, 0, steps.a), b = stepAt(node, 0, 1, steps.b);
      const auto& from = region(node.region);
      const double area = cross(a, b),
                   radius = 0.5 * std::sqrt(std::max(squaredLength(a + b), squaredLength(a - b)));
      const Point2 middle{from.centre.x + 0.5 * (a.x + b.x), from.centre.y + 0.5 * (a.y + b.y)};
      index_.forEachNear(middle, radius, [&](int other) {
        if (usedIn_[at(other)] == growth_ || !areLike(from.area, region(other).area)) return;
        const auto offset = region(other).centre - from.centre;
        const double s = cross(offset, b) / area, t = cross(a, offset) / area;
        const bool off =
            std::fabs(s - 0.5) < 0.5 - kCornerWithin || std::fabs(t - 0.5) < 0.5 - kCornerWithin;
        inside += off && s > -0.05 && s < 0.95 && t > -0.05 && t < 0.95;
      });
    }
    return inside > kInsideShare * static_cast<double>(lattice.nodes.size());
  }

  // Vectors to the nearest like regions, nearest first.
  std::vector<Point2> neighbourSteps(int seed) const {
    const auto& from = region(seed);
    const double side = std::sqrt(from.area);
    std::vector<std::pair<double, int>> near;
    index_.forEachNear(from.centre, kFarthestStep * side, [&](int other) {
      if (other == seed || taken_[at(other)] || !areLike(from.area, region(other).area)) return;
      const double distance = squaredLength(region(other).centre - from.centre);
      if (distance >= kNearest * kNearest * from.area &&
          distance <= kFarthestStep * kFarthestStep * from.area)
        near.emplace_back(distance, other);
    });
    const auto count = std::min(near.size(), kMostNeighbours);
    std::partial_sort(near.begin(), near.begin() + static_cast<std::ptrdiff_t>(count), near.end());
    std::vector<Point2> steps;
    for (std::size_t i = 0; i < count; ++i)
      steps.push_back(region(near[i].second).centre - from.centre);
    return steps;
  }

  // Pairs of steps that suit the seed's shape and have a region at the fourth corner.
  std::vector<Steps> startsFrom(int seed) {
    const auto& from = region(seed);
    const auto near = neighbourSteps(seed);
    std::vector<Steps> starts;
    ++growth_;
    for (std::size_t i = 0; i < near.size(); ++i) {
      for (std::size_t j = i + 1; j < near.size(); ++j) {
        const double turn = cross(near[i], near[j]);
        if (std::fabs(turn) < from.area) continue;
        const double fit = shapeFit(from, near[i], near[j]);
        if (fit < kSmallestFit) continue;
        const double within =
            kCornerWithin * std::sqrt(std::min(squaredLength(near[i]), squaredLength(near[j])));
        if (nearest(from.centre + near[i] + near[j], within, from.area) < 0) continue;
        starts.push_back(turn > 0.0 ? Steps{near[i], near[j], fit} : Steps{near[j], near[i], fit});
      }
    }
    return starts;
  }

  // The nearest region within the radius that is like `area` and not yet in this growth, or -1.
  int nearest(const Point2& place, double radius, double area) {
    ++looks_;
    int best = -1;
    double bestDistance = radius * radius;
    index_.forEachNear(place, radius, [&](int other) {
      if (usedIn_[at(other)] == growth_ || taken_[at(other)]) return;
      const double distance = squaredLength(region(other).centre - place);
      const bool nearer = distance < bestDistance || (distance == bestDistance && other < best);
      if (!nearer || !areLike(area, region(other).area)) return;
      best = other;
      bestDistance = distance;
    });
    return best;
  }

  RegionLattice grow(int seed, const Steps& steps) {
    ++growth_;
    places_.fill(-1);
    RegionLattice lattice;
    add(lattice, 0, 0, seed);
    for (int pass = 0; pass < kPasses; ++pass) {
      const auto before = lattice.nodes.size();
      for (std::size_t n = 0; n < lattice.nodes.size() && !lattice.endless; ++n) {
        const auto node = lattice.nodes[n];
        for (const int side : {1, -1}) {
          extend(lattice, node, side, 0, steps.a);
          extend(lattice, node, 0, side, steps.b);
        }
        lattice.endless = lattice.nodes.size() > kMostNodes;
      }
      if (lattice.endless || lattice.nodes.size() == before) break;
    }
    if (!spansArea(lattice)) lattice.nodes.clear();
    return lattice;
  }

  static bool spansArea(const RegionLattice& lattice) {
    const auto differs = [&](auto member) {
      return std::any_of(lattice.nodes.begin(), lattice.nodes.end(), [&](const LatticeNode& node) {
        return node.*member != lattice.nodes.front().*member;
      });
    };
    return differs(&LatticeNode::i) && differs(&LatticeNode::j);
  }

  void add(RegionLattice& lattice, int i, int j, int number) {
    lattice.nodes.push_back({i, j, number});
    usedIn_[at(number)] = growth_;
    place(i, j) = number;
  }

  // One place further from the node in direction (di, dj), whose step from the seed is `seedStep`.
  void extend(RegionLattice& lattice, const LatticeNode& node, int di, int dj, Point2 seedStep) {
    const int i = node.i + di, j = node.j + dj;
    if (std::abs(i) > kLatticeReach || std::abs(j) > kLatticeReach || place(i, j) >= 0) return;
    if (di + dj < 0) seedStep = Point2{} - seedStep;
    const auto step = localStep(node, di, dj, seedStep);
    const auto& from = region(node.region);
    const int found =
        nearest(from.centre + step, kStepWithin * std::sqrt(squaredLength(step)), from.area);
    if (found >= 0) add(lattice, i, j, found);
  }

  // Mean of the step behind the node and the parallel steps beside it, else the seed's.
  Point2 localStep(const LatticeNode& node, int di, int dj, const Point2& seedStep) const {
    Point2 sum;
    int count = 0;
    const auto take = [&](int i, int j) {
      const int from = placeOr(i, j), to = placeOr(i + di, j + dj);
      if (from < 0 || to < 0) return;
      sum = sum + (region(to).centre - region(from).centre);
      ++count;
    };
    take(node.i - di, node.j - dj);
    take(node.i + dj, node.j + di);
    take(node.i - dj, node.j - di);
    return count > 0 ? Point2{sum.x / count, sum.y / count} : seedStep;
  }

  // The step in the direction (di, dj) through the node, from its neighbours on both sides.
  Point2 stepAt(const LatticeNode& node, int di, int dj, const Point2& seedStep) const {
    const int before = placeOr(node.i - di, node.j - dj), after = placeOr(node.i + di, node.j + dj);
    const auto& here = region(node.region).centre;
    if (before < 0 && after < 0) return seedStep;
    if (before < 0) return region(after).centre - here;
    if (after < 0) return here - region(before).centre;
    const auto both = region(after).centre - region(before).centre;
    return {0.5 * both.x, 0.5 * both.y};
  }

  static constexpr int kSide = 2 * kLatticeReach + 1;
  int& place(int i, int j) { return places_[at((j + kLatticeReach) * kSide + i + kLatticeReach)]; }
  int placeOr(int i, int j) const {
    if (std::abs(i) > kLatticeReach || std::abs(j) > kLatticeReach) return -1;
    return places_[at((j + kLatticeReach) * kSide + i + kLatticeReach)];
  }

  const std::vector<FlatRegion>& regions_;
  RegionIndex index_;
  std::vector<char> taken_;  // by a lattice
  std::vector<int> usedIn_;  // the growth that used a region last
  int growth_ = 0, looks_ = 0;
  std::array<int, static_cast<std::size_t>(kSide) * kSide> places_{};  // region per place, or -1
};

}  // namespace

std::vector<RegionLattice> growLattices(const std::vector<FlatRegion>& regions) {
  return Grower(regions).all();
}

}  // namespace greycard
