#pragma once
/// \file
/// \ingroup own

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "greycard/batch/export.h"

namespace greycard::batch {

/// A photograph of many.
struct File {
  std::filesystem::path photo;  ///< from the working folder, or absolute
  /// Its file name; where an earlier photograph has that already, with ~2, ~3, ... behind it.
  std::string name;
};

struct FileList {
  std::vector<File> files;
  std::size_t passedOver = 0;  ///< files of folders whose names are no photographs'
};

/// The photographs that are meant, in the order of the inputs, each once. An input is
///
/// - a folder: the files in it whose endings are those of pictures and raw files, sorted by name as
///   bytes. Folders in it and names that begin with a dot are left alone.
/// - a list, a file that ends in .txt or .lst, or /dev/stdin: a photograph a line, from the list's
///   folder (of /dev/stdin from the working folder); empty lines and those that begin with # count
///   for nothing.
/// - else a photograph.
///
/// A photograph in a list that isn't there is not found out here.
///
/// \throws FileError for an input that isn't there, and a folder or a list that can't be read;
///         JobError for no inputs, a folder without photographs and an empty list
GREYCARD_BATCH_EXPORT FileList photographsOf(const std::vector<std::filesystem::path>& inputs);

}  // namespace greycard::batch
