#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace greycard::cli {

/// Keeps the files of one job apart. Name every file before any work is done: what could only fail
/// at the end then fails at once, and no file is lost to a mistyped name.
class JobFiles {
 public:
  /// A file that will be read; an empty path is passed over.
  /// \throws UsageError when it is also an output
  void input(const std::string& option, const std::filesystem::path& path);

  /// A file that will be written; an empty path is passed over.
  /// \throws UsageError for "-", and when it is also an input or another output,
  ///         JobError when it is a folder or its folder does not exist
  void output(const std::string& option, const std::filesystem::path& path);
  /// Likewise, and "-" is standard output.
  void textOutput(const std::string& option, const std::filesystem::path& path);
  /// Likewise, a picture's name. \throws FileError when no picture format has its ending
  void pictureOutput(const std::string& option, const std::filesystem::path& path);

 private:
  struct File {
    std::string option;
    std::filesystem::path path;
    bool written;
  };
  void add(File file);
  std::vector<File> m_files;
};

/// Whether the text names a file or folder; one that can't even be looked up names none.
bool namesFile(const std::string& text);

}  // namespace greycard::cli
