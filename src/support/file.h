#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <string_view>

namespace greycard {

/// The whole file as bytes. \throws FileError that names the file and the system's reason
std::string readWholeFile(const std::filesystem::path& path);

/// Writes the bytes under a temporary name in the same folder and renames it, so that no reader ever
/// sees half a file and an earlier file survives a failure. \throws FileError
void writeWholeFile(const std::filesystem::path& path, std::string_view bytes);

/// The path for a message: UTF-8, in quotes.
std::string quoted(const std::filesystem::path& path);

}  // namespace greycard
