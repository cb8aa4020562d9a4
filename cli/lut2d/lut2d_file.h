#pragma once

#include <filesystem>

#include "greycard/lut2d_config.h"
#include "transition.h"

namespace greycard::cli {

/// The configuration with every field under its own name; the two tables of changes as 24 rows of
/// 16 numbers. docs/lut2d_json.md describes it.
Json lut2dJson(const Lut2DConfig& config);

/// Reads what lut2dJson made. \throws JobError about the first field that is missing, unknown or of
/// the wrong kind, or about a value that the table can't work with
Lut2DConfig readLut2d(const std::filesystem::path& path);

}  // namespace greycard::cli
