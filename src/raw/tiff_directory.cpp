#include "tiff_directory.h"

#include <cmath>

namespace greycard {
namespace {

enum : std::uint16_t {
  kByte = 1,
  kAscii = 2,
  kShort = 3,
  kLong = 4,
  kRational = 5,
  kUndefined = 7,
  kSignedRational = 10
};
constexpr std::int64_t kDenominator = 1'000'000;
constexpr std::size_t kInside = 4;  // bytes of values that stand in the entry itself

std::string quotients(const std::vector<double>& values) {
  std::string bytes;
  for (const double value : values) {
    appendLittleEndian(bytes, static_cast<std::uint64_t>(std::llround(value * kDenominator)), 4);
    appendLittleEndian(bytes, kDenominator, 4);
  }
  return bytes;
}

}  // namespace

void appendLittleEndian(std::string& to, std::uint64_t value, int bytes) {
  for (int i = 0; i < bytes; ++i) to += static_cast<char>(value >> 8 * i & 0xFFU);
}

void TiffDirectory::ascii(std::uint16_t tag, const std::string& text) {
  m_fields[tag] = {kAscii, text.size() + 1, text + '\0'};
}
void TiffDirectory::bytes(std::uint16_t tag, const std::string& values) {
  m_fields[tag] = {kByte, values.size(), values};
}
void TiffDirectory::undefined(std::uint16_t tag, const std::string& values) {
  m_fields[tag] = {kUndefined, values.size(), values};
}
void TiffDirectory::shorts(std::uint16_t tag, const std::vector<std::uint16_t>& values) {
  std::string bytes;
  for (const auto value : values) appendLittleEndian(bytes, value, 2);
  m_fields[tag] = {kShort, values.size(), bytes};
}
void TiffDirectory::longs(std::uint16_t tag, const std::vector<std::uint32_t>& values) {
  std::string bytes;
  for (const auto value : values) appendLittleEndian(bytes, value, 4);
  m_fields[tag] = {kLong, values.size(), bytes};
}
void TiffDirectory::rationals(std::uint16_t tag, const std::vector<double>& values) {
  m_fields[tag] = {kRational, values.size(), quotients(values)};
}
void TiffDirectory::signedRationals(std::uint16_t tag, const std::vector<double>& values) {
  m_fields[tag] = {kSignedRational, values.size(), quotients(values)};
}

std::string TiffDirectory::at(std::uint32_t offset) const {
  std::string head, values;
  const std::size_t valuesAt = offset + 2 + 12 * m_fields.size() + 4;
  appendLittleEndian(head, m_fields.size(), 2);
  for (const auto& [tag, field] : m_fields) {
    appendLittleEndian(head, tag, 2);
    appendLittleEndian(head, field.type, 2);
    appendLittleEndian(head, field.count, 4);
    std::string bytes = field.bytes;
    if (bytes.size() <= kInside) {
      bytes.resize(kInside);
      head += bytes;
      continue;
    }
    appendLittleEndian(head, valuesAt + values.size(), 4);
    bytes.resize(bytes.size() + bytes.size() % 2);  // values begin at even places
    values += bytes;
  }
  appendLittleEndian(head, 0, 4);  // no further page
  return head + values;
}

}  // namespace greycard
