#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace greycard {

/// A directory of a little-endian TIFF file (TIFF 6.0, section 2), to be written.
class TiffDirectory {
 public:
  void ascii(std::uint16_t tag, const std::string& text);
  void bytes(std::uint16_t tag, const std::string& values);
  void undefined(std::uint16_t tag, const std::string& values);
  void shorts(std::uint16_t tag, const std::vector<std::uint16_t>& values);
  void longs(std::uint16_t tag, const std::vector<std::uint32_t>& values);
  /// Over a denominator of 1,000,000. \param values  0 up to 4294
  void rationals(std::uint16_t tag, const std::vector<double>& values);
  /// \param values  of a magnitude up to 2147
  void signedRationals(std::uint16_t tag, const std::vector<double>& values);

  /// The directory and the values that don't fit in it, to stand at this even place of the file.
  std::string at(std::uint32_t offset) const;

 private:
  struct Field {
    std::uint16_t type = 0;
    std::size_t count = 0;
    std::string bytes;
  };
  std::map<std::uint16_t, Field> m_fields;  // in the order of the tags, as TIFF wants them
};

/// The low bytes of a number, least first.
void appendLittleEndian(std::string& to, std::uint64_t value, int bytes);

}  // namespace greycard
