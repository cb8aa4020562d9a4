#pragma once
/// \file
/// \ingroup contract own

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "greycard/export.h"
#include "greycard/patch_quads.h"
#include "greycard/patch_sampler.h"
#include "greycard/picture.h"
#include "greycard/types.h"

namespace greycard {

/// \ingroup own
/// How far a detection came.
enum class ChartStage {
  Picture,   ///< the picture could not be loaded, or is empty
  Contours,  ///< the picture has no outline at all between dark and light
  Quads,     ///< no outline is large, convex and square enough to be a patch
  Grid,      ///< the patches found span no area, so no 4 x 6 grid can be hung on them
  Colours,   ///< a grid of patches was found, but it is not a whole chart
  Done       ///< a grid was fitted
};

/// \ingroup own
/// "picture", "contours", "quads", "grid", "colours" or "done".
GREYCARD_EXPORT const char* chartStageName(ChartStage stage);

/// \ingroup own
/// What placed a chart.
enum class ChartMethod {
  None,     ///< nothing did
  Lattice,  ///< the lattice search: flat regions that repeat along two directions, told by colour
  Stated,   ///< the search for patches as holes in a dark frame, which runDetector uses
  Corners   ///< corners that the caller gave
};

/// \ingroup own
/// "none", "lattice", "stated" or "corners".
GREYCARD_EXPORT const char* chartMethodName(ChartMethod method);

/// \ingroup own
/// Why no chart was found.
enum class ChartRefusal {
  None,          ///< one was found
  Picture,       ///< there is no picture
  TooSmall,      ///< the picture can't hold a chart
  NoPatches,     ///< next to nothing in it looks like a patch
  NoGrid,        ///< patches, but no regular grid of them
  OtherColours,  ///< a regular grid without the chart's colours
  Covered,       ///< a chart of which too much is covered, in glare or in shadow
  Cut,           ///< a chart that an edge of the picture cuts
  Mirrored       ///< a chart in a mirrored picture
};

/// \ingroup own
/// "none", "picture", "too_small", "no_patches", "no_grid", "other_colours", "covered", "cut" or
/// "mirrored".
GREYCARD_EXPORT const char* chartRefusalName(ChartRefusal refusal);

/// \ingroup own
/// Where a chart is, and what speaks for it.
struct ChartPlacement {
  std::array<Point2, kPatchCount> centres{};  ///< of the patches, in chart order; parts of pixels
  PatchQuads patches{};                       ///< their corners
  ChartMapping mapping;                       ///< the chart's plane to the picture
  double orientationDeg = 0.0;  ///< of the first row, clockwise from the x axis; 0 to below 360
  double pitch = 0.0;           ///< mean distance of neighbouring centres, pixels
  /// What must reach DetectOptions::smallestGate: the likeness of the colours, at most 1, less what
  /// patches that lack, edges that lack and colours that differ take off.
  double gate = 0.0;
  int supportingPatches = 0;  ///< that were seen as flat regions at their places, of 24
  std::vector<int> outliers;  ///< patches unlike the chart's, by number 1..24, ascending
};

/// \ingroup own
/// Outcome of a search for the chart.
struct ChartDetection {
  ChartStage stage = ChartStage::Picture;  ///< the stage that failed, or Done
  std::string reason;  ///< one sentence: why it failed, what to try; empty when Done
  ChartMethod method = ChartMethod::None;
  ChartRefusal refusal = ChartRefusal::Picture;

  /// Patch candidates in the picture, 0 and up: dark-framed squares for the stated method (above 24
  /// two charts are assumed), flat regions of the deciding working picture for the others.
  int quads = 0;
  int quadsUsed = 0;  ///< those that the reported grid hangs on

  /// Patch centres in whole pixels and in chart order; all zero unless Done.
  std::array<Point2, kPatchCount> points{};
  /// A square of one and a half sizes round each point: what the region file holds, not rounded.
  PatchRegions regions{};
  /// Half the mean patch side, whole pixels; for methods other than the stated one half of the
  /// shortest side of any patch, so that the regions stay on leaning patches too.
  double size = 0.0;
  /// Sum over 24 patches of squared differences to the chart's 8-bit sRGB colours.
  double error = 0.0;
  /// Signs that the grid is not on the chart, each one sentence: centres outside the picture, a
  /// neutral row that does not darken, uneven regions, colours unlike the chart's, tiny patches.
  std::vector<std::string> doubts;

  ChartPlacement placement;  ///< where the chart is; of use when Done
  /// Where nothing was found: the grid that came nearest to a chart, to be drawn or, at one's own
  /// risk, used.
  std::optional<ChartPlacement> candidate;
  /// Where nothing was found: boxes of all places that look like a patch.
  std::vector<PatchRegion> candidateRegions;

  bool found() const { return stage == ChartStage::Done; }
  bool trustworthy() const { return found() && doubts.empty(); }
};

/// \ingroup own
/// Which searches are asked.
enum class SearchMethods {
  Both,     ///< the lattice search, and the stated one where it refuses, in a large picture on a
            ///< reduced copy; then only a fit without doubt and of the gate counts
  Lattice,  ///< the lattice search alone
  Stated    ///< the stated search alone: what runDetector writes, but that of two clusters of
            ///< candidates one without area is passed over, and how it went
};

/// \ingroup own
/// What to look for, and how hard.
struct DetectOptions {
  SearchMethods methods = SearchMethods::Both;
  /// The part of the picture to look at, in pixels; what reaches beyond the picture is left out.
  std::optional<PatchRegion> regionOfInterest{};
  /// What the samples mean (its scale is not used). Absent: encoded, from 0 to 255 or, for 16 bits,
  /// to the smallest of 1023, 4095, 16383 and 65535 that no sample exceeds; the lattice search then
  /// also tries 16-bit samples as linear ones.
  std::optional<SampleLevels> levels{};
  /// 0..1. Whole charts reach 0.8 and more, pictures without one stay below 0.6.
  double smallestGate = 0.70;
  int mostCharts = 8;  ///< of detectAll, 1 and up
  /// Pixels of the finest picture that the lattice search looks at, larger pictures are reduced:
  /// what a refusal may cost. In it the patches need a pitch of 8 pixels.
  std::int64_t finestPixels = 2'000'000;
};

/// \ingroup contract
/// Finds a 24-patch colour chart (4 rows of 6) in a photograph of 8 or 16 bits, grey or colour.
///
/// `detect` asks the lattice search first: any turn, tilts to 60 degrees, lens distortion, patches
/// from a pitch of 8 pixels. Where it refuses, and in `runDetector`, the stated search looks for
/// patches as holes in a dark frame, tilted by no more than makes adjacent sides of a patch differ
/// by 10 %, each above 1/2400 of the picture. Its progress remarks go to the error channel. Holds
/// no state: any number of searches may run at a time.
class GREYCARD_EXPORT MCCDetector {
 public:
  /// Finds the chart and writes its region file (see chart_regions.h), replacing an earlier one.
  ///
  /// \return false when imagePath is empty, and nothing else is done; true otherwise, even when no
  ///         chart was found or no file could be written: judge success by the file. A wrong fit is
  ///         written like a right one.
  bool runDetector(const std::filesystem::path& imagePath,
                   const std::filesystem::path& SavePath) const;
  /// The same with UTF-8 texts, either of which may be null; null is the same as empty.
  bool runDetector(const char* imagePath, const char* SavePath) const;

  /// \ingroup own
  /// Finds the chart and says how it went. Never throws for what a picture holds. Of several charts
  /// the first that is sure.
  ///
  /// \throws std::invalid_argument when the levels are not finite or not in order, the region of
  ///         interest has no pixel in the picture, or a limit is out of its range.
  ChartDetection detect(const Picture& picture, const DetectOptions& options = {}) const;
  ChartDetection detect(const Picture& picture, const std::optional<SampleLevels>& levels) const;

  /// \ingroup own
  /// Every chart in the picture, surest first, without overlaps; none when there is none, and
  /// detect says why. Costs as much as a refusal. \throws as detect
  std::vector<ChartDetection> detectAll(const Picture& picture,
                                        const DetectOptions& options = {}) const;

  /// \ingroup own
  /// The same as detect for a picture file; one that can't be read ends at ChartStage::Picture.
  ChartDetection detectFile(const std::filesystem::path& path,
                            const DetectOptions& options = {}) const;
  ChartDetection detectFile(const std::filesystem::path& path,
                            const std::optional<SampleLevels>& levels) const;
};

}  // namespace greycard
