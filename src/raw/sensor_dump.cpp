#include <algorithm>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "greycard/files.h"
#include "greycard/number_text.h"
#include "greycard/raw/dump.h"
#include "raw_levels.h"
#include "raw_samples.h"
#include "text.h"

namespace greycard {
namespace {

constexpr int kMostSide = 65534;

void checkLayout(const DumpLayout& layout) {
  const auto refuse = [](const std::string& why) { throw std::invalid_argument(why); };
  for (const int side : {layout.width, layout.height})
    if (side < 2 || side > kMostSide || side % 2 != 0)
      refuse("a dump's width and height are even, 2 to " + std::to_string(kMostSide) + ", not " +
             std::to_string(side));
  if (layout.bits < 8 || layout.bits > 16)
    refuse("a dump's samples have 8 to 16 bits, not " + std::to_string(layout.bits));
  if (layout.packed && layout.bits != 10 && layout.bits != 12)
    refuse("packed samples of a dump have 10 or 12 bits, not " + std::to_string(layout.bits));
  if (layout.packed && layout.bits == 10 && layout.width % 4 != 0)
    refuse("packed samples of 10 bits need a width that is a multiple of 4");
}

std::uint64_t rowBytes(const DumpLayout& layout) {
  const auto width = static_cast<std::uint64_t>(layout.width);
  if (layout.packed) return width * static_cast<std::uint64_t>(layout.bits) / 8;
  return layout.bits == 8 ? width : 2 * width;
}

// One row's codes.
void unpack(std::string_view bytes, const DumpLayout& layout, std::span<std::uint16_t> codes) {
  const auto byte = [&](std::size_t i) -> unsigned { return static_cast<unsigned char>(bytes[i]); };
  if (layout.packed) {
    // A group's high bytes, then one byte with what is left of each, the first one's lowest.
    const unsigned low = static_cast<unsigned>(layout.bits) - 8, group = 8 / low;
    for (std::size_t i = 0; i < codes.size(); ++i) {
      const std::size_t start = i / group * (group + 1), within = i % group;
      const unsigned rest = byte(start + group) >> low * within & ((1U << low) - 1);
      codes[i] = static_cast<std::uint16_t>(byte(start + within) << low | rest);
    }
    return;
  }
  for (std::size_t i = 0; i < codes.size(); ++i)
    codes[i] = static_cast<std::uint16_t>(layout.bits == 8 ? byte(i)
                                                           : byte(2 * i) | byte(2 * i + 1) << 8U);
}

[[noreturn]] void refuseText(TextView text, const std::string& why) {
  throw std::invalid_argument(shown(text, 60) + " is no layout of a dump: " + why +
                              "; write WIDTHxHEIGHT:BITS:PATTERN[:OFFSET[:STRIDE]], as in "
                              "4000x3000:12:RGGB, BITS being 10p or 12p for packed samples");
}

}  // namespace

DumpLayout dumpLayoutFromText(TextView text) {
  const auto parts = splitText(text, ":");
  if (parts.size() < 3 || parts.size() > 5)
    refuseText(text, "it has " + std::to_string(parts.size()) + " parts, not 3 to 5");
  DumpLayout layout;
  const auto sides = splitText(parts[0], "x");
  const auto width = numberOf<int>(sides.empty() ? "" : sides.front()),
             height = numberOf<int>(sides.empty() ? "" : sides.back());
  if (sides.size() != 2 || !width || !height) refuseText(text, shown(parts[0]) + " is no size");
  layout.width = *width;
  layout.height = *height;

  std::string_view bits = parts[1];
  layout.packed = bits.ends_with('p');
  if (layout.packed) bits.remove_suffix(1);
  const auto count = numberOf<int>(bits);
  if (!count) refuseText(text, shown(parts[1]) + " is no count of bits");
  layout.bits = *count;
  const auto pattern = bayerPatternFromName(parts[2]);
  if (!pattern) refuseText(text, shown(parts[2]) + " is not RGGB, BGGR, GRBG or GBRG");
  layout.pattern = *pattern;
  std::uint64_t* const places[] = {&layout.offset, &layout.stride};
  for (std::size_t i = 3; i < parts.size(); ++i) {
    const auto value = numberOf<std::uint32_t>(parts[i]);
    if (!value) refuseText(text, shown(parts[i]) + " is no count of bytes");
    *places[i - 3] = *value;
  }
  checkLayout(layout);
  return layout;
}

RawCapture readDump(const std::filesystem::path& path, const DumpLayout& layout,
                    const RawOptions& options) {
  checkLayout(layout);
  const std::uint64_t row = rowBytes(layout), stride = layout.stride == 0 ? row : layout.stride;
  if (stride < row)
    throw std::invalid_argument("rows of a dump take " + std::to_string(row) +
                                " bytes, more than the stride of " + std::to_string(stride));
  const std::string bytes = readWholeFile(path);
  const std::uint64_t needed =
      layout.offset + stride * static_cast<std::uint64_t>(layout.height - 1) + row;
  if (bytes.size() < needed)
    refuseRaw(quoted(path), "it holds " + std::to_string(bytes.size()) + " bytes, and the layout " +
                                std::to_string(needed));

  RawCapture result;
  CaptureInfo& info = result.info;
  info.format = "dump";
  info.mosaic = bayerPatternName(layout.pattern);
  info.sensorWidth = layout.width;
  info.sensorHeight = layout.height;
  RawLevels levels;
  levels.white.fill((1 << layout.bits) - 1);
  const auto channels = cellChannels(layout.pattern);
  settleLevels(levels, channels, options, info);
  const auto width = static_cast<std::size_t>(layout.width);
  const auto rows = [&, at = layout.offset,
                     codes = std::vector<std::uint16_t>(2 * width)]() mutable {
    for (std::size_t i = 0; i < 2; ++i, at += stride)
      unpack(std::string_view(bytes).substr(at, row), layout,
             std::span(codes).subspan(i * width, width));
    return RowPair{codes.data(), codes.data() + width};
  };
  result.picture = binMosaic(layout.width, layout.height, rows, channels, levels);
  return result;
}

}  // namespace greycard
