#pragma once

// The sub-commands of greycard ae.

#include <CLI/CLI.hpp>

namespace greycard::cli {

void addAeLumaMatch(CLI::App& ae);

}  // namespace greycard::cli
