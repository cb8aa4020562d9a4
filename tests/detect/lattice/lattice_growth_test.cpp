#include "lattice/lattice_growth.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>
#include <random>

#include "lattice/plane_map.h"

namespace greycard {
namespace {

// The covariance and area of a square of half side `half` as the map shows it.
FlatRegion regionAt(const PlaneMap& map, double u, double v, double half) {
  const auto c = squareCorners(map, u, v, half);
  const Point2 a{c[1].x - c[0].x, c[1].y - c[0].y}, b{c[3].x - c[0].x, c[3].y - c[0].y};
  return {map(u, v), std::fabs(a.x * b.y - a.y * b.x), (a.x * a.x + b.x * b.x) / 12.0,
          (a.x * a.y + b.x * b.y) / 12.0, (a.y * a.y + b.y * b.y) / 12.0};
}

std::vector<FlatRegion> grid(const PlaneMap& map, int columns, int rows, double half) {
  std::vector<FlatRegion> regions;
  for (int j = 0; j < rows; ++j)
    for (int i = 0; i < columns; ++i) regions.push_back(regionAt(map, i, j, half));
  std::stable_sort(regions.begin(), regions.end(),
                   [](const auto& p, const auto& q) { return p.area > q.area; });
  return regions;
}

const LensFrame kLens{{320, 240}, 400};

// Where on the plane's whole numbers a point of the picture lies.
std::pair<int, int> placeOf(const PlaneMap& map, const Point2& p) {
  std::pair<int, int> best;
  double nearest = HUGE_VAL;
  for (int j = 0; j < 4; ++j)
    for (int i = 0; i < 6; ++i) {
      const double distance = std::hypot(map(i, j).x - p.x, map(i, j).y - p.y);
      if (distance < nearest) nearest = distance, best = {i, j};
    }
  return best;
}

// How many of the lattice's neighbours are not neighbours on the plane.
int brokenSteps(const PlaneMap& map, const RegionLattice& lattice,
                const std::vector<FlatRegion>& regions) {
  std::map<std::pair<int, int>, std::pair<int, int>> places;
  for (const auto& node : lattice.nodes)
    places[{node.i, node.j}] = placeOf(map, regions[static_cast<std::size_t>(node.region)].centre);
  int broken = 0;
  for (const auto& [at, place] : places) {
    for (const auto& step : {std::pair{1, 0}, {0, 1}}) {
      const auto next = places.find({at.first + step.first, at.second + step.second});
      if (next == places.end()) continue;
      broken += std::abs(next->second.first - place.first) +
                    std::abs(next->second.second - place.second) !=
                1;
    }
  }
  return broken;
}

struct ViewCase {
  const char* name;
  Matrix3 homography;
  double radial;
};

TEST(LatticeGrowth, FollowsEveryView) {
  const ViewCase cases[] = {
      {"upright", {{{40, 0, 100}, {0, 40, 100}, {0, 0, 1}}}, 0.0},
      {"turned", {{{28, -28, 200}, {28, 28, 100}, {0, 0, 1}}}, 0.0},
      {"half as high as wide", {{{40, 0, 100}, {0, 20, 100}, {0, 0, 1}}}, 0.0},
      {"pressed along a diagonal", {{{30, -10, 150}, {-10, 30, 150}, {0, 0, 1}}}, 0.0},
      {"leaning by 60 degrees", {{{42, 0, 100}, {3, 22, 100}, {0.01, 0.05, 1}}}, 0.0},
      {"barrel distortion", {{{90, 0, 60}, {0, 90, 80}, {0, 0, 1}}}, 0.25},
      {"pincushion distortion", {{{90, 0, 60}, {0, 90, 80}, {0, 0, 1}}}, -0.2}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const PlaneMap map(c.homography, c.radial, kLens);
    auto regions = grid(map, 6, 4, 0.42);
    // Two patches are not seen, and there are things that are none.
    regions.erase(regions.begin() + 20);
    regions.erase(regions.begin() + 7);
    for (const Point2 p : {Point2{30, 30}, {600, 40}, {590, 60}, {20, 460}})
      regions.push_back({p, 800, 66, 0, 66});
    const auto lattices = growLattices(regions);
    ASSERT_FALSE(lattices.empty());
    EXPECT_GE(lattices[0].nodes.size(), c.radial == 0.0 ? 22U : 20U);
    EXPECT_EQ(brokenSteps(map, lattices[0], regions), 0);
  }
}

TEST(LatticeGrowth, LeavesOutNoPatchesAndFindsNoGridInNoise) {
  // The seed is the largest: a region so placed that every other patch makes a grid with it.
  const PlaneMap map({{{40, 0, 100}, {0, 40, 100}, {0, 0, 1}}}, 0.0, kLens);
  auto regions = grid(map, 6, 4, 0.42);
  auto odd = regionAt(map, -1, 0, 0.45);
  odd.centre = map(-1.0, -1.0);
  regions.insert(regions.begin(), odd);
  std::size_t most = 0;
  for (const auto& lattice : growLattices(regions)) most = std::max(most, lattice.nodes.size());
  EXPECT_GE(most, 24U);

  for (const auto& [columns, rows] : {std::pair{9, 1}, {1, 9}})
    for (const auto& lattice : growLattices(grid(map, columns, rows, 0.42)))
      EXPECT_TRUE(lattice.nodes.empty()) << "a line is no grid";

  std::mt19937 random(4);
  std::vector<FlatRegion> noise;
  for (int i = 0; i < 60; ++i)
    noise.push_back({{static_cast<double>(random() % 640), static_cast<double>(random() % 480)},
                     400,
                     33,
                     0,
                     33});
  for (const auto& lattice : growLattices(noise)) EXPECT_LT(lattice.nodes.size(), 14U);

  const auto tiles = growLattices(grid(map, 12, 10, 0.42));
  ASSERT_FALSE(tiles.empty());
  EXPECT_TRUE(tiles[0].endless);
  EXPECT_TRUE(growLattices({}).empty());
}

TEST(PlaneMap, IsFoundAgainFromItsPoints) {
  const ViewCase cases[] = {{"affine", {{{40, 7, 100}, {-5, 38, 100}, {0, 0, 1}}}, 0.0},
                            {"perspective", {{{42, 3, 100}, {3, 22, 100}, {0.02, 0.05, 1}}}, 0.0},
                            {"barrel", {{{90, 5, 60}, {2, 90, 80}, {0, 0.01, 1}}}, 0.2},
                            {"pincushion", {{{90, 5, 60}, {2, 90, 80}, {0, 0.01, 1}}}, -0.2}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const PlaneMap map(c.homography, c.radial, kLens);
    std::vector<PlanePoint> points;
    for (int i = 0; i < 24; ++i) {
      const Point2 p{i % 6 + 0.5, i / 6 + 0.5};
      points.push_back({p, map(p)});
    }
    const auto found = fitPlane(points, kLens, true);
    ASSERT_TRUE(found.has_value());
    EXPECT_NEAR(found->radial(), c.radial, 0.02);
    EXPECT_LT(worstPoint(points, *found).pitchesOff, 0.002);
    // Another numbering of the same plane sees the same places.
    const auto turned = found->relabelled({6, 4}, {-1, 0}, {0, -1});
    EXPECT_NEAR(turned(1, 1).x, (*found)(5, 3).x, 1e-6);
    EXPECT_NEAR(turned(1, 1).y, (*found)(5, 3).y, 1e-6);
  }
  const std::vector<PlanePoint> line{
      {{0, 0}, {0, 0}}, {{1, 0}, {1, 0}}, {{2, 0}, {2, 0}}, {{3, 0}, {3, 0}}};
  EXPECT_FALSE(fitPlane(line, kLens, true).has_value());
  EXPECT_FALSE(fitPlane(std::span(line).first(3), kLens, false).has_value());
}

}  // namespace
}  // namespace greycard
