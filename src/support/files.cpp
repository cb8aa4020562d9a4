#include "greycard/files.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <system_error>

#include "file_handle.h"
#include "greycard/errors.h"

namespace greycard {
namespace {

std::string reason() {
  return std::generic_category().message(errno);
}

// Of this machine, among those that share a file system; without what a file name can't hold.
std::string hostName() {
  char name[256] = "";
  if (::gethostname(name, sizeof name - 1) != 0) return "host";
  std::string host(name);
  std::ranges::replace(host, '/', '_');
  return host.substr(0, 64);
}

// Beside the target, so that the rename stays within one file system; unique among the threads of
// this process, the processes of this machine and the machines that share the file system.
std::filesystem::path temporaryBeside(const std::filesystem::path& path) {
  static std::atomic<unsigned> counter{0};
  return path.parent_path() / (".greycard-" + hostName() + "-" + std::to_string(::getpid()) + "-" +
                               std::to_string(++counter));
}

// What a link leads to in the end, whether or not it is there.
std::filesystem::path withoutLinks(std::filesystem::path path) {
  constexpr int kMostLinks = 40;
  std::error_code error;
  for (int n = 0; n < kMostLinks && std::filesystem::is_symlink(path, error); ++n)
    path = path.parent_path() / std::filesystem::read_symlink(path, error);
  return path;
}

}  // namespace

std::string quoted(const std::filesystem::path& path) {
  return "\"" + path.string() + "\"";
}

std::string readWholeFile(const std::filesystem::path& path) {
  // A device or a pipe may be endless.
  std::error_code ignored;
  const bool isFile = std::filesystem::is_regular_file(path, ignored);
  const std::uint64_t mostBytes = std::uint64_t{1} << (isFile ? 32U : 30U);
  const FileHandle file(std::fopen(path.c_str(), "rb"));
  if (!file) throw FileError("can't read " + quoted(path) + ": " + reason());
  std::string bytes;
  char block[65536];
  std::size_t got = 0;
  while ((got = std::fread(block, 1, sizeof block, file.get())) > 0) {
    if (got > mostBytes - bytes.size())
      throw FileError("can't read " + quoted(path) + ": it holds more than " +
                      (isFile ? "4 GiB" : "1 GiB, the limit for pipes and devices"));
    bytes.append(block, got);
  }
  if (std::ferror(file.get())) throw FileError("can't read " + quoted(path) + ": " + reason());
  return bytes;
}

void writeWholeFile(const std::filesystem::path& path, TextView bytes) {
  std::error_code error;
  const auto status = std::filesystem::status(path, error);
  const bool exists = status.type() == std::filesystem::file_type::regular;
  // Renaming onto /dev/null would replace the device, and /dev/stdout may lead to a nameless pipe.
  const bool renames = exists || status.type() == std::filesystem::file_type::not_found;
  // Renaming onto a link would replace the link.
  const auto target = renames ? withoutLinks(path) : path;
  const auto written = renames ? temporaryBeside(target) : path;
  const auto fail = [&](const std::string& why) {
    std::error_code ignored;
    if (renames) std::filesystem::remove(written, ignored);
    throw FileError("can't write " + quoted(path) + ": " + why);
  };

  FileHandle file(std::fopen(written.c_str(), "wb"));
  if (!file) fail(reason());
  if (std::fwrite(bytes.data(), 1, bytes.size(), file.get()) != bytes.size()) fail(reason());
  if (std::fclose(file.release()) != 0) fail(reason());
  if (!renames) return;

  if (exists) std::filesystem::permissions(written, status.permissions(), error);
  std::filesystem::rename(written, target, error);
  if (error) fail(error.message());
}

}  // namespace greycard
