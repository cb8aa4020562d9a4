#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <span>
#include <string_view>

namespace greycard {

/// What a file's first bytes and TIFF directories tell before anything is decoded.
struct FileStructure {
  bool raw = false;                 ///< a camera's raw samples, in whatever container
  bool dng = false;                 ///< of these, one with the tags of DNG 1.0 and later
  bool mosaic = false;              ///< a directory says that its samples are a mosaic's
  bool jpegXl = false;              ///< its raw samples are compressed as JPEG XL (DNG 1.7)
  bool foveon = false;              ///< its samples are stacked, not side by side
  bool previewFirst = false;        ///< a TIFF whose first picture is marked as reduced
  std::size_t furtherPictures = 0;  ///< of a TIFF: pages and sub-pictures beside the first
};

/// Bytes at any place: of a text, or of a file that needs not be in memory for it.
class FileBytes {
 public:
  explicit FileBytes(std::string_view bytes) : m_bytes(bytes) {}
  /// \param file  stays open and the caller's; where it is read next is undefined afterwards
  explicit FileBytes(std::FILE* file) : m_file(file) {}
  /// \return whether all of `to` was there
  bool read(std::uint64_t offset, std::span<char> to) const;

 private:
  std::string_view m_bytes;
  std::FILE* m_file = nullptr;
};

FileStructure fileStructure(const FileBytes& bytes);

}  // namespace greycard
