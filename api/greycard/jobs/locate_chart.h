#pragma once
/// \file
/// \ingroup own

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "greycard/errors.h"
#include "greycard/export.h"
#include "greycard/mcc_detector.h"
#include "greycard/patch_sampler.h"
#include "greycard/picture.h"
#include "greycard/types.h"

namespace greycard {

/// What a photograph's samples mean, as far as somebody says so; the rest follows from its bits.
struct SampleMeaning {
  std::optional<SampleEncoding> encoding;  ///< else sRGB for 8 bits and linear for 16
  std::optional<double> blackLevel;        ///< else 0
  std::optional<double> whiteLevel;        ///< else 255 or 65535
};

/// \throws std::invalid_argument unless the white level is above the black level
GREYCARD_EXPORT SampleLevels sampleLevels(const Picture& picture,
                                          const SampleMeaning& meaning = {});

struct LocateOptions {
  SampleMeaning samples;
  std::filesystem::path regions;  ///< a region file to take the patches from instead of searching
  bool force = false;             ///< go on with a detection that is in doubt
};

/// The chart in a picture.
struct GREYCARD_EXPORT LocatedChart {
  PatchRegions regions{};                   ///< where the patches are to be sampled
  std::optional<ChartDetection> detection;  ///< empty when the regions came from a file

  /// The detection's regions, or those of the file.
  const PatchRegions& patches() const { return detection ? detection->regions : regions; }
  /// The doubts about a forced detection, each a sentence for the user.
  std::vector<std::string> warnings() const;
};

/// A chart was found, but in a place where it can't be; LocateOptions::force goes on all the same.
class GREYCARD_EXPORT DoubtfulChart : public JobError {
 public:
  using JobError::JobError;
};

/// Reads the region file, or finds the chart. A chart that was found is to be sampled in the middle
/// two thirds of its regions, which lie within the patches at any turn.
///
/// \param photo  names the picture in messages; may be empty
/// \throws JobError when there is no chart; DoubtfulChart when the detection is in doubt and not
///         forced; std::invalid_argument for levels without meaning; FileError for the region file
GREYCARD_EXPORT LocatedChart locateChart(const Picture& picture, const LocateOptions& options = {},
                                         const std::filesystem::path& photo = {});

/// A photograph and the chart that was found in it: what `greycard chart` tells.
struct ChartSearch {
  std::filesystem::path photo;
  int width = 0, height = 0;  ///< of the photograph, in pixels
  LocatedChart chart;
};

GREYCARD_EXPORT ChartSearch searchChart(const Picture& picture, const LocateOptions& options = {},
                                        const std::filesystem::path& photo = {});

/// As in "19 (white 9 5), 20 (neutral 8)". \param patches  0-based
GREYCARD_EXPORT std::string patchList(const std::vector<int>& patches);

}  // namespace greycard
