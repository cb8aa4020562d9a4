#pragma once

#include <CLI/CLI.hpp>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "chart_source.h"
#include "command.h"
#include "greycard/color_correction_settings.h"

namespace greycard::cli {

struct CcmOptions : CommonOptions {
  ChartSource source;
  std::string light = "D65";
  std::string gamma = "VGammaSRGB";
  std::string deltaE = "cie94";
  int transform = 0;
  double noiseRate = 0.0;
  std::optional<double> saturation;
  std::vector<double> saturationAdjustments{1.0, 1.0, 1.0, 1.0};  ///< all, R, G, B
  std::vector<double> hueAdjustments{0.0, 0.0, 0.0};              ///< R, G, B in degrees
  std::vector<int> whitePatches{20, 21, 22};                      ///< chart numbers 19..22
  std::filesystem::path referenceLab, referenceSRgb;
  std::filesystem::path report, corrected;

  void addTo(CLI::App& app);
  /// \throws UsageError or JobError for options that can't be
  ColorCorrectionSettings settings() const;
};

}  // namespace greycard::cli
