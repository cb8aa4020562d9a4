#pragma once
/// \file
/// \ingroup own

#include <filesystem>
#include <string>

#include "greycard/export.h"
#include "greycard/patch_quads.h"
#include "greycard/text_view.h"
#include "greycard/types.h"

namespace greycard {

// The region file: 24 lines "left,top,width,height" in pixels, in chart order (dark skin first,
// white nineteenth, black last), no header. A detection writes whole numbers; a hand-made file may
// hold any. The file is the hosts' contract, the calls are the library's own.
//
// Its second form, written only when asked for: 24 lines "x1,y1,x2,y2,x3,y3,x4,y4", the corners of
// each patch in pixels: upper left, upper right, lower right and lower left of the upright chart.

/// The 24 regions of a region file. Empty lines at the end and spaces round a number are accepted.
///
/// \throws FileError whose text names the file, the line and the word that is wrong: not 24 lines,
///         not four numbers in a line, not a number between -1e9 and 1e9, width or height not
///         above zero.
GREYCARD_EXPORT PatchRegions readRegions(const std::filesystem::path& path);

/// The same for the text of a region file; `name` stands for the file in messages.
GREYCARD_EXPORT PatchRegions parseRegions(TextView text, const std::string& name);

/// The regions as the text of a region file, each number as printf's "%.0f" (halves to even).
GREYCARD_EXPORT std::string formatRegions(const PatchRegions& regions);

/// Writes the region file under a temporary name and renames it. \throws FileError
GREYCARD_EXPORT void writeRegions(const std::filesystem::path& path, const PatchRegions& regions);

/// A region file of either form.
struct PatchRegionFile {
  bool upright = true;     ///< the first form: rectangles
  PatchRegions regions{};  ///< of the first form; all zero for the second
  PatchQuads quads{};      ///< of the second form; the rectangles' corners for the first
};

/// The 24 regions of a region file of either form, told apart by its first line.
/// \throws FileError as readRegions; also when the corners of a line are not those of a convex
///         quadrilateral
GREYCARD_EXPORT PatchRegionFile readRegionFile(const std::filesystem::path& path);
GREYCARD_EXPORT PatchRegionFile parseRegionFile(TextView text, const std::string& name);

/// The corners as the text of a region file of the second form, in hundredths of a pixel.
GREYCARD_EXPORT std::string formatQuads(const PatchQuads& quads);

/// Writes the second form under a temporary name and renames it. \throws FileError
GREYCARD_EXPORT void writeQuads(const std::filesystem::path& path, const PatchQuads& quads);

}  // namespace greycard
