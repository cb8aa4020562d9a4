#pragma once
/// \file
/// \ingroup own

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "greycard/capture_info.h"
#include "greycard/export.h"
#include "greycard/picture.h"
#include "greycard/raw/dump.h"
#include "greycard/sample_meaning.h"

namespace greycard {

struct PhotographOptions {
  /// As somebody says. Levels of a raw file and of a dump are in its own codes.
  SampleMeaning samples;
  std::optional<DumpLayout> dump;  ///< the file holds these samples, and no header
};

/// A photograph of whatever kind: a picture file or a camera's raw samples.
struct Photograph {
  Picture picture;
  std::filesystem::path file;
  std::string format;                  ///< "PNG", "TIFF", ...; of raw files CaptureInfo::format
  SampleMeaning samples;               ///< of the picture; levels of raw files are used up already
  std::optional<CaptureInfo> capture;  ///< of raw files
  std::vector<std::string> warnings;   ///< a sentence each: pages that were not read
};

/// Reads a photograph, raw or not, as its content tells, whatever its name.
/// \throws FileError as readPicture, readRaw and readDump; std::invalid_argument for levels of raw
///         samples that make no scale
GREYCARD_EXPORT Photograph readPhotograph(const std::filesystem::path& file,
                                          const PhotographOptions& options = {});

}  // namespace greycard
