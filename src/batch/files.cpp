#include "greycard/batch/files.h"

#include <algorithm>
#include <array>
#include <set>
#include <span>
#include <string_view>
#include <system_error>
#include <utility>

#include "greycard/errors.h"
#include "greycard/files.h"
#include "greycard/names.h"

namespace greycard::batch {
namespace {

namespace fs = std::filesystem;

constexpr std::array<std::string_view, 43> kPhotographEndings{
    ".png", ".tif",  ".tiff", ".jpg", ".jpeg", ".jpe", ".jp2", ".j2k", ".bmp", ".pnm", ".pgm",
    ".ppm", ".webp", ".dng",  ".3fr", ".arw",  ".cr2", ".cr3", ".crw", ".dcr", ".erf", ".fff",
    ".iiq", ".kdc",  ".mef",  ".mos", ".mrw",  ".nef", ".nrw", ".orf", ".pef", ".raf", ".raw",
    ".rw2", ".rwl",  ".sr2",  ".srf", ".srw",  ".x3f", ".k25", ".mdc", ".bay", ".cap"};
constexpr const char* kStandardInput = "/dev/stdin";

bool endsInOneOf(const fs::path& path, std::span<const std::string_view> endings) {
  const std::string ending = path.extension().string();
  return std::ranges::any_of(endings,
                             [&](std::string_view one) { return equalIgnoringCase(ending, one); });
}

bool isList(const fs::path& path) {
  constexpr std::array<std::string_view, 2> kListEndings{".txt", ".lst"};
  return path == kStandardInput || endsInOneOf(path, kListEndings);
}

[[noreturn]] void refuseFolder(const fs::path& folder, const std::error_code& error) {
  throw FileError("can't look into the folder " + quoted(folder) + ": " + error.message());
}

class Collector {
 public:
  void add(const fs::path& input) {
    std::error_code error;
    if (fs::is_directory(input, error))
      addFolder(input);
    else if (isList(input))
      addList(input);
    else if (!fs::exists(input, error))
      throw FileError("there is no file or folder " + quoted(input));
    else
      addPhotograph(input);
  }

  FileList list() && { return std::move(m_list); }

 private:
  void addFolder(const fs::path& folder) {
    std::vector<fs::path> photographs;
    std::error_code error;
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
      const fs::path name = at->path().filename();
      std::error_code ignored;
      if (name.string().starts_with('.') || at->is_directory(ignored)) continue;
      if (endsInOneOf(name, kPhotographEndings))
        photographs.push_back(folder / name);
      else
        ++m_list.passedOver;
    }
    if (error) refuseFolder(folder, error);
    if (photographs.empty())
      throw JobError("there is no photograph in the folder " + quoted(folder) +
                     ", as far as the endings of its files tell; name files themselves");
    std::ranges::sort(photographs, {}, [](const fs::path& path) { return path.string(); });
    for (const fs::path& photograph : photographs) addPhotograph(photograph);
  }

  void addList(const fs::path& file) {
    const std::string text = readWholeFile(file);
    const fs::path folder = file == kStandardInput ? fs::path() : file.parent_path();
    const std::size_t before = m_named;
    for (std::size_t at = 0; at < text.size();) {
      const std::size_t end = std::min(text.find('\n', at), text.size());
      std::string line = text.substr(at, end - at);
      at = end + 1;
      if (line.ends_with('\r')) line.pop_back();
      if (line.empty() || line.starts_with('#')) continue;
      if (line.find('\0') != std::string::npos)
        throw JobError(quoted(file) + " is no list of photographs, one a line");
      addPhotograph(folder / line);
    }
    if (m_named == before) throw JobError("the list " + quoted(file) + " names no photograph");
  }

  void addPhotograph(const fs::path& photograph) {
    ++m_named;
    std::error_code error;
    fs::path place = fs::weakly_canonical(fs::absolute(photograph, error), error);
    if (error) place = photograph.lexically_normal();
    if (!m_places.insert(place.string()).second) return;
    m_list.files.push_back({photograph, nameFor(photograph)});
  }

  std::string nameFor(const fs::path& photograph) {
    constexpr std::size_t kLongest = 240;  // of 255 bytes that file systems take
    const std::string plain = photograph.filename().string().substr(0, kLongest);
    std::string name = plain;
    for (int n = 2; !m_names.insert(name).second; ++n) name = plain + "~" + std::to_string(n);
    return name;
  }

  FileList m_list;
  std::size_t m_named = 0;
  std::set<std::string> m_places, m_names;
};

}  // namespace

FileList photographsOf(const std::vector<std::filesystem::path>& inputs) {
  if (inputs.empty()) throw JobError("no photographs are named");
  Collector collector;
  for (const fs::path& input : inputs) collector.add(input);
  return std::move(collector).list();
}

}  // namespace greycard::batch
