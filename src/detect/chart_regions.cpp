#include "greycard/chart_regions.h"

#include <array>
#include <cmath>
#include <vector>

#include "convex_quad.h"
#include "greycard/errors.h"
#include "greycard/files.h"
#include "text.h"

namespace greycard {
namespace {

constexpr double kFarthest = 1e9;  // pixels; beyond any picture, and safe to compute with
constexpr std::array kRegionNames{"left", "top", "width", "height"};
constexpr std::array kQuadNames{"x1", "y1", "x2", "y2", "x3", "y3", "x4", "y4"};

[[noreturn]] void refuse(const std::string& name, std::size_t line, const std::string& why) {
  throw FileError("can't use " + name + ": line " + std::to_string(line) + ": " + why);
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kSpace = " \t";
  const auto begin = text.find_first_not_of(kSpace);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(kSpace) - begin + 1);
}

struct Line {
  std::string_view text;
  std::size_t number = 0;  // from 1
};

// The lines that hold something beside a comment, which begins with #.
std::vector<Line> contentLines(std::string_view text) {
  std::vector<Line> lines;
  std::size_t number = 0;
  for (const std::string_view line : splitLines(text)) {
    ++number;
    const auto content = trimmed(line.substr(0, line.find('#')));
    if (!content.empty()) lines.push_back({content, number});
  }
  return lines;
}

// The pieces between commas, empty ones included: a forgotten number must not shift the others. In
// a line without commas, those between blanks.
std::vector<std::string_view> piecesOf(std::string_view line) {
  std::vector<std::string_view> pieces;
  if (line.find(',') == std::string_view::npos) {
    for (line = trimmed(line); !line.empty(); line = trimmed(line)) {
      pieces.push_back(line.substr(0, line.find_first_of(" \t")));
      line.remove_prefix(pieces.back().size());
    }
    return pieces;
  }
  for (std::size_t comma = 0; comma != std::string_view::npos;) {
    comma = line.find(',');
    pieces.push_back(trimmed(line.substr(0, comma)));
    if (comma != std::string_view::npos) line.remove_prefix(comma + 1);
  }
  return pieces;
}

// The numbers of a line, one for each of the names.
template <std::size_t Count>
std::array<double, Count> parseNumbers(std::string_view line, const std::string& name,
                                       std::size_t number,
                                       const std::array<const char*, Count>& names) {
  const auto pieces = piecesOf(line);
  if (pieces.size() != Count) {
    std::string form;
    for (const char* word : names) form += (form.empty() ? "" : ",") + std::string(word);
    refuse(name, number,
           shown(line, 80) + " holds " + std::to_string(pieces.size()) + " values; write " + form);
  }
  std::array<double, Count> values{};
  for (std::size_t i = 0; i < Count; ++i) {
    const auto value = parseDouble(pieces[i]);
    // Written so that NaN is refused too: every comparison with it is false.
    if (!value || !(std::fabs(*value) <= kFarthest))
      refuse(name, number,
             std::string(names[i]) + " " + shown(pieces[i]) +
                 " is not a number of pixels in a picture; write one such as 120");
    values[i] = *value;
  }
  return values;
}

PatchRegion parseRegion(std::string_view line, const std::string& name, std::size_t number) {
  const auto values = parseNumbers(line, name, number, kRegionNames);
  for (const std::size_t i : {2U, 3U})
    if (values[i] <= 0.0)
      refuse(name, number,
             std::string(kRegionNames[i]) + " " + shown(piecesOf(line)[i]) +
                 " is not above zero; a region needs an area");
  return {values[0], values[1], values[2], values[3]};
}

PatchQuad parseQuad(std::string_view line, const std::string& name, std::size_t number) {
  const auto v = parseNumbers(line, name, number, kQuadNames);
  const PatchQuad quad{{{v[0], v[1]}, {v[2], v[3]}, {v[4], v[5]}, {v[6], v[7]}}};
  if (!isConvex(quad))
    refuse(name, number,
           shown(line, 80) +
               " are not the corners of a convex quadrilateral; list them round the patch");
  return quad;
}

// The 24 lines, each through `parse`.
template <typename Table, typename Parse>
Table parseLines(std::string_view text, const std::string& name, Parse parse) {
  const auto lines = contentLines(text);
  Table table{};
  for (std::size_t i = 0; i < std::min(lines.size(), table.size()); ++i)
    table[i] = parse(lines[i].text, name, lines[i].number);
  if (lines.size() != table.size())
    refuse(name,
           lines.size() > table.size() ? lines[table.size()].number
           : lines.empty()             ? 1
                                       : lines.back().number + 1,
           "the file holds " + std::to_string(lines.size()) +
               " lines; a region file has 24, one per patch in chart order");
  return table;
}

}  // namespace

PatchRegions parseRegions(TextView text, const std::string& name) {
  return parseLines<PatchRegions>(text, name, parseRegion);
}

PatchRegionFile parseRegionFile(TextView text, const std::string& name) {
  PatchRegionFile file;
  const auto lines = contentLines(text);
  file.upright = lines.empty() || piecesOf(lines.front().text).size() != kQuadNames.size();
  if (file.upright) {
    file.regions = parseRegions(text, name);
    file.quads = quadsOf(file.regions);
  } else {
    file.quads = parseLines<PatchQuads>(text, name, parseQuad);
  }
  return file;
}

PatchRegionFile readRegionFile(const std::filesystem::path& path) {
  return parseRegionFile(readWholeFile(path), quoted(path));
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

std::string formatQuads(const PatchQuads& quads) {
  std::string text;
  for (const auto& quad : quads) {
    for (std::size_t k = 0; k < quad.size(); ++k)
      text += (k == 0 ? "" : ",") + formatFixed(quad[k].x, 2) + "," + formatFixed(quad[k].y, 2);
    text += "\n";
  }
  return text;
}

void writeQuads(const std::filesystem::path& path, const PatchQuads& quads) {
  writeWholeFile(path, formatQuads(quads));
}

void writeRegions(const std::filesystem::path& path, const PatchRegions& regions) {
  writeWholeFile(path, formatRegions(regions));
}

}  // namespace greycard
