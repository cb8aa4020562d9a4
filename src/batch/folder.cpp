#include "greycard/batch/folder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "greycard/errors.h"
#include "greycard/files.h"

namespace greycard::batch {
namespace {

namespace fs = std::filesystem;

constexpr const char* kResults = "photographs";
constexpr const char* kResultEnding = ".json";
constexpr const char* kTable = "results.csv";
constexpr const char* kSummary = "summary.json";
constexpr const char* kPage = "index.html";

std::vector<std::string> namesIn(const fs::path& folder) {
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error))
    names.push_back(at->path().filename().string());
  if (error)
    throw FileError("can't look into the folder " + quoted(folder) + ": " + error.message());
  return names;
}

// What writeWholeFile leaves where it is killed.
bool isHalfWritten(std::string_view name) {
  return name.starts_with(".greycard-");
}

void makeFolder(const fs::path& folder) {
  std::error_code error;
  fs::create_directories(folder, error);
  if (!fs::is_directory(folder, error))
    throw FileError("can't make the folder " + quoted(folder) +
                    (error ? ": " + error.message() : ": a file has its name"));
}

// A run that ended before its first result leaves a folder for them.
bool holdsAnything(const fs::path& folder) {
  std::error_code error;
  for (const std::string& name : namesIn(folder))
    if (name != kResults || !fs::is_empty(folder / name, error) || error) return true;
  return false;
}

// Refuses what no run has left: nobody's files are to be written over or taken for results.
void requireOurs(const fs::path& folder) {
  const auto refuse = [&](const std::string& name) {
    throw JobError("the folder " + quoted(folder) + " holds " + quoted(fs::path(name)) +
                   ", which no earlier run left there; name another folder for the results");
  };
  for (const std::string& name : namesIn(folder)) {
    const bool isOurs = name == kResults || name == kTable || name == kSummary || name == kPage;
    if (!isOurs && !isHalfWritten(name)) refuse(name);
  }
  if (!fs::is_directory(folder / kResults)) return;
  for (const std::string& name : namesIn(folder / kResults))
    if (!name.ends_with(kResultEnding) && !isHalfWritten(name))
      refuse((fs::path(kResults) / name).string());
}

// Half-written files, and what tells of all photographs: it may not be true any more.
void clear(const fs::path& folder) {
  std::error_code ignored;
  for (const fs::path& part : {folder, folder / kResults})
    if (fs::is_directory(part, ignored))
      for (const std::string& name : namesIn(part))
        if (isHalfWritten(name)) fs::remove(part / name, ignored);
  for (const char* name : {kTable, kSummary, kPage}) fs::remove(folder / name, ignored);
}

}  // namespace

// Of the folder itself, so that nothing is left behind whatever ends the process.
struct Folder::Lock {
  int descriptor = -1;

  explicit Lock(const fs::path& folder)
      : descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    if (descriptor < 0 || ::flock(descriptor, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK)
      return;
    ::close(descriptor);
    throw JobError("another run writes into the folder " + quoted(folder) +
                   "; wait for its end, or name another folder");
  }
  ~Lock() {
    if (descriptor >= 0) ::close(descriptor);
  }
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;
};

fs::path resultFile(const fs::path& folder, const File& file) {
  return folder / kResults / (file.name + kResultEnding);
}

Folder::Folder(const fs::path& folder, Start start) : m_folder(folder) {
  makeFolder(folder);
  m_lock = std::make_unique<Lock>(folder);
  if (start == Start::fresh && holdsAnything(folder))
    throw JobError("the folder " + quoted(folder) +
                   " isn't empty; name a new one, or resume the run that left its results there");
  requireOurs(folder);
  clear(folder);
  makeFolder(folder / kResults);
}

Folder::~Folder() = default;
Folder::Folder(Folder&&) noexcept = default;
Folder& Folder::operator=(Folder&&) noexcept = default;

Overview Folder::finish(std::span<const File> files, const Settings& settings) const {
  std::vector<Result> results;
  results.reserve(files.size());
  for (const File& file : files) {
    results.push_back(readResult(resultFile(m_folder, file)));
    // The long texts, of which there may be thousands.
    results.back().options = results.back().result = {};
  }
  return finish(std::move(results), settings);
}

Overview Folder::finish(std::vector<Result> results, const Settings& settings) const {
  Overview overview{std::move(results), {}};
  overview.summary = summaryOf(overview.results, settings);
  writeWholeFile(m_folder / kTable, resultsCsv(overview.results));
  writeWholeFile(m_folder / kSummary, toJson(overview.summary));
  writeWholeFile(m_folder / kPage, indexPage(overview.results, overview.summary));
  for (Result& result : overview.results) result.options = result.result = {};
  return overview;
}

}  // namespace greycard::batch
