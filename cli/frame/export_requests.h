#pragma once

#include <CLI/CLI.hpp>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "greycard/exchange/formats.h"
#include "job_files.h"

namespace greycard::cli {

/// The options of every sub-command whose result other programs can read.
class ExportRequests {
 public:
  /// \param kind  what the sub-command makes
  void addTo(CLI::App& app, exchange::MaterialKind kind);
  /// \param lights  under which a camera is fitted
  /// \throws UsageError for what is no FORMAT=FILE and for a format that is unknown or can't be
  ///         made of the sub-command's result; as JobFiles::output
  void nameFiles(JobFiles& files, std::size_t lights = 1);
  bool any() const { return !m_wanted.empty() || !m_update.empty(); }
  /// Whether one of these formats is asked for.
  bool asksFor(const std::vector<std::string>& formats) const;
  /// Writes all files, with what is to be said of each.
  void write(JobFiles& files, const exchange::Material& material) const;

 private:
  struct Request {
    std::string format;
    std::filesystem::path file;
  };
  exchange::MaterialKind m_kind{};
  std::vector<std::string> m_words;
  std::vector<Request> m_wanted;
  std::filesystem::path m_update;
  exchange::ExportOptions m_options;
};

}  // namespace greycard::cli
