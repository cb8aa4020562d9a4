#pragma once
/// \file
/// \ingroup own

#include <string>
#include <utility>
#include <vector>

namespace greycard::present {

/// How a result came about, for those who want to repeat it.
struct Provenance {
  std::string version;      ///< of the library: libraryVersion()
  std::string created;      ///< date and time, ISO 8601
  std::string commandLine;  ///< what was run; empty where there was no command
  /// Name and value of each option that differs from its default, in the order of the help.
  std::vector<std::pair<std::string, std::string>> options;
};

}  // namespace greycard::present
