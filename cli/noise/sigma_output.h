#pragma once

#include <string>
#include <vector>

#include "flat_field_source.h"
#include "greycard/sigma_lut.h"
#include "transition.h"

namespace greycard::cli {

/// What the figures say about the flat field, a sentence each: the library's own message first.
std::vector<std::string> sigmaAdvice(const SigmaLUT& sigma, const LumaPlane& plane);

std::string sigmaText(const SigmaLUT& sigma);
Json sigmaJson(const SigmaLUT& sigma, const std::vector<std::string>& advice);
/// A line of titles, then one line per ring.
std::string sigmaCsv(const SigmaLUT& sigma);
/// Factor over radius as an SVG element.
std::string sigmaPlot(const SigmaLUT& sigma, const std::string& title);

}  // namespace greycard::cli
