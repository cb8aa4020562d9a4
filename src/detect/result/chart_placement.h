#pragma once

#include "greycard/mcc_detector.h"
#include "window/chart_window.h"

namespace greycard {

/// What a window says about the chart.
ChartPlacement placementOf(const ChartWindow& window);

/// The detection of a window: a chart found by `method`, its doubts those of chartDoubts.
ChartDetection detectionOf(const ChartWindow& window, ChartMethod method, double smallestGate);

/// Number of pixels of the shortest side of any patch.
double shortestSide(const PatchQuads& patches);

}  // namespace greycard
