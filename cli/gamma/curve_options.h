#pragma once

// What the sub-commands of greycard gamma share: curves, channels, plots and curve files as
// options.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "greycard/curve_source.h"
#include "greycard/curve_tables.h"
#include "greycard/jobs/curve_files.h"
#include "job_files.h"

namespace greycard::cli {

/// "note: ...", a line each, on standard error.
void printNotes(const std::vector<std::string>& notes);

/// curveByNameOrFile; what a file left to remark goes to standard error.
GammaCurvePtr curveFromOption(const std::string& nameOrFile);

/// Names the file as an input of the job, if it is one.
void nameCurveFile(JobFiles& files, const std::string& option, const std::string& nameOrFile);

/// The one of an enumeration's names, which stand in its order. The name is among them.
template <typename Enum>
Enum enumFrom(const auto& names, const std::string& name) {
  return static_cast<Enum>(std::ranges::find(names, name) - names.begin());
}

/// A curve of the catalogue or of a curve file, and one of its channels.
struct CurveChoice {
  std::string name, channel = "all";

  void addTo(CLI::App& app);
  /// Names the curve file, if it is one, as an input of the job.
  void nameFile(JobFiles& files) const;
  GammaCurvePtr curve() const { return curveFromOption(name); }
  CurveChannel curveChannel() const { return enumFrom<CurveChannel>(kCurveChannelNames, channel); }
};

/// Options of every sub-command that can draw its curve.
struct CurvePlotOptions {
  std::filesystem::path plot;
  std::string against;

  void addTo(CLI::App& app);
  /// Names the plot and a curve file to compare with. \throws UsageError for --against alone
  void nameFiles(JobFiles& files) const;
  /// Writes what `draw` makes of the curve to compare with, if there is a plot to write.
  void write(JobFiles& files,
             const std::function<std::string(const std::optional<CurveTables>&)>& draw) const;
};

/// The shape of a curve file.
void addCurveFileForm(CLI::App& app, CurveFileForm& form);

}  // namespace greycard::cli
