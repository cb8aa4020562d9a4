#pragma once

// The frame that every sub-command stands in: one function add<Name>(CLI::App&) per sub-command,
// each in its own file, which declares the options and hangs the job on the sub-command's callback.

#include <CLI/CLI.hpp>
#include <stdexcept>
#include <string>

#include "greycard/errors.h"

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
  std::string json;

  /// False when standard output belongs to the JSON.
  bool printsText() const { return json != "-"; }
};

/// Adds a sub-command with its description and an example for --help, and with the common options.
/// \param example  one or more command lines, one a line
CLI::App& addSubCommand(CLI::App& parent, const std::string& name, const std::string& description,
                        const std::string& example, CommonOptions& options);

/// Parses the command line, runs the job and returns the exit status:
/// 0 done, 1 the job could not be done, 2 wrong usage.
/// Never throws; a failure is one line on standard error.
/// \param addSubCommands  adds all sub-commands to the program
int runGreycard(int argc, char** argv, void (*addSubCommands)(CLI::App& program));

}  // namespace greycard::cli
