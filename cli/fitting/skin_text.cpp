#include "skin_text.h"

#include <cstddef>
#include <utility>
#include <vector>

#include "greycard/names.h"
#include "greycard/number_text.h"
#include "text_table.h"

namespace greycard::cli {

std::string skinText(const SkinCalibration& result) {
  std::string text = std::to_string(SkinColorHelper::kPoints) +
                     " synthetic skin colours: 357 spectra, dark, plain and bright, under D65, A "
                     "and T84\nMatrix for all three lights from " +
                     printable(result.matrixFrom + ", tone curve " + result.gammaName) + "\n\n";
  std::vector<TextTable::Column> columns{{"", TextTable::Align::Left}, {"accepted"}};
  for (const char* light : kSkinLights) columns.push_back({light});
  for (const char* value : {"h", "s", "y"}) {
    columns.push_back({std::string(value) + " from"});
    columns.push_back({"to"});
  }
  columns.push_back({"h not finite"});
  TextTable table(std::move(columns));
  const auto addSet = [&table](const char* name, const SkinSet& set) {
    std::vector<std::string> cells{name, std::to_string(set.accepted)};
    for (const int count : set.acceptedUnder) cells.push_back(std::to_string(count));
    for (const auto* range : {&set.h, &set.s, &set.y})
      for (const std::size_t end : {0U, 1U})
        cells.push_back(*range ? fixed((**range)[end], 4) : "-");
    cells.push_back(std::to_string(set.hueNotFinite));
    table.addRow(std::move(cells));
  };
  addSet("upper set", result.upper);
  addSet("lower set", result.lower);
  return text + table.text() + "h is Cb / Cr, s is (|Cr| + |Cb|) / 2Y, y is the luma.\n";
}

}  // namespace greycard::cli
