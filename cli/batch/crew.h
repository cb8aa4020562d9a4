#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <vector>

#include "greycard/batch/files.h"
#include "greycard/batch/result.h"
#include "greycard/batch/settings.h"

namespace greycard::cli {

/// What is to be done with many photographs, and by how many threads.
struct CrewTask {
  std::span<const batch::File> files;
  const batch::Settings& settings;
  std::filesystem::path folder;  ///< of the results; made already
  bool resume = false;           ///< pass over what is done
  std::size_t threads = 1;
};

struct CrewWork {
  std::vector<batch::Result> results;  ///< of all photographs in their order, without long texts
  std::size_t doneBefore = 0;          ///< how many of them were there already
};

/// Does the photographs, each thread one after another, and writes their results; shows how far it
/// is on a terminal. What it writes is the same for any number of threads.
///
/// \throws JobError when a signal to end came: what was begun then is left undone; and what
///         writeResult and resolved throw
CrewWork doAll(const CrewTask& task);

}  // namespace greycard::cli
