#pragma once

// The frame that every sub-command stands in: one function add<Name>(CLI::App&) per sub-command,
// each in its own file, which declares the options and hangs the job on the sub-command's callback.

#include <CLI/CLI.hpp>
#include <stdexcept>
#include <string>

namespace greycard::cli {

/// Wrong usage that only shows once the options are seen together: exit status 2.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The job could not be done: exit status 1. Any other exception of a job counts as one too.
/// The text is one sentence without the program's name: what went wrong, with which file, what to
/// try.
class JobError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The options that every sub-command has; a sub-command's own options derive from it.
struct CommonOptions {
  std::string
      json;  ///< where the figures go for machines: a file, "-" for standard output, or empty

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
int runGreycard(int argc, char** argv);

}  // namespace greycard::cli
