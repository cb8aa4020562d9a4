#pragma once
/// \file
/// \ingroup own

#include <array>
#include <string>
#include <vector>

#include "greycard/export.h"
#include "greycard/mcc_detector.h"
#include "greycard/patch_quads.h"
#include "greycard/picture.h"
#include "greycard/types.h"

// Charts that nobody needs to look for: their corners or their patches are given.

namespace greycard {

/// What four given corners are.
enum class CornerKind {
  PatchField,   ///< the outer corners of patches 1, 6, 24 and 19
  PatchCentres  ///< the centres of patches 1, 6, 24 and 19
};

struct ChartCorners {
  /// At patches 1, 6, 24 and 19: upper left, upper right, lower right and lower left of the upright
  /// chart, in pixels of the picture. They may lie outside it.
  std::array<Point2, 4> points{};
  CornerKind kind = CornerKind::PatchField;
  /// Moves the chart to the patches seen where at least 9 are near their places.
  bool refine = true;
};

/// \throws std::invalid_argument when the corners are not finite, not convex, or do not go round
///         clockwise in the picture
GREYCARD_EXPORT void checkCorners(const std::array<Point2, 4>& points);

/// The chart with these corners. Always placed, as the caller says so; the doubts are those of
/// checkPatches, and one more where the corners seem to be listed from another patch. Of the
/// options levels and smallestGate count.
///
/// \throws std::invalid_argument as checkCorners; when the levels are not finite or not in order
GREYCARD_EXPORT ChartDetection placeChart(const Picture& picture, const ChartCorners& corners,
                                          const DetectOptions& options = {});

/// What is seen at 24 given places.
struct PatchCheck {
  double likeness = 0.0;      ///< of the colours to the chart's, at most 1
  std::vector<int> outliers;  ///< patches unlike the chart's, by number 1..24, ascending
  /// Signs that these are not the patches of a chart, as ChartDetection::doubts.
  std::vector<std::string> doubts;

  bool trustworthy() const { return doubts.empty(); }
};

/// The checks that a detection goes through, for patches that were given: a region file's, say,
/// with quadsOf. Of the options levels and smallestGate count.
///
/// \throws std::invalid_argument when the corners of a patch are not those of a convex
///         quadrilateral, the picture's size and samples disagree, or the levels are not finite or
///         not in order
GREYCARD_EXPORT PatchCheck checkPatches(const Picture& picture, const PatchQuads& patches,
                                        const DetectOptions& options = {});

}  // namespace greycard
