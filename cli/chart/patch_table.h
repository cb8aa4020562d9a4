#pragma once

#include <string>
#include <vector>

#include "greycard/colour_errors.h"
#include "greycard/patch_sampler.h"
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
/// \param wide  dE76 and dE94 too
std::string patchTableText(const std::vector<LabColumns>& charts,
                           const std::vector<DifferenceColumns>& differences, bool wide);

/// What a table's last columns are.
inline constexpr const char* kSplitNote =
    "dL*, dC*, dH*: the difference to the reference in lightness, chroma and hue.\n";

/// "samples srgb, 0 to 255": what samples were taken to mean.
std::string samplesText(const SampleLevels& levels);

}  // namespace greycard::cli
