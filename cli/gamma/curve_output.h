#pragma once

#include <CLI/CLI.hpp>
#include <filesystem>

#include "command.h"
#include "curve_options.h"
#include "export_requests.h"

namespace greycard::cli {

/// Where a sub-command's curve goes: a curve file, formats of other programs, a plot, JSON.
struct CurveOutput : CommonOptions {
  CurveFileForm form;
  std::filesystem::path output;
  CurvePlotOptions plot;
  ExportRequests exports;

  void addTo(CLI::App& app);
  /// Names all that will be written.
  void nameFiles();
  void write(const GammaCurve& curve);
};

}  // namespace greycard::cli
