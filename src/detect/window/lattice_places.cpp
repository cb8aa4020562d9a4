#include "window/lattice_places.h"

#include <algorithm>

namespace greycard {
namespace {

constexpr int kBeyond = 5;  // places round the nodes: the rest of a chart of which a row is seen
constexpr std::size_t kFewestPlaceNodes = 7;
constexpr double kOffTheMap = 0.15;  // pitches: a node further off is none

}  // namespace

LatticePlaces::LatticePlaces(const RegionLattice& lattice, const std::vector<FlatRegion>& regions,
                             const WorkingPicture& picture, const LensFrame& lens)
    : picture_(picture), nodes_(lattice.nodes) {
  fit(regions, lens);
  if (!map_) return;
  const auto [left, right] = std::minmax_element(
      nodes_.begin(), nodes_.end(), [](const auto& a, const auto& b) { return a.i < b.i; });
  const auto [top, bottom] = std::minmax_element(
      nodes_.begin(), nodes_.end(), [](const auto& a, const auto& b) { return a.j < b.j; });
  firstI_ = left->i - kBeyond, firstJ_ = top->j - kBeyond;
  columns_ = right->i - left->i + 1 + 2 * kBeyond;
  rows_ = bottom->j - top->j + 1 + 2 * kBeyond;
  const auto count = static_cast<std::size_t>(columns_) * static_cast<std::size_t>(rows_);
  samples_.resize(count);
  isNode_.resize(count, false);
  for (const auto& node : nodes_) isNode_[at(node.i - firstI_, node.j - firstJ_)] = true;
}

const PlaceSample& LatticePlaces::sample(int i, int j) {
  auto& sample = samples_[at(i, j)];
  if (!sample) sample = samplePlace(picture_, *map_, firstI_ + i, firstJ_ + j);
  return *sample;
}

void LatticePlaces::fit(const std::vector<FlatRegion>& regions, const LensFrame& lens) {
  while (nodes_.size() >= kFewestPlaceNodes) {
    std::vector<PlanePoint> points;
    for (const auto& node : nodes_)
      points.push_back({{static_cast<double>(node.i), static_cast<double>(node.j)},
                        regions[static_cast<std::size_t>(node.region)].centre});
    map_ = fitPlane(points, lens, false);
    if (!map_) return;
    const auto worst = worstPoint(points, *map_);
    if (worst.pitchesOff <= kOffTheMap) return;
    nodes_.erase(nodes_.begin() + static_cast<std::ptrdiff_t>(worst.number));
  }
  map_.reset();
}

}  // namespace greycard
