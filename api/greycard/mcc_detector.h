#pragma once
/// \file
/// \ingroup contract own

#include <array>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "greycard/export.h"
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
  Done       ///< a grid was fitted
};

/// \ingroup own
/// "picture", "contours", "quads", "grid" or "done".
GREYCARD_EXPORT const char* chartStageName(ChartStage stage);

/// \ingroup own
/// Outcome of a search for the chart.
struct ChartDetection {
  ChartStage stage = ChartStage::Picture;  ///< the stage that failed, or Done
  std::string reason;  ///< one sentence: why it failed, what to try; empty when Done
  int quads = 0;  ///< patch candidates in the picture, 0 and up; above 24 two charts are assumed
  int quadsUsed = 0;  ///< those that the reported grid hangs on

  /// Patch centres in whole pixels and in chart order; all zero unless Done.
  std::array<Point2, kPatchCount> points{};
  /// A square of one and a half sizes round each point: what the region file holds, not rounded.
  PatchRegions regions{};
  double size = 0.0;  ///< half the mean patch side, whole pixels
  /// Sum over 24 patches of squared differences to the chart's 8-bit sRGB colours.
  double error = 0.0;
  /// Signs that the grid is not on the chart, each one sentence: centres outside the picture, a
  /// neutral row that does not darken, uneven regions, colours unlike the chart's, tiny patches.
  std::vector<std::string> doubts;

  bool found() const { return stage == ChartStage::Done; }
  bool trustworthy() const { return found() && doubts.empty(); }
};

/// \ingroup contract
/// Finds a 24-patch colour chart (4 rows of 6 in a dark frame) in a photograph, at any turn, tilted
/// by no more than makes adjacent sides of a patch differ by 10 %.
///
/// Each patch must cover more than 1/2400 of the picture. Pictures of 8 or 16 bits, grey or colour.
/// Holds no state: any number of searches may run at a time. Progress remarks go to the error
/// channel.
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
  /// Finds the chart and says how it went. Never throws for what a picture holds.
  ///
  /// The search works on 8-bit encoded values; linear samples are searched in a gamma-encoded copy,
  /// as the dark patches would otherwise sink into the frame.
  /// \param levels  what the samples mean (its scale is not used). Absent: encoded, from 0 to 255
  ///        or, for 16 bits, to the smallest of 1023, 4095, 16383 and 65535 that no sample exceeds.
  /// \throws std::invalid_argument when the levels are not finite or not in order.
  ChartDetection detect(const Picture& picture,
                        const std::optional<SampleLevels>& levels = {}) const;

  /// \ingroup own
  /// The same for a picture file; one that can't be read ends at ChartStage::Picture.
  ChartDetection detectFile(const std::filesystem::path& path,
                            const std::optional<SampleLevels>& levels = {}) const;
};

}  // namespace greycard
