#include "file_structure.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace greycard {
namespace {

using namespace std::string_literals;

enum : std::uint16_t { kShort = 3, kLong = 4, kIfd = 13, kLong8 = 16, kIfd8 = 18 };

struct Entry {
  std::uint16_t tag, type;
  std::vector<std::uint64_t> values;
};

// Directories at equal distances; the values that don't fit into an entry stand in their middle.
struct Tiff {
  bool little, big;
  std::string bytes{};
  static constexpr std::uint64_t kSlot = 1024;

  static std::uint64_t place(std::uint64_t directory) { return 16 + kSlot * directory; }
  std::string number(std::uint64_t value, std::size_t size) const {
    std::string text;
    for (std::size_t i = 0; i < size; ++i)
      text += static_cast<char>(value >> 8 * (little ? i : size - 1 - i) & 0xFFU);
    return text;
  }
  void put(std::uint64_t at, const std::string& part) { bytes.replace(at, part.size(), part); }

  /// \param next  of each directory; 0 for none
  Tiff& hold(const std::vector<std::vector<Entry>>& directories,
             const std::vector<std::uint64_t>& next) {
    bytes.assign(place(directories.size()), '\0');
    put(0, (little ? "II"s : "MM"s) + number(big ? 43 : 42, 2));
    if (big) put(4, number(8, 2));
    put(big ? 8 : 4, number(place(0), big ? 8 : 4));
    const std::size_t wide = big ? 8 : 4;
    for (std::size_t d = 0; d < directories.size(); ++d) {
      std::string text = number(directories[d].size(), big ? 8 : 2);
      std::uint64_t far = place(d) + kSlot / 2;
      for (const Entry& entry : directories[d]) {
        std::string values;
        for (const std::uint64_t value : entry.values)
          values += number(value, entry.type == kShort ? 2 : entry.type >= kLong8 ? 8 : 4);
        text += number(entry.tag, 2) + number(entry.type, 2) + number(entry.values.size(), wide);
        if (values.size() <= wide) {
          values.resize(wide);
          text += values;
          continue;
        }
        text += number(far, wide);
        put(far, values);
        far += values.size();
      }
      put(place(d), text + number(next[d], wide));
    }
    return *this;
  }
};

FileStructure structureOf(const std::string& bytes) {
  return fileStructure(FileBytes(bytes));
}

const Entry kColours{262, kShort, {2}}, kMosaic{262, kLong, {32803}}, kLinear{262, kShort, {34892}},
    kReduced{254, kLong, {1}}, kReducedMask{254, kLong, {5}}, kOfPages{254, kLong, {2}},
    kJpegXl{259, kShort, {52546}}, kPlain{259, kShort, {1}}, kDng{50706, kLong, {1}};

TEST(FileStructure, OfEveryKindOfTiff) {
  const auto at = Tiff::place;
  const struct {
    const char* name;
    std::vector<std::vector<Entry>> directories;
    std::vector<std::uint64_t> next;
    const char* found;  // raw, DNG, mosaic, JPEG XL, preview first
    std::size_t further;
  } cases[] = {
      {"a picture", {{kPlain, kColours}}, {0}, "00000", 0},
      {"three pages, no preview first",
       {{kOfPages, kColours}, {kColours, kReduced}, {kColours}},
       {at(1), at(2), 0},
       "00000",
       2},
      {"a preview first", {{kReducedMask, kColours}, {kColours}}, {at(1), 0}, "00001", 1},
      {"a mosaic", {{kMosaic}}, {0}, "10100", 0},
      {"linear samples of a sensor in JPEG XL", {{kJpegXl, kLinear}}, {0}, "10010", 0},
      {"a page in JPEG XL and a mosaic that isn't",
       {{kJpegXl, kColours}, {kPlain, kMosaic}},
       {at(1), 0},
       "10100",
       1},
      {"a DNG", {{kDng, kColours}}, {0}, "11000", 0},
      {"a mosaic in a sub-directory behind a preview",
       {{kReduced, kColours, {330, kLong, {at(1)}}}, {kMosaic}},
       {0, 0},
       "10101",
       1},
      {"sub-directories of every type",
       {{{330, kLong, {at(1), at(2)}}},
        {{330, kIfd, {at(3), at(4), at(5)}}},
        {{330, kIfd8, {at(6)}}},
        {{330, kLong8, {at(7), at(8)}}},
        {{330, kShort, {at(9)}}},
        {kColours},
        {kColours},
        {kColours},
        {kLinear},
        {kColours}},
       {0, 0, 0, 0, 0, 0, 0, 0, 0, 0},
       "10000",
       9},
      {"a chain into itself", {{kColours}, {kColours}}, {at(1), at(0)}, "00000", 1},
      {"a directory behind the end", {{kColours}}, {at(7)}, "00000", 1},
      {"an empty directory", {{}, {kMosaic}}, {at(1), 0}, "00000", 0},
      {"no sub-directories", {{{330, kLong, {}}, kColours}}, {0}, "00000", 0},
  };
  for (const bool little : {true, false})
    for (const bool big : {true, false})
      for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.name) + (little ? ", II" : ", MM") + (big ? ", big" : ""));
        Tiff tiff{little, big};
        const std::string bytes = tiff.hold(c.directories, c.next).bytes;
        std::string other = bytes;
        other[1] = 'X';  // no TIFF then, whatever follows
        EXPECT_FALSE(structureOf(other).raw || structureOf(other).furtherPictures > 0);
        std::FILE* file = std::tmpfile();
        ASSERT_EQ(std::fwrite(bytes.data(), 1, bytes.size(), file), bytes.size());
        for (const FileStructure& found : {structureOf(bytes), fileStructure(FileBytes(file))}) {
          std::string flags;
          for (const bool flag :
               {found.raw, found.dng, found.mosaic, found.jpegXl, found.previewFirst})
            flags += flag ? '1' : '0';
          EXPECT_EQ(flags, c.found);
          EXPECT_EQ(found.furtherPictures, c.further);
          EXPECT_FALSE(found.foveon);
        }
        std::fclose(file);
      }
}

TEST(FileStructure, OfRawFilesThatAreNoTiff) {
  const std::string rest(40, 'x');
  for (const std::string& mark :
       {"FUJIFILMCCD-RAW"s, "IIRO"s, "IIRS"s, "MMOR"s, "IIU\0"s, "\0MRM"s, "FOVb"s, "abcdftypcrx "s,
        "abcdefHEAPCCDR"s, "II*\0\0\0\0\0CR\2"s}) {
    const FileStructure found = structureOf(mark + rest);
    EXPECT_TRUE(found.raw) << mark;
    EXPECT_EQ(found.foveon, mark == "FOVb");
    EXPECT_FALSE(structureOf("x" + mark + rest).raw) << mark;
    EXPECT_FALSE(found.dng || found.mosaic || found.jpegXl || found.previewFirst);
    EXPECT_EQ(found.furtherPictures, 0U);
  }
  EXPECT_FALSE(structureOf("FOVb").raw);  // too short to be anything
}

}  // namespace
}  // namespace greycard
