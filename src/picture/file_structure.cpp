#include "file_structure.h"

#include <algorithm>
#include <array>
#include <set>
#include <string>
#include <vector>

namespace greycard {
namespace {

using namespace std::string_view_literals;

// TIFF 6.0 and its supplement 1; DNG 1.7, tags.
constexpr std::uint16_t kSubfileType = 254, kCompression = 259, kPhotometric = 262, kSubIfds = 330,
                        kDngVersion = 50706;
constexpr std::uint64_t kReduced = 1, kColourFilterArray = 32803, kLinearRaw = 34892,
                        kJpegXl = 52546;
// More than this tells nothing new; a chain may also lead back into itself.
constexpr std::size_t kMostDirectories = 1000, kMostEntries = 4096;

// Raw files that are no TIFF, or one of their own kind.
constexpr std::array kRawMarks{"FUJIFILMCCD-RAW"sv, "IIRO"sv, "IIRS"sv, "MMOR"sv,
                               "IIU\0"sv,           "\0MRM"sv};
constexpr auto kFoveonMark = "FOVb"sv;

// One of these at a place behind the start.
struct LaterMark {
  std::size_t at;
  std::string_view mark;
};
constexpr std::array kLaterMarks{LaterMark{4, "ftypcrx "sv}, LaterMark{6, "HEAPCCDR"sv}};
constexpr LaterMark kRawTiffMark{8, "CR\2"sv};

class TiffWalk {
 public:
  /// \param head  the file's first 16 bytes
  TiffWalk(const FileBytes& bytes, std::string_view head, FileStructure& found)
      : m_bytes(bytes),
        m_littleEndian(head[0] == 'I'),
        m_big(head[2] == '+' || head[3] == '+'),
        m_found(found) {
    wait(number(head.substr(m_big ? 8 : 4, m_big ? 8 : 4)));
  }

  void run() {
    for (std::size_t next = 0; next < m_waiting.size() && next < kMostDirectories; ++next)
      directory(m_waiting[next], next == 0);
    m_found.furtherPictures = m_waiting.empty() ? 0 : m_waiting.size() - 1;
  }

 private:
  std::uint64_t number(std::string_view bytes) const {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      const char byte = bytes[m_littleEndian ? bytes.size() - 1 - i : i];
      value = value << 8U | static_cast<unsigned char>(byte);
    }
    return value;
  }
  // Bytes at a place, as many as are there.
  std::string_view bytesAt(std::uint64_t offset, std::size_t count) {
    m_buffer.resize(count);
    return m_bytes.read(offset, m_buffer) ? std::string_view(m_buffer.data(), count)
                                          : std::string_view();
  }
  void wait(std::uint64_t offset) {
    if (offset != 0 && m_waiting.size() < kMostDirectories && m_known.insert(offset).second)
      m_waiting.push_back(offset);
  }

  void directory(std::uint64_t offset, bool first) {
    const std::size_t countBytes = m_big ? 8 : 2, entryBytes = m_big ? 20 : 12,
                      offsetBytes = m_big ? 8 : 4;
    const auto count = number(bytesAt(offset, countBytes));
    if (count == 0 || count > kMostEntries) return;
    const auto size = static_cast<std::size_t>(count) * entryBytes;
    const std::string entries(bytesAt(offset + countBytes, size));
    if (entries.empty()) return;
    bool reduced = false, raw = false, jpegXl = false;
    for (std::size_t at = 0; at < size; at += entryBytes) {
      const std::string_view entry(entries.data() + at, entryBytes);
      const auto tag = number(entry.substr(0, 2));
      if (tag == kSubIfds) subDirectories(entry);
      if (tag == kDngVersion) m_found.raw = m_found.dng = true;
      const auto value = scalar(entry);
      if (tag == kSubfileType) reduced = (value & kReduced) != 0;
      if (tag == kPhotometric && value == kColourFilterArray) m_found.mosaic = true;
      if (tag == kPhotometric) raw = value == kColourFilterArray || value == kLinearRaw;
      if (tag == kCompression) jpegXl = value == kJpegXl;
    }
    if (raw) m_found.raw = true;
    if (raw && jpegXl) m_found.jpegXl = true;
    if (first) m_found.previewFirst = reduced;
    const auto next = bytesAt(offset + countBytes + size, offsetBytes);
    if (!next.empty()) wait(number(next));
  }

  std::size_t typeBytes(std::string_view entry) const {
    const auto type = number(entry.substr(2, 2));
    return type == 3 ? 2 : type == 16 || type == 18 ? 8 : 4;  // SHORT; LONG8 and IFD8; LONG and IFD
  }
  // The first value of an entry that holds SHORT or LONG.
  std::uint64_t scalar(std::string_view entry) const {
    return number(entry.substr(m_big ? 12 : 8, std::min<std::size_t>(typeBytes(entry), 4)));
  }
  void subDirectories(std::string_view entry) {
    const std::size_t each = typeBytes(entry), inside = m_big ? 8 : 4;
    const auto count = number(entry.substr(4, m_big ? 8 : 4));
    if (count == 0 || count > kMostDirectories) return;
    const auto size = static_cast<std::size_t>(count) * each;
    const auto place = entry.substr(m_big ? 12 : 8);
    const std::string offsets(size <= inside ? place.substr(0, size)
                                             : bytesAt(number(place), size));
    for (std::size_t at = 0; at + each <= offsets.size(); at += each)
      wait(number(std::string_view(offsets).substr(at, each)));
  }

  const FileBytes& m_bytes;
  bool m_littleEndian, m_big;
  FileStructure& m_found;
  std::vector<std::uint64_t> m_waiting;
  std::set<std::uint64_t> m_known;
  std::vector<char> m_buffer;
};

}  // namespace

bool FileBytes::read(std::uint64_t offset, std::span<char> to) const {
  if (m_file == nullptr) {
    if (offset > m_bytes.size() || m_bytes.size() - offset < to.size()) return false;
    std::ranges::copy(m_bytes.substr(static_cast<std::size_t>(offset), to.size()), to.begin());
    return true;
  }
  return offset <= INT64_MAX && fseeko(m_file, static_cast<off_t>(offset), SEEK_SET) == 0 &&
         std::fread(to.data(), 1, to.size(), m_file) == to.size();
}

FileStructure fileStructure(const FileBytes& bytes) {
  FileStructure found;
  std::array<char, 16> start{};
  if (!bytes.read(0, start)) return found;
  const std::string_view head(start.data(), start.size());
  const auto stands = [&](const LaterMark& mark) {
    return head.substr(mark.at).starts_with(mark.mark);
  };
  found.foveon = head.starts_with(kFoveonMark);
  found.raw = found.foveon || std::ranges::any_of(kLaterMarks, stands) ||
              std::ranges::any_of(kRawMarks, [&](auto mark) { return head.starts_with(mark); });
  for (const auto mark : {"II*\0"sv, "MM\0*"sv, "II+\0"sv, "MM\0+"sv}) {
    if (!head.starts_with(mark)) continue;
    TiffWalk(bytes, head, found).run();
    if (stands(kRawTiffMark)) found.raw = true;
  }
  return found;
}

}  // namespace greycard
