// A curve as the text of a curve file, and into one.

#include <array>
#include <exception>

#include "curve_file.h"
#include "greycard/files.h"
#include "greycard/gamma_curve.h"

namespace greycard {
namespace {

constexpr std::string_view kLineEnd = "\r\n";  // whatever the platform (deliberate)
constexpr std::array kChannels{ColorChannel::Red, ColorChannel::Green, ColorChannel::Blue};
constexpr std::array<std::string_view, 3> kChannelEnds{"R:", "G:", "B:"};

using Blocks = std::array<std::optional<std::string>, 3>;

bool allPresent(const Blocks& blocks) {
  return blocks[0] && blocks[1] && blocks[2];
}

void appendBlock(std::string& text, std::string_view keyword, std::string_view end,
                 const std::string& block) {
  text.append(keyword).append(end).append(kLineEnd).append(block).append(kLineEnd);
}

void appendChannels(std::string& text, std::string_view keyword, const Blocks& blocks) {
  for (std::size_t i = 0; i < blocks.size(); ++i)
    appendBlock(text, keyword, kChannelEnds[i], *blocks[i]);
}

}  // namespace

std::optional<std::string> GammaCurve::GetFileText(std::int32_t tableSize,
                                                   std::int32_t bitSize) const {
  Blocks tables, points;
  for (std::size_t i = 0; i < (m_bUnified ? 1 : kChannels.size()); ++i) {
    const GammaTablePtr& table = source(kChannels[i]).data;
    if (!table || table->size() < 2) continue;
    tables[i] = GetDataAsString(kChannels[i], tableSize, bitSize);
    points[i] = GetControlPointsAsString(kChannels[i]);
  }
  if (!tables[0]) return std::nullopt;

  std::string text;
  if (m_bUnified || !allPresent(tables)) {
    appendBlock(text, kTableKeyword, ":", *tables[0]);
    if (points[0]) appendBlock(text, kPointsKeyword, ":", *points[0]);
  } else {
    appendChannels(text, kTableKeyword, tables);
    if (allPresent(points)) appendChannels(text, kPointsKeyword, points);
  }
  return text;
}

bool GammaCurve::ExportToFile(const std::filesystem::path& fileName, std::int32_t tableSize,
                              std::int32_t bitSize) const {
  try {
    const auto text = GetFileText(tableSize, bitSize);
    if (text) writeWholeFile(fileName, *text);
    return text.has_value();
  } catch (const std::exception&) {
    return false;  // silent by contract; GetFileText and writeWholeFile tell why
  }
}

}  // namespace greycard
