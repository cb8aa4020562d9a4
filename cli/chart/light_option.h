#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "greycard/illum.h"

namespace greycard::cli {

/// Adds --light NAME.
void addLightOption(CLI::App& app, std::string& name);

/// The light of that name. \throws UsageError that lists the names
Illum lightFromOption(const std::string& name);

}  // namespace greycard::cli
