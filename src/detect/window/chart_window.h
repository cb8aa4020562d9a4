#pragma once

#include <array>
#include <vector>

#include "lattice/flat_regions.h"
#include "lattice/lattice_growth.h"
#include "lattice/plane_map.h"
#include "lattice/working_picture.h"
#include "window/chart_score.h"
#include "window/place_sample.h"

namespace greycard {

/// A 6 x 4 window of a lattice, or any other place where the chart may be, and what speaks for it.
struct ChartWindow {
  PlaneMap map;  ///< chart plane to picture: the centre of row r, column c is (c + 0.5, r + 0.5)
  std::array<PlaceSample, kPatchCount> samples{};
  std::array<bool, kPatchCount> supported{};  ///< a flat region was seen on the patch
  ChartScore colour;
  int inside = 0, supporting = 0, flat = 0;  ///< patches
  int missingEdges = 0;                      ///< between neighbouring patches; 0 until judged alone
  double gate = -1.0;                        ///< the score less what is missing; see gateOf
  double halfSide = 0.42;  ///< of a patch, in pitches; measured once it is worth it
  bool grey = false;       ///< samples hold lightness alone
  double gain = 1.0;       ///< by which the samples were brightened

  std::vector<int> outliers() const;  ///< patches, from 0, unlike the chart's; ascending
};

/// Sampled and judged where the map says, its edges too; `supported` is as given.
ChartWindow judgeWindow(const WorkingPicture& picture, const PlaneMap& map,
                        const std::array<bool, kPatchCount>& supported);

/// Judged by samples taken at places of their own, each of them taken for a patch; without a map.
ChartWindow judgeSamples(const WorkingPicture& picture,
                         const std::array<PlaceSample, kPatchCount>& samples);

/// Which windows of a lattice are asked for.
enum class WindowKind {
  whole,     ///< all of it in the picture
  mirrored,  ///< likewise, of the other handedness: how a mirrored chart looks
  cut        ///< at least 10 patches in the picture and one outside; gate is the score of those
};

/// The windows of the lattice on enough of its nodes (7, or 60 % of them) both ways round, those
/// with a gate above `smallestGate`; surest first.
std::vector<ChartWindow> chartWindows(const RegionLattice& lattice,
                                      const std::vector<FlatRegion>& regions,
                                      const WorkingPicture& picture, const LensFrame& lens,
                                      WindowKind kind, double smallestGate);

}  // namespace greycard
