#pragma once

#include <optional>
#include <vector>

#include "greycard/patch_sampler.h"
#include "greycard/picture.h"
#include "lattice/working_picture.h"
#include "window/chart_window.h"

namespace greycard {

/// Pixels: a window whose shorter side is below holds no four rows of patches and is not searched.
inline constexpr int kSmallestChartSide = 24;

struct LatticeLimits {
  double smallestGate = 0.70;  ///< below it nothing is accepted
  int mostCharts = 1;
  std::int64_t finestPixels = 2'000'000;  ///< of the finest working picture
};

/// How one working picture of a search is made, and the contrast threshold at which it came
/// furthest.
struct LatticeAttempt {
  enum class Kind { reduced, halved, smoothed, doubledSmoothed };
  Kind kind = Kind::reduced;
  int factor = 1;
  int threshold = 0;
  std::optional<SampleLevels> levels;  ///< as which the samples were taken
};

/// What the search gave.
struct LatticeSearch {
  std::vector<ChartWindow> charts;  ///< accepted, surest first, without overlaps
  std::optional<ChartWindow> best;  ///< the best window refused
  /// That of the first chart, else of the best window, else the one with the largest lattice or
  /// most regions; without threshold when none saw a region.
  LatticeAttempt furthest;
  int regions = 0, nodes = 0;  ///< of that attempt: flat regions, nodes of the deciding lattice
};

/// Searches the window of the picture, the coarsest working picture first, until it is sure.
///
/// \param picture  well-formed.
/// \param levels  what its samples mean. Absent: as for searchImage, and 16-bit samples that give
/// no
///        sure chart are also tried as linear ones.
/// \throws std::invalid_argument when the levels are not finite or not in order.
LatticeSearch searchLattices(const Picture& picture, const PixelWindow& window,
                             const std::optional<SampleLevels>& levels,
                             const LatticeLimits& limits);

/// The working picture of an attempt once more.
WorkingPicture workingPicture(const WorkingPictures& pictures, const LatticeAttempt& attempt);

}  // namespace greycard
