#include "job_files.h"

#include <system_error>

#include "command.h"
#include "greycard/files.h"
#include "greycard/picture.h"

namespace greycard::cli {
namespace {

// By their place in the file system, so that "a.png" and "./a.png" are seen to be one.
bool isSame(const std::filesystem::path& a, const std::filesystem::path& b) {
  std::error_code error;
  if (std::filesystem::equivalent(a, b, error)) return true;
  const auto wholeA = std::filesystem::weakly_canonical(std::filesystem::absolute(a, error), error);
  const auto wholeB = std::filesystem::weakly_canonical(std::filesystem::absolute(b, error), error);
  return wholeA == wholeB;
}

}  // namespace

void JobFiles::input(const std::string& option, const std::filesystem::path& path) {
  if (!path.empty()) add({option, path, false});
}

void JobFiles::textOutput(const std::string& option, const std::filesystem::path& path) {
  if (path == "-")
    add({option, path, true});
  else
    output(option, path);
}

void JobFiles::pictureOutput(const std::string& option, const std::filesystem::path& path) {
  output(option, path);
  if (!path.empty()) checkPictureName(path);
}

void JobFiles::output(const std::string& option, const std::filesystem::path& path) {
  if (path.empty()) return;
  if (path == "-") throw UsageError(option + " can't be written to standard output; name a file");
  add({option, path, true});
  std::error_code error;
  if (std::filesystem::is_directory(path, error))
    throw JobError("can't write " + quoted(path) + ": it is a folder; name a file in it");
  const auto folder = path.parent_path();
  if (!folder.empty() && !std::filesystem::is_directory(folder, error))
    throw JobError("can't write " + quoted(path) + ": there is no folder " + quoted(folder) +
                   "; create it first");
}

void JobFiles::add(File file) {
  for (const auto& other : m_files) {
    if (!(file.written || other.written) || !isSame(file.path, other.path)) continue;
    throw UsageError(other.option + " and " + file.option + " name the same file " +
                     quoted(file.path));
  }
  m_files.push_back(std::move(file));
}

bool namesFile(const std::string& text) {
  std::error_code error;
  return std::filesystem::exists(text, error);
}

}  // namespace greycard::cli
