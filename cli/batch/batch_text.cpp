#include "batch_text.h"

#include <algorithm>
#include <array>

#include "greycard/files.h"
#include "greycard/names.h"
#include "greycard/number_text.h"
#include "text_table.h"

namespace greycard::cli {
namespace {

// Room for the other columns within a line.
constexpr std::size_t kNameWidth = 52;

// The end of a long name, which tells more than its folders do.
std::string shownName(const std::filesystem::path& photo, bool wide) {
  std::string name = printable(photo.string());
  if (wide || widthOf(name) <= kNameWidth) return name;
  const auto isInside = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; };
  while (widthOf(name) > kNameWidth - 3)
    name.erase(name.begin(), std::find_if_not(name.begin() + 1, name.end(), isInside));
  return "..." + name;
}

std::string errorText(const std::optional<double>& value) {
  return value ? fixed(*value, 2) : std::string();
}

double largest(const Matrix3& matrix) {
  double most = 0.0;
  for (const Vector3& row : matrix)
    for (const double entry : row) most = std::max(most, entry);
  return most;
}

}  // namespace

std::string photographsText(const batch::Overview& overview, bool wide) {
  using Align = TextTable::Align;
  const bool judged = overview.summary.job != batch::Job::chart;
  std::vector<TextTable::Column> columns{{"photograph", Align::Left}, {"", Align::Left}};
  if (judged) {
    columns[1].title = "light";
    columns.insert(columns.end(), {{"mean dE00"}, {"worst"}, {"at"}});
  }
  columns.push_back({"warnings"});
  TextTable table(columns);
  for (const batch::Result& result : overview.results) {
    const batch::Figures& figures = result.figures;
    std::vector<std::string> row{shownName(result.photo, wide)};
    if (result.failed()) {
      row.emplace_back("failed");
    } else if (!judged) {
      row.insert(row.end(), {"found", std::to_string(figures.warnings.size())});
    } else {
      row.insert(row.end(), {figures.light ? illumName(*figures.light) : "",
                             errorText(figures.meanError), errorText(figures.worstError),
                             figures.worstPatch ? std::to_string(*figures.worstPatch + 1) : "",
                             std::to_string(figures.warnings.size())});
    }
    table.addRow(std::move(row));
  }
  return table.text();
}

std::vector<std::string> lightTexts(const batch::Summary& summary) {
  std::vector<std::string> texts;
  for (const batch::LightSummary& light : summary.lights) {
    texts.push_back(std::to_string(light.fits) + " fits under " + illumName(light.light) +
                    ": the matrix's entries spread by up to " + fixed(largest(light.spread), 4) +
                    (light.outside.empty() ? "; none lies outside the others" : ""));
    for (const batch::OutsideFit& fit : light.outside)
      texts.push_back(quoted(fit.photo) + " lies outside the other fits under " +
                      illumName(light.light) + ": row " + std::to_string(fit.row + 1) +
                      ", column " + std::to_string(fit.column + 1) + " is " + fixed(fit.value, 4) +
                      ", their median " + fixed(light.median[fit.row][fit.column], 4));
  }
  return texts;
}

}  // namespace greycard::cli
