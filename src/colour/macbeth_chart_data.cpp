#include "greycard/macbeth_chart_data.h"

#include <cerrno>
#include <limits>
#include <stdexcept>
#include <string>
#include <system_error>

#include "chart_text.h"
#include "color_calc.h"
#include "colour_space.h"
#include "greycard/errors.h"
#include "greycard/files.h"
#include "table_conversion.h"

namespace greycard {
namespace {

constexpr std::array kPatchNames{
    "dark skin", "light skin",    "blue sky",     "foliage",   "blue flower",  "bluish green",
    "orange",    "purplish blue", "moderate red", "purple",    "yellow green", "orange yellow",
    "blue",      "green",         "red",          "yellow",    "magenta",      "cyan",
    "white 9.5", "neutral 8",     "neutral 6.5",  "neutral 5", "neutral 3.5",  "black 2"};
static_assert(kPatchNames.size() == kPatchCount);

constexpr NumberRange kFinite{std::numeric_limits<double>::lowest(),
                              std::numeric_limits<double>::max()};
constexpr NumberRange kEightBit{0.0, 255.0};

Vector3 labFromRgb8(const Vector3& rgb8) {
  return sRGB_to_CIELab({rgb8[0] / 255.0, rgb8[1] / 255.0, rgb8[2] / 255.0});
}

Vector3 unchanged(const Vector3& lab) {
  return lab;
}

// Rows that could be read are overwritten even when the file as a whole is refused.
template <typename Convert>
bool loadForgiving(const std::filesystem::path& file, PatchTable& table, Convert convert) {
  const auto bytes = readChartBytes(file);
  if (!bytes) return false;
  PatchTable rows;
  const int count = scanChartText(*bytes, rows);
  for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) table[i] = convert(rows[i]);
  return count == kPatchCount;
}

PatchTable readStrict(const std::filesystem::path& file, NumberRange range) {
  const auto bytes = readChartBytes(file);
  if (!bytes)
    throw FileError("can't read " + quoted(file) + ": " + std::generic_category().message(errno));
  if (bytes->size() > kMaxChartBytes)
    throw FileError(quoted(file) +
                    " is too long for a chart file, which is 24 lines of three numbers");
  return parseChartText(*bytes, quoted(file), range);
}

}  // namespace

const char* patchName(int patch) {
  if (patch < 0 || patch >= kPatchCount)
    throw std::out_of_range("a chart has patches 0 to 23, not " + std::to_string(patch));
  return kPatchNames[static_cast<std::size_t>(patch)];
}

bool MacbethChartData::LoadMCCCIELAB(Illum illum) {
  m_RefLab = ColorCalc(illum, 0).targetLab();
  return true;
}

bool MacbethChartData::LoadMCCCIELAB(const std::filesystem::path& file) {
  return loadForgiving(file, m_RefLab, unchanged);
}

bool MacbethChartData::LoadMCCsRGB(const std::filesystem::path& file) {
  return loadForgiving(file, m_RefLab, labFromRgb8);
}

bool MacbethChartData::WriteMCC_CIELAB(const std::filesystem::path& file) const {
  try {
    writeWholeFile(file, formatChartText(m_RefLab));
  } catch (const FileError&) {
    return false;
  }
  return true;
}

void MacbethChartData::readReferenceLab(const std::filesystem::path& file) {
  m_RefLab = readStrict(file, kFinite);
}

void MacbethChartData::readReferenceSRgb(const std::filesystem::path& file) {
  const auto rgb8 = readStrict(file, kEightBit);
  for (std::size_t i = 0; i < rgb8.size(); ++i) m_RefLab[i] = labFromRgb8(rgb8[i]);
}

void MacbethChartData::RefLabFromRGB() {
  for (std::size_t i = 0; i < m_RGB.size(); ++i) m_RefLab[i] = sRGB_to_CIELab(m_RGB[i]);
}

}  // namespace greycard
