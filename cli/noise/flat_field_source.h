#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace greycard::cli {

/// One plane of samples, row by row.
struct LumaPlane {
  std::uint64_t width = 0, height = 0;
  std::vector<std::uint16_t> samples;
  bool isJpeg = false;
};

/// The flat field that a command line names: a picture file, or samples without a header.
struct FlatFieldSource {
  std::filesystem::path file;
  std::string luma;              ///< how colours become luma; empty: only grey pictures
  std::vector<std::string> raw;  ///< width, height and bits of samples without a header

  void addTo(CLI::App& app);
  /// \throws UsageError for contradictory options, FileError or JobError for the file
  LumaPlane read() const;
};

}  // namespace greycard::cli
