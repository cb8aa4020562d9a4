#pragma once
/// \file
/// \ingroup own

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "greycard/capture_info.h"
#include "greycard/export.h"
#include "greycard/patch_sampler.h"
#include "greycard/photograph.h"

namespace greycard {

/// What a photograph is, before anything is looked for in it.
struct PhotographInfo {
  std::filesystem::path file;
  std::string format;                  ///< "PNG", "DNG", ...
  int width = 0, height = 0;           ///< of the picture as it is worked on
  int channels = 3, bits = 8;          ///< likewise
  SampleLevels levels;                 ///< what its samples are taken for
  std::optional<CaptureInfo> capture;  ///< of raw files
  std::vector<std::string> warnings;   ///< a sentence each
};

/// \throws std::invalid_argument as sampleLevels
GREYCARD_EXPORT PhotographInfo describePhotograph(const Photograph& photograph);

}  // namespace greycard
