#pragma once
/// \file
/// \ingroup own

#include <cstdint>
#include <filesystem>

#include "greycard/export.h"
#include "greycard/raw/bayer_pattern.h"
#include "greycard/raw/read_raw.h"
#include "greycard/text_view.h"

namespace greycard {

/// How a sensor's samples lie in a file without a header.
struct DumpLayout {
  int width = 0, height = 0;  ///< samples, even, up to 65534
  int bits = 16;              ///< 8 to 16
  /// Packed as MIPI CSI-2 does, 10 and 12 bits alone: 4 samples in 5 bytes or 2 in 3, the high
  /// eight bits of each before what is left of them. Else one byte, or two with the low one first.
  bool packed = false;
  BayerPattern pattern = BayerPattern::RGGB;
  std::uint64_t offset = 0;  ///< bytes before the first sample
  std::uint64_t stride = 0;  ///< bytes from row to row; 0 stands for rows without gaps
};

/// The layout that WIDTHxHEIGHT:BITS:PATTERN[:OFFSET[:STRIDE]] says, BITS being 8 to 16, or 10p or
/// 12p for packed ones: 4000x3000:12p:RGGB. \throws std::invalid_argument with a sentence
GREYCARD_EXPORT DumpLayout dumpLayoutFromText(TextView text);

/// Samples without a header, as readRaw gives those with one. Levels default to 0 and what the bits
/// hold.
/// \throws FileError, also for a file that is too short; std::invalid_argument for a layout that
///         can't be, and as readRaw
GREYCARD_EXPORT RawCapture readDump(const std::filesystem::path& path, const DumpLayout& layout,
                                    const RawOptions& options = {});

}  // namespace greycard
