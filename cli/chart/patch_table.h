#pragma once

#include <string>
#include <vector>

#include "greycard/colour_errors.h"
#include "greycard/types.h"

namespace greycard::cli {

/// The L*a*b* of one chart under a title.
struct LabColumns {
  std::string title;
  const PatchTable& lab;
};

/// The differences of one chart to its reference; a title may be empty.
struct DifferenceColumns {
  std::string title;
  const ColourErrors& errors;
};

/// Aligned text, a line per patch: number, name, charts, differences.
std::string patchTableText(const std::vector<LabColumns>& charts,
                           const std::vector<DifferenceColumns>& differences);

}  // namespace greycard::cli
