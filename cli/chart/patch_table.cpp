#include "patch_table.h"

#include <cstddef>
#include <utility>

#include "greycard/macbeth_chart_data.h"
#include "greycard/number_text.h"
#include "text_table.h"

namespace greycard::cli {

std::string patchTableText(const std::vector<LabColumns>& charts,
                           const std::vector<DifferenceColumns>& differences, bool wide) {
  std::vector<TextTable::Column> columns = {{""}, {"patch", TextTable::Align::Left}};
  for (const LabColumns& chart : charts)
    columns.insert(columns.end(), {{chart.title + " L*"}, {"a*"}, {"b*"}});
  for (const auto& [title, errors] : differences) {
    const std::string before = title.empty() ? "" : title + ": ";
    if (wide) columns.insert(columns.end(), {{before + "dE76"}, {"dE94"}});
    columns.insert(columns.end(), {{wide ? "dE00" : before + "dE00"}, {"dL*"}, {"dC*"}, {"dH*"}});
  }

  TextTable table(std::move(columns));
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    std::vector<std::string> row = {std::to_string(i + 1), patchName(static_cast<int>(i))};
    for (const LabColumns& chart : charts)
      for (const double value : chart.lab[i]) row.push_back(fixed(value, 1));
    for (const auto& [title, errors] : differences) {
      if (wide)
        row.insert(row.end(), {fixed(errors.cie76.patch[i], 2), fixed(errors.cie94.patch[i], 2)});
      row.push_back(fixed(errors.ciede2000.patch[i], 2));
      for (const double value : errors.split[i]) row.push_back(fixed(value, 1));
    }
    table.addRow(std::move(row));
  }
  return table.text();
}

std::string samplesText(const SampleLevels& levels) {
  return std::string("samples ") + (levels.encoding == SampleEncoding::sRGB ? "srgb" : "linear") +
         ", " + general(levels.blackLevel, 8) + " to " + general(levels.whiteLevel, 8);
}

}  // namespace greycard::cli
