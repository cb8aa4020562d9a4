#include "greycard/camera_gamma.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "greycard/errors.h"
#include "greycard/files.h"
#include "greycard/gamma_curve_model.h"
#include "greycard/names.h"
#include "greycard/number_text.h"
#include "text.h"

namespace greycard {
namespace {

constexpr std::size_t kEntries = 256;
constexpr int kCatalogueBits = 14;

std::vector<std::int32_t> everyFourth(const GammaTable& table) {
  std::vector<std::int32_t> entries;
  for (std::size_t i = 0; i < table.size(); i += table.size() / kEntries)
    entries.push_back(table[i]);
  return entries;
}

int bitDepth(std::int32_t largest) {
  if (largest < 256) return 8;
  if (largest < 1024) return 10;
  return largest < 4096 ? 12 : kCatalogueBits;
}

std::vector<std::int32_t> readTable(const std::filesystem::path& path) {
  constexpr std::int32_t kMost = (1 << kCatalogueBits) - 1;
  const std::string text = readWholeFile(path);
  std::vector<std::int32_t> entries;
  for (const std::string_view word : splitText(text, " ,\t\r\n")) {
    const auto value = numberOf<std::int32_t>(word);
    if (!value || *value < 0 || *value > kMost)
      throw JobError("entry " + std::to_string(entries.size() + 1) + " of the tone curve " +
                     quoted(path) + " is \"" + printable(std::string(word.substr(0, 20))) +
                     "\"; whole numbers from 0 to 16383 are wanted");
    entries.push_back(*value);
  }
  if (entries.size() != kEntries)
    throw JobError("the tone curve " + quoted(path) + " holds " + std::to_string(entries.size()) +
                   " numbers; 256 are wanted");
  return entries;
}

}  // namespace

CameraGamma::Tables CameraGamma::in14Bits() const {
  Tables shifted = tables;
  for (auto& table : shifted)
    for (std::int32_t& entry : table) entry *= 1 << (kCatalogueBits - bits);
  return shifted;
}

CameraGamma cameraGamma(const std::string& nameOrFile) {
  const GammaCurveModel catalogue(true);
  if (const GammaCurvePtr curve = catalogue.GetGammaCurveByName(nameOrFile))
    return {
        nameOrFile,
        kCatalogueBits,
        {everyFourth(*curve->DataR()), everyFourth(*curve->DataG()), everyFourth(*curve->DataB())}};
  if (std::error_code ignored; !std::filesystem::exists(nameOrFile, ignored))
    throw UnknownName(unknownName("tone curve or file", nameOrFile, catalogue.GetNames()));
  const std::vector<std::int32_t> table = readTable(nameOrFile);
  return {nameOrFile, bitDepth(std::ranges::max(table)), {table, table, table}};
}

}  // namespace greycard
