#include "greycard/chart_regions.h"

#include <array>
#include <cmath>
#include <vector>

#include "greycard/errors.h"
#include "greycard/files.h"
#include "text.h"

namespace greycard {
namespace {

constexpr std::size_t kNumbersPerLine = 4;
constexpr double kFarthest = 1e9;  // pixels; beyond any picture, and safe to compute with
constexpr std::array<const char*, kNumbersPerLine> kNumberNames{"left", "top", "width", "height"};

[[noreturn]] void refuse(const std::string& name, std::size_t line, const std::string& why) {
  throw FileError("can't use " + name + ": line " + std::to_string(line) + ": " + why);
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kSpace = " \t";
  const auto begin = text.find_first_not_of(kSpace);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(kSpace) - begin + 1);
}

// The pieces between commas, empty ones included: a forgotten number must not shift the others.
std::vector<std::string_view> commaPieces(std::string_view line) {
  std::vector<std::string_view> pieces;
  for (std::size_t comma = 0; comma != std::string_view::npos;) {
    comma = line.find(',');
    pieces.push_back(trimmed(line.substr(0, comma)));
    if (comma != std::string_view::npos) line.remove_prefix(comma + 1);
  }
  return pieces;
}

PatchRegion parseRegion(std::string_view line, const std::string& name, std::size_t number) {
  const auto pieces = commaPieces(line);
  if (pieces.size() != kNumbersPerLine)
    refuse(name, number,
           shown(line, 80) + " holds " + std::to_string(pieces.size()) +
               " values; write left,top,width,height");
  std::array<double, kNumbersPerLine> values{};
  for (std::size_t i = 0; i < kNumbersPerLine; ++i) {
    const std::string piece = shown(pieces[i]);
    const auto value = parseDouble(pieces[i]);
    // Written so that NaN is refused too: every comparison with it is false.
    if (!value || !(std::fabs(*value) <= kFarthest))
      refuse(name, number,
             std::string(kNumberNames[i]) + " " + piece +
                 " is not a number of pixels in a picture; write one such as 120");
    if (i >= 2 && *value <= 0.0)
      refuse(name, number,
             std::string(kNumberNames[i]) + " " + piece +
                 " is not above zero; a region needs an area");
    values[i] = *value;
  }
  return {values[0], values[1], values[2], values[3]};
}

}  // namespace

PatchRegions parseRegions(TextView text, const std::string& name) {
  auto lines = splitLines(text);
  while (!lines.empty() && trimmed(lines.back()).empty()) lines.pop_back();
  PatchRegions regions;
  for (std::size_t i = 0; i < std::min(lines.size(), regions.size()); ++i)
    regions[i] = parseRegion(lines[i], name, i + 1);
  if (lines.size() != regions.size())
    refuse(name, std::min(lines.size(), regions.size()) + 1,
           "the file holds " + std::to_string(lines.size()) +
               " lines; a region file has 24, one per patch in chart order");
  return regions;
}

PatchRegions readRegions(const std::filesystem::path& path) {
  return parseRegions(readWholeFile(path), quoted(path));
}

std::string formatRegions(const PatchRegions& regions) {
  std::string text;
  for (const auto& region : regions) {
    text += formatFixed(region.left, 0) + "," + formatFixed(region.top, 0) + "," +
            formatFixed(region.width, 0) + "," + formatFixed(region.height, 0) + "\n";
  }
  return text;
}

void writeRegions(const std::filesystem::path& path, const PatchRegions& regions) {
  writeWholeFile(path, formatRegions(regions));
}

}  // namespace greycard
