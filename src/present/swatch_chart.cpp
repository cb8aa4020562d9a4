#include "swatch_chart.h"

#include <cstddef>
#include <cstdio>

#include "svg_colour.h"

namespace greycard::present {
namespace {

constexpr int kColumns = 6, kPitch = 100, kSide = 88, kInset = 16;

std::string triangle(int x0, int y0, int x1, int y1, int x2, int y2, const std::string& fill) {
  char points[96];
  std::snprintf(points, sizeof points, "%d,%d %d,%d %d,%d", x0, y0, x1, y1, x2, y2);
  return std::string("<polygon points=\"") + points + "\" fill=\"" + fill + "\"/>";
}

}  // namespace

std::string swatchChart(const PatchTable& referenceLab, const PatchTable& correctedLab,
                        const PatchTable& beforeLab) {
  constexpr int kWidth = kColumns * kPitch + kPitch - kSide;
  constexpr int kHeight = kPatchCount / kColumns * kPitch + kPitch - kSide;
  const std::string size = std::to_string(kWidth) + " " + std::to_string(kHeight);
  std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " + size +
                    "\" width=\"" + std::to_string(kWidth) + "\" role=\"img\">\n<rect width=\"" +
                    std::to_string(kWidth) + "\" height=\"" + std::to_string(kHeight) +
                    "\" fill=\"#1c1c1c\"/>\n";
  for (int i = 0; i < kPatchCount; ++i) {
    const auto patch = static_cast<std::size_t>(i);
    const int x = i % kColumns * kPitch + kPitch - kSide,
              y = i / kColumns * kPitch + kPitch - kSide;
    const int left = x + kInset, top = y + kInset;
    const int right = x + kSide - kInset, bottom = y + kSide - kInset;
    svg += "<rect x=\"" + std::to_string(x) + "\" y=\"" + std::to_string(y) + "\" width=\"" +
           std::to_string(kSide) + "\" height=\"" + std::to_string(kSide) + "\" fill=\"" +
           hexColourOfLab(referenceLab[patch]) + "\"/>";
    svg += triangle(left, top, right, top, left, bottom, hexColourOfLab(correctedLab[patch]));
    svg += triangle(right, top, right, bottom, left, bottom, hexColourOfLab(beforeLab[patch]));
    svg += "\n";
  }
  return svg + "</svg>\n";
}

}  // namespace greycard::present
