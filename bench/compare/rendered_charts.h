#pragma once

// Photographs of the chart for comparisons: real ones from a folder, and simulated ones as a camera
// renders them.

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "greycard/fit_options.h"

namespace greycard::compare {

struct ComparedChart {
  std::string name;
  FitPhotograph photograph;  ///< sRGB decoded; clipped patches marked
  PatchTable referenceLab{};
};

/// The photographs of a folder with the measured centres beside them (NAME.json: file, centres,
/// patch_px), a square of half the patch's side round each centre, against the chart under D65. A
/// picture put together of others is left out, and one of which fewer than 16 patches don't clip.
std::vector<ComparedChart> photographs(const std::filesystem::path& folder);

/// Simulated photographs: three cameras in six lights, each exposed, balanced, toned and written to
/// 8 bits in its own way, with noise. A third is toned by sRGB alone, a third by a power besides,
/// and a third by a smooth step with a toe.
std::vector<ComparedChart> simulated(int count, std::uint64_t seed);

}  // namespace greycard::compare
