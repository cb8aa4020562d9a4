#pragma once

// What hdr10 and hlg have in common: a curve of 257 codes of 10 bits over linear 12-bit inputs.

#include <filesystem>
#include <string>

#include "command.h"
#include "curve_plot.h"

namespace greycard::cli {

struct StandardCurveOptions : CommonOptions {
  std::filesystem::path output;
  CurvePlotOptions plot;

  void addTo(CLI::App& app);
};

/// What the inputs mean: full scale is `peak` of a unit.
struct LightAxis {
  std::string title, column;
  double peak;
  int decimals;
};

/// Writes and prints the curve as the options ask.
void deliverStandardCurve(const StandardCurveOptions& options, const GammaCurve& curve,
                          const std::string& title, const LightAxis& light);

}  // namespace greycard::cli
