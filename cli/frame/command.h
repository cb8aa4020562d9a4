#pragma once

// The frame that every sub-command stands in: one function add<Name>(CLI::App&) per sub-command,
// each in its own file, which declares the options and hangs the job on the sub-command.

#include <CLI/CLI.hpp>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "greycard/errors.h"
#include "greycard/present/provenance.h"
#include "job_files.h"

namespace greycard::cli {

/// Wrong usage that only shows once the options are seen together: exit status 2. Any other
/// exception of a job, JobError above all, is exit status 1.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The options that every sub-command has; a sub-command's own options derive from it.
struct CommonOptions {
  /// Where the figures go for machines: a file, "-" for standard output, or empty.
  std::filesystem::path json;
  bool quiet = false;  ///< nothing for people but errors
  bool wide = false;   ///< all columns, lines of any length

  JobFiles files;
  present::Provenance provenance;

  /// False when nobody is to read it, or standard output belongs to a result.
  bool printsText() const { return !quiet && !files.takesStandardOutput(); }
  /// Notes which of the job's options differ from their defaults; both as present::toJson writes
  /// them.
  void tellOptions(std::string_view job, std::string_view defaults);
  /// The result, as present::toJson writes it, with its provenance, where --json asks for it.
  void writeJson(std::string_view result);
  /// "Warning: ...", a paragraph each.
  void printWarnings(const std::vector<std::string>& warnings) const;

  bool tellsProvenance = false;  ///< whether the text ends with it
};

/// Adds a sub-command with its description and an example for --help, and with the common options.
/// \param example  one or more command lines, one a line
CLI::App& addSubCommand(CLI::App& parent, const std::string& name, const std::string& description,
                        const std::string& example, CommonOptions& options);

/// Before a sub-command's job: the command line that it came from.
void beginJob(const CLI::App& app, CommonOptions& options);
/// After it: for people, the files that were written and how the figures came about.
void endJob(const CommonOptions& options);

/// Hangs the job on the sub-command; not done where a sub-command of it is asked for.
template <typename Options>
void setJob(CLI::App& app, const std::shared_ptr<Options>& options, void (*job)(Options&)) {
  app.callback([&app, options, job] {
    if (!app.get_subcommands().empty()) return;
    beginJob(app, *options);
    job(*options);
    endJob(*options);
  });
}

/// Parses the command line, runs the job and returns the exit status:
/// 0 done, 1 the job could not be done, 2 wrong usage.
/// Never throws; a failure is one line on standard error.
/// \param addSubCommands  adds all sub-commands to the program
int runGreycard(int argc, char** argv, void (*addSubCommands)(CLI::App& program));

}  // namespace greycard::cli
