#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "greycard/picture.h"

namespace greycard::cli {

/// Keeps the files of one job apart and remembers what was written. Name every file before any work
/// is done: what could only fail at the end then fails at once, and no file is lost to a mistyped
/// name.
class JobFiles {
 public:
  /// A file that will be read; an empty path is passed over.
  /// \throws UsageError when it is also an output, or is standard input a second time
  void input(const std::string& option, const std::filesystem::path& path);

  /// A file that will be written; an empty path is passed over, and "-" is standard output.
  /// \throws UsageError when it is also an input or another output,
  ///         JobError when it is a folder or its folder does not exist
  void output(const std::string& option, const std::filesystem::path& path);
  /// Likewise, a picture's name. \throws FileError when no picture format has its ending
  void pictureOutput(const std::string& option, const std::filesystem::path& path);

  /// Likewise, a plot's name. \throws UsageError for another ending than .svg and .png
  void plotOutput(const std::string& option, const std::filesystem::path& path);
  /// Likewise, a page's name. \throws UsageError for another ending than .html and .htm
  void pageOutput(const std::string& option, const std::filesystem::path& path);

  /// Writes an output; nothing for an empty path.
  /// \param note  what the line about it says behind the name. \throws FileError
  void write(const std::filesystem::path& path, std::string_view bytes,
             const std::string& note = {});
  /// Likewise a picture: as PNG to standard output.
  void write(const std::filesystem::path& path, const Picture& picture,
             const std::string& note = {});

  /// Likewise a plot: as SVG, and drawn where the name is a .png.
  void writePlot(const std::filesystem::path& path, std::string_view svg);

  /// What somebody else wrote is told too.
  void remember(const std::filesystem::path& path, const std::string& note);

  /// Whether one of the outputs is standard output, which is then no place for texts.
  bool takesStandardOutput() const;
  /// "Wrote "a.json"", a line for each file that was written.
  std::string written() const;

 private:
  struct File {
    std::string option;
    std::filesystem::path path;
    bool written;
  };
  void add(File file);
  std::vector<File> m_files;
  std::string m_written;
};

/// Where standard input can be read as a file: what "-" means for an input (see inputFile).
inline constexpr const char* kStandardInput = "/dev/stdin";

/// Whether the text names a file or folder; one that can't even be looked up names none.
bool namesFile(const std::string& text);

}  // namespace greycard::cli
