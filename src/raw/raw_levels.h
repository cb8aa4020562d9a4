#pragma once

#include <string>

#include "greycard/raw/read_raw.h"
#include "raw_samples.h"

namespace greycard {

/// \throws FileError: "can't read " name ": " why
[[noreturn]] void refuseRaw(const std::string& name, const std::string& why);
/// Likewise for samples that aren't there.
[[noreturn]] void refuseCutShort(const std::string& name);

/// Puts the options' levels in place of the file's and tells them in `info`, as means over a
/// channel. \param channels  of the places of `levels.black` \throws std::invalid_argument unless
/// the white levels are above the black ones
void settleLevels(RawLevels& levels, const std::array<int, 4>& channels, const RawOptions& options,
                  CaptureInfo& info);

}  // namespace greycard
