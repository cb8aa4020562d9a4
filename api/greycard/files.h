#pragma once
/// \file
/// \ingroup own

#include <filesystem>
#include <string>

#include "greycard/export.h"
#include "greycard/text_view.h"

namespace greycard {

/// The whole file as bytes: at most 4 GiB, or 1 GiB of a pipe or a device.
/// \throws FileError that names the file and the system's reason
GREYCARD_EXPORT std::string readWholeFile(const std::filesystem::path& path);

/// Writes the bytes under a temporary name in the same folder and renames it, so that no reader
/// ever sees half a file and an earlier file survives a failure. A link is followed, the mode of an
/// earlier file is kept; a device or a pipe is written directly.
/// \throws FileError that names the file and the system's reason
GREYCARD_EXPORT void writeWholeFile(const std::filesystem::path& path, TextView bytes);

/// The path for a message: UTF-8, in quotes.
GREYCARD_EXPORT std::string quoted(const std::filesystem::path& path);

}  // namespace greycard
