#pragma once

// From the public configuration to the processing record.

#include "greycard/lut2d_cfg.h"
#include "greycard/lut2d_config.h"

namespace greycard {

/// \throws std::invalid_argument about the first number that is not finite, or a shift out of range
void checkConfig(const Lut2DConfig& config);

/// Sets every field of the record but the reserved word. The configuration has been checked.
void fillRecord(const Lut2DConfig& config, lut2d_cfg& record);

/// The record as the debugger log shows it.
void debugPrintRecord(const lut2d_cfg& record);

}  // namespace greycard
