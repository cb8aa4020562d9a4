#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "lattice/flat_regions.h"
#include "lattice/lattice_growth.h"
#include "lattice/plane_map.h"
#include "lattice/working_picture.h"
#include "window/place_sample.h"

namespace greycard {

/// The places of a lattice and some round it, seen through a map that its nodes agree on: nodes
/// that are off it are dropped, the worst first.
class LatticePlaces {
 public:
  LatticePlaces(const RegionLattice& lattice, const std::vector<FlatRegion>& regions,
                const WorkingPicture& picture, const LensFrame& lens);

  /// Whether enough nodes agree; nothing else may be asked otherwise.
  bool usable() const { return map_.has_value(); }

  // Places are counted from 0, from `first` of the lattice on.
  int columns() const { return columns_; }
  int rows() const { return rows_; }
  Point2 first() const { return {static_cast<double>(firstI_), static_cast<double>(firstJ_)}; }
  const PlaneMap& map() const { return *map_; }
  int nodeCount() const { return static_cast<int>(nodes_.size()); }
  bool isNode(int i, int j) const { return isNode_[at(i, j)]; }

  /// Taken when first asked for: most places are in no window that is possible.
  const PlaceSample& sample(int i, int j);

 private:
  void fit(const std::vector<FlatRegion>& regions, const LensFrame& lens);
  std::size_t at(int i, int j) const {
    return static_cast<std::size_t>(j) * static_cast<std::size_t>(columns_) +
           static_cast<std::size_t>(i);
  }

  const WorkingPicture& picture_;
  std::vector<LatticeNode> nodes_;
  std::optional<PlaneMap> map_;
  int firstI_ = 0, firstJ_ = 0, columns_ = 0, rows_ = 0;
  std::vector<std::optional<PlaceSample>> samples_;
  std::vector<bool> isNode_;
};

}  // namespace greycard
