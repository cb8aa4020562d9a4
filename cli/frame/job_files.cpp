#include "job_files.h"

#include <algorithm>
#include <iostream>
#include <system_error>

#include "command.h"
#include "greycard/files.h"
#include "greycard/names.h"
#include "greycard/present/plot_picture.h"

namespace greycard::cli {
namespace {

constexpr const char* kStandardOutput = "-";

// By their place in the file system, so that "a.png" and "./a.png" are seen to be one.
bool isSame(const std::filesystem::path& a, const std::filesystem::path& b) {
  std::error_code error;
  if (std::filesystem::equivalent(a, b, error)) return true;
  const auto wholeA = std::filesystem::weakly_canonical(std::filesystem::absolute(a, error), error);
  const auto wholeB = std::filesystem::weakly_canonical(std::filesystem::absolute(b, error), error);
  return wholeA == wholeB;
}

bool endsWith(const std::filesystem::path& path, std::string_view ending) {
  return equalIgnoringCase(path.extension().string(), ending);
}

void requireEnding(const std::string& option, const std::filesystem::path& path,
                   const std::vector<std::string>& endings) {
  if (path.empty() || path == kStandardOutput) return;
  if (std::ranges::none_of(endings,
                           [&](const std::string& ending) { return endsWith(path, ending); }))
    throw UsageError(option + " can't write " + quoted(path) + ": name a file that ends in " +
                     endings[0] + " or " + endings[1]);
}

}  // namespace

void JobFiles::input(const std::string& option, const std::filesystem::path& path) {
  if (!path.empty()) add({option, path, false});
}

void JobFiles::pictureOutput(const std::string& option, const std::filesystem::path& path) {
  output(option, path);
  if (!path.empty() && path != kStandardOutput) checkPictureName(path);
}

void JobFiles::plotOutput(const std::string& option, const std::filesystem::path& path) {
  requireEnding(option, path, {".svg", ".png"});
  if (endsWith(path, ".png") && !present::drawsPlotPictures())
    throw UsageError(option + " " + quoted(path) +
                     ": this greycard was built without librsvg, which draws .png; take .svg");
  output(option, path);
}

void JobFiles::pageOutput(const std::string& option, const std::filesystem::path& path) {
  requireEnding(option, path, {".html", ".htm"});
  output(option, path);
}

void JobFiles::output(const std::string& option, const std::filesystem::path& path) {
  if (path.empty()) return;
  add({option, path, true});
  if (path == kStandardOutput) return;
  std::error_code error;
  if (std::filesystem::is_directory(path, error))
    throw JobError("can't write " + quoted(path) + ": it is a folder; name a file in it");
  const auto folder = path.parent_path();
  if (!folder.empty() && !std::filesystem::is_directory(folder, error))
    throw JobError("can't write " + quoted(path) + ": there is no folder " + quoted(folder) +
                   "; create it first");
}

void JobFiles::write(const std::filesystem::path& path, std::string_view bytes,
                     const std::string& note) {
  if (path.empty()) return;
  if (path == kStandardOutput)
    std::cout << bytes;
  else
    writeWholeFile(path, bytes);
  remember(path, note);
}

void JobFiles::write(const std::filesystem::path& path, const Picture& picture,
                     const std::string& note) {
  if (path.empty()) return;
  if (path == kStandardOutput) {
    const auto bytes = encodePng(picture);
    std::cout << std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  } else {
    writePicture(path, picture);
  }
  remember(path, note);
}

void JobFiles::writePlot(const std::filesystem::path& path, std::string_view svg) {
  if (path.empty()) return;
  if (endsWith(path, ".png"))
    write(path, present::plotPicture(svg));
  else
    write(path, svg);
}

void JobFiles::remember(const std::filesystem::path& path, const std::string& note) {
  if (path != kStandardOutput) m_written += "Wrote " + quoted(path) + note + "\n";
}

bool JobFiles::takesStandardOutput() const {
  return std::ranges::any_of(
      m_files, [](const File& file) { return file.written && file.path == kStandardOutput; });
}

std::string JobFiles::written() const {
  return m_written;
}

void JobFiles::add(File file) {
  for (const auto& other : m_files) {
    const bool shares = !file.written && !other.written && file.path != kStandardInput;
    if (shares || !isSame(file.path, other.path)) continue;
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
