#include "patch_table.h"

#include <cstddef>
#include <utility>

#include "greycard/macbeth_chart_data.h"
#include "greycard/number_text.h"
#include "text_table.h"

namespace greycard::cli {

std::string patchTableText(const std::vector<LabColumns>& charts,
                           const std::vector<DifferenceColumns>& differences) {
  std::vector<TextTable::Column> columns = {{""}, {"patch", TextTable::Align::Left}};
  for (const LabColumns& chart : charts)
    columns.insert(columns.end(), {{chart.title + " L*"}, {"a*"}, {"b*"}});
  for (const DifferenceColumns& set : differences)
    columns.insert(columns.end(),
                   {{set.title.empty() ? "dE76" : set.title + ": dE76"}, {"dE94"}, {"dE00"}});

  TextTable table(std::move(columns));
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    std::vector<std::string> row = {std::to_string(i + 1), patchName(static_cast<int>(i))};
    for (const LabColumns& chart : charts)
      for (const double value : chart.lab[i]) row.push_back(fixed(value, 1));
    for (const auto& [title, errors] : differences)
      for (const ErrorColumn* column : {&errors.cie76, &errors.cie94, &errors.ciede2000})
        row.push_back(fixed(column->patch[i], 2));
    table.addRow(std::move(row));
  }
  return table.text();
}

}  // namespace greycard::cli
