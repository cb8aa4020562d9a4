#pragma once

#include <string>

#include "greycard/batch/folder.h"

namespace greycard::cli {

/// A line a photograph, in their order. \param wide  names in full
std::string photographsText(const batch::Overview& overview, bool wide);

/// A paragraph a light: its fits, how much they spread, and those outside.
std::vector<std::string> lightTexts(const batch::Summary& summary);

}  // namespace greycard::cli
