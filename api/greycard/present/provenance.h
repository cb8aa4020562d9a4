#pragma once
/// \file
/// \ingroup own

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "greycard/present/export.h"

namespace greycard::present {

/// How a result came about, for those who want to repeat it.
struct Provenance {
  std::string version;      ///< of the library: libraryVersion()
  std::string created;      ///< date and time in UTC, ISO 8601, as in 2026-11-22T09:30:00Z
  std::string commandLine;  ///< what was run; empty where there was no command
  /// Name of each option that differs from its default, in their order, and its value as JSON.
  std::vector<std::pair<std::string, std::string>> options;
};

/// Of a run that begins now, without options; where the environment has SOURCE_DATE_EPOCH, the
/// seconds since 1970 that it holds are the time instead.
GREYCARD_PRESENT_EXPORT Provenance provenanceNow(std::string commandLine = {});

/// The fields of the first object that the second has not, or has otherwise.
/// \param options, defaults  as toJson writes them
/// \throws std::invalid_argument for what is no JSON object
GREYCARD_PRESENT_EXPORT std::vector<std::pair<std::string, std::string>> changedOptions(
    std::string_view options, std::string_view defaults);

/// A value of Provenance::options for people: a text without its quotes, a list without brackets.
GREYCARD_PRESENT_EXPORT std::string plainValue(const std::string& json);

/// The result as toJson writes it with "greycard", "created", "command" (where there is one) and
/// "options" (unless the result has some itself) before its fields. Every fromJson of a result
/// passes over them. \throws std::invalid_argument for what no toJson has written
GREYCARD_PRESENT_EXPORT std::string stamped(std::string_view result, const Provenance& provenance);

}  // namespace greycard::present
