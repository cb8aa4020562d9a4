#pragma once

// The sub-commands of greycard lut2d.

#include <CLI/CLI.hpp>

namespace greycard::cli {

void addLut2dNew(CLI::App& lut2d);
void addLut2dShow(CLI::App& lut2d);
void addLut2dAdjust(CLI::App& lut2d);
void addLut2dInvert(CLI::App& lut2d);
void addLut2dApply(CLI::App& lut2d);

}  // namespace greycard::cli
