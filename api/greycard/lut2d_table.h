#pragma once
/// \file
/// \ingroup own

#include <array>
#include <string>

#include "greycard/export.h"
#include "greycard/lut2d_config.h"

namespace greycard {

// A hue/saturation table as an editor handles it: made, checked, dragged by a node, summed up.

struct Lut2dIdentityOptions {
  /// Lightness (0..1) where the effect begins to fade in, is full, begins to fade out and is gone;
  /// none may be below the one before.
  std::array<float, 4> fade{0.0F, 0.0F, 1.0F, 1.0F};
  float yBlend = 0.0F;  ///< share of the luma that is restored, 0..1
  /// Hue changes reach 15 degrees times 2 to this power, in steps as much coarser.
  float hShift = 2.0F;
  /// Saturation changes reach 0.25 times 2 to this power.
  float sShift = 2.0F;
};

/// A table that changes nothing: hue rows every 15 degrees, saturations every 1/15.
/// \throws std::invalid_argument as checkLut2d, and for a fade that falls
GREYCARD_EXPORT Lut2DConfig identityLut2d(const Lut2dIdentityOptions& options = {});

/// Whether an editor can work with the table: TwoDLutHelper::SetConfig takes it, hue coordinates
/// rise from 0 to 360 and saturation coordinates within 0..1, lightnesses and y_blend_factor lie in
/// 0..1.
/// \throws std::invalid_argument about the first field that is not so
GREYCARD_EXPORT void checkLut2d(const Lut2DConfig& table);

/// A node by its hue row and saturation column, from 0.
struct Lut2dNode {
  int row = 0, column = 0;
  bool operator==(const Lut2dNode&) const = default;
};

/// The node nearest in hue (degrees, of any turn) and in saturation; the first of two as near.
GREYCARD_EXPORT Lut2dNode nearestNode(const Lut2DConfig& table, double hueDeg, double sat);

/// Changes that the table's shifts can't hold: such nodes move their colours only as far as those
/// reach.
struct CutChanges {
  int nodes = 0;
  std::string warning;  ///< a sentence for the user; empty without any
};
GREYCARD_EXPORT CutChanges cutChanges(const Lut2DConfig& table);

/// A colour to drag, and where to.
struct Lut2dDragOptions {
  double atHueDeg = 0.0, atSat = 0.0;  ///< -360..360, 0..1; the nearest node is taken
  double byHueDeg = 0.0, bySat = 0.0;  ///< -360..360, -1..1
  /// How many hue rows and saturation columns to each side follow, 0..100. On the side of the drag
  /// more do, but a drag towards larger hues takes rows away, about as many as it is wide.
  int rangeRows = 1, rangeColumns = 1;
  bool keepNode = false;  ///< leave the dragged node itself as it is
};

/// What a drag did.
struct Lut2dDragReport {
  Lut2dNode node;
  double hueDeg = 0.0, sat = 0.0;  ///< of the node
  int movedNodes = 0;              ///< 0 also where the range is too narrow for the drag
  int cutNodes = 0;                ///< cutChanges of the table now
};

/// Drags the node next to a colour (TwoDLutHelper::Adjust); its neighbours follow, the less the
/// farther they are. Hues move by whole degrees, and greys (column 0) stay. Nodes beyond the reach
/// keep their changes to the bit.
/// \throws std::invalid_argument for numbers outside their ranges, and as checkLut2d; the table is
///         then as it was
GREYCARD_EXPORT Lut2dDragReport dragLut2d(Lut2DConfig& table, const Lut2dDragOptions& options);

/// A table and how much it changes.
struct Lut2dSummary {
  int changedNodes = 0;
  double largestHueChangeDeg = 0.0, largestSatChange = 0.0;
  int cutNodes = 0;  ///< cutChanges
  Lut2DConfig table;
};
GREYCARD_EXPORT Lut2dSummary summariseLut2d(const Lut2DConfig& table);

}  // namespace greycard
