#pragma once

#include <CLI/CLI.hpp>
#include <filesystem>
#include <string>
#include <vector>

#include "greycard/jobs/read_flat_field.h"

namespace greycard::cli {

/// The flat field that a command line names: a picture file, or samples without a header.
struct FlatFieldSource {
  std::filesystem::path file;
  std::string luma;              ///< how colours become luma; empty: only grey pictures
  std::vector<std::string> raw;  ///< width, height and bits of samples without a header
  FlatFieldOptions levels;       ///< black, white and bits

  void addTo(CLI::App& app);
  /// As the library takes them. \throws UsageError for contradictory ones
  FlatFieldOptions options() const;
  /// \throws UsageError for contradictory options, FileError or JobError for the file
  FlatField read() const;
};

}  // namespace greycard::cli
