#pragma once
/// \file
/// \ingroup own

#include <array>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "greycard/capture_info.h"
#include "greycard/chart_location.h"
#include "greycard/errors.h"
#include "greycard/export.h"
#include "greycard/mcc_detector.h"
#include "greycard/patch_quads.h"
#include "greycard/patch_sampler.h"
#include "greycard/photograph.h"
#include "greycard/picture.h"
#include "greycard/sample_meaning.h"
#include "greycard/types.h"

namespace greycard {

/// Where to take the chart from: it is looked for unless `regions` or `corners` say where it is.
struct LocateOptions {
  SampleMeaning samples;
  std::filesystem::path regions;  ///< a region file, of either form
  /// At patches 1, 6, 24 and 19, in pixels: see ChartCorners.
  std::optional<std::array<Point2, 4>> corners;
  CornerKind cornersOf = CornerKind::PatchField;
  SearchMethods method = SearchMethods::Both;
  /// The part of the picture in which to look, in pixels, for one chart of several.
  std::optional<PatchRegion> within{};
  /// Of each patch's side, the part in the middle that is sampled, above 0 and up to 1. Regions of
  /// the first form are sampled whole.
  double sampledShare = 0.5;
  bool force = false;  ///< go on with a chart that is in doubt
};

/// Refuses what no photograph could be searched with, before there is one.
/// \throws std::invalid_argument; FileError for regions that can't be read
GREYCARD_EXPORT void checkOptions(const LocateOptions& options);

/// What the search is asked by these options. \throws std::invalid_argument for levels without
/// meaning
GREYCARD_EXPORT DetectOptions detectOptions(const Picture& picture, const LocateOptions& options);

/// The chart in a picture, found or given.
struct GREYCARD_EXPORT LocatedChart {
  PatchQuads patches{};       ///< corners of the patches; all zero when none was found
  PatchRegions regions{};     ///< upright squares in them, or the rectangles of a file
  bool upright = false;       ///< whether those rectangles are what is to be sampled, whole
  double sampledShare = 0.5;  ///< else the part of each patch's side that is
  std::optional<ChartDetection> detection;  ///< empty when the patches came from a file
  std::optional<PatchCheck> check;          ///< of patches that came from a file

  /// Whether there is a chart at all, be it in doubt.
  bool found() const { return check || (detection && detection->found()); }
  /// The corners of what is to be sampled. \throws as sampledMiddles
  PatchQuads sampled() const;
  /// Signs that the patches are not a chart's, each a sentence.
  const std::vector<std::string>& doubts() const;
  /// The doubts, each a sentence for the user of a chart that was forced.
  std::vector<std::string> warnings() const;
};

/// There is no chart in the picture, as far as can be seen.
class GREYCARD_EXPORT NoChart : public JobError {
 public:
  NoChart(const std::string& what, ChartRefusal why) : JobError(what), m_why(why) {}
  ChartRefusal why() const { return m_why; }

 private:
  ChartRefusal m_why;
};

/// There is a chart, but in a place where it can't be; LocateOptions::force goes on all the same.
class GREYCARD_EXPORT DoubtfulChart : public JobError {
 public:
  using JobError::JobError;
};

/// Finds the chart, or takes it from where the options say.
///
/// \param photo  names the picture in messages; may be empty
/// \throws NoChart; DoubtfulChart, with all doubts, when the chart is in doubt and not forced;
///         std::invalid_argument for levels without meaning, corners that are not a chart's (see
///         placeChart), more than one of corners, regions and a part to look in, and for a part
///         that holds nothing of the picture; FileError for the region file
GREYCARD_EXPORT LocatedChart locateChart(const Picture& picture, const LocateOptions& options = {},
                                         const std::filesystem::path& photo = {});

/// A photograph and the chart in it, or what was seen instead: what `greycard chart` tells.
struct GREYCARD_EXPORT ChartSearch {
  std::filesystem::path photo;
  int width = 0, height = 0;  ///< of the photograph, in pixels
  LocatedChart chart;
  std::string refusal;  ///< what locateChart would throw; empty when the chart can be used
  std::optional<CaptureInfo> capture{};  ///< of a raw photograph

  /// \throws NoChart or DoubtfulChart with the refusal, when there is one
  void require() const;
};

/// Likewise, but a refusal is part of the result. \throws as locateChart otherwise
GREYCARD_EXPORT ChartSearch searchChart(const Picture& picture, const LocateOptions& options = {},
                                        const std::filesystem::path& photo = {});

/// Likewise; the photograph tells what its samples mean.
GREYCARD_EXPORT ChartSearch searchChart(const Photograph& photograph, LocateOptions options = {});

/// Every chart in a photograph, surest first: what `greycard chart --all` tells.
struct FoundCharts {
  std::filesystem::path photo;
  int width = 0, height = 0;  ///< of the photograph, in pixels
  std::vector<ChartDetection> charts;
  std::optional<CaptureInfo> capture{};  ///< of a raw photograph
};

/// \throws std::invalid_argument as locateChart, and for corners or regions
GREYCARD_EXPORT FoundCharts searchCharts(const Photograph& photograph, LocateOptions options = {});

/// A part of the picture that holds the chart and half a patch around it, for
/// LocateOptions::within. \param chart  one that was found
GREYCARD_EXPORT PatchRegion surroundings(const ChartDetection& chart);

/// As in "19 (white 9 5), 20 (neutral 8)". \param patches  0-based
GREYCARD_EXPORT std::string patchList(const std::vector<int>& patches);

}  // namespace greycard
