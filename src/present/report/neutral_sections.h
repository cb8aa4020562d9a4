#pragma once

// The neutral row and the tone curve, as pieces of a page.

#include <string>

#include "chart_story.h"

namespace greycard::present {

std::string greyLightness(const ColourStory& story);
std::string greyBalance(const ColourStory& story);
/// The curve of the camera that the fit was told of.
std::string toneCurvePlot(const CameraGamma& gamma);

}  // namespace greycard::present
