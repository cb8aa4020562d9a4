#pragma once

#include <CLI/CLI.hpp>
#include <filesystem>
#include <optional>
#include <string>

#include "greycard/photograph.h"

namespace greycard::cli {

/// How photographs are read and what their samples mean, as a command line says.
class SampleOptions {
 public:
  void addTo(CLI::App& app);
  SampleMeaning meaning() const;
  /// How samples without a header lie; empty for files that have one. \throws UsageError
  std::optional<DumpLayout> dump() const;
  /// Both. \throws UsageError, for a white level that isn't above the black one too
  PhotographOptions reading() const;
  /// \throws FileError; UsageError for levels that make no scale and for a layout that can't be
  Photograph read(const std::filesystem::path& file) const;

 private:
  std::string m_encoding, m_dump;
  SampleMeaning m_levels;
};

}  // namespace greycard::cli
