// greycard compare: two results about a chart side by side.

#include <iostream>
#include <memory>

#include "command.h"
#include "greycard/files.h"
#include "greycard/macbeth_chart_data.h"
#include "greycard/number_text.h"
#include "greycard/present/comparison.h"
#include "greycard/present/verdict.h"
#include "option_checks.h"
#include "sub_commands.h"
#include "text_table.h"

namespace greycard::cli {
namespace {

struct CompareOptions : CommonOptions {
  std::filesystem::path a, b, report;
};

std::string comparisonText(const present::ChartComparison& comparison) {
  constexpr auto kLeft = TextTable::Align::Left;
  TextTable charts({{"", kLeft}, {"mean dE00"}, {"95 %"}, {"worst"}, {"", kLeft}, {"", kLeft}});
  for (const auto* chart : {&comparison.a, &comparison.b}) {
    const present::ColourVerdict verdict = present::colourVerdict(chart->errors.ciede2000);
    charts.addRow(
        {chart == &comparison.a ? "A" : "B", fixed(verdict.mean, 2), fixed(verdict.percentile95, 2),
         fixed(chart->errors.ciede2000.worst, 2),
         present::kColourGradeNames.at(static_cast<std::size_t>(verdict.grade)),
         chart->kind + " " + quoted(chart->file) + ", light " + illumTitle(chart->light)});
  }
  TextTable patches({{""}, {"patch", kLeft}, {"dE00 of A"}, {"of B"}, {"B less A"}, {"A to B"}});
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    const double a = comparison.a.errors.ciede2000.patch[i],
                 b = comparison.b.errors.ciede2000.patch[i];
    patches.addRow({std::to_string(i + 1), patchName(static_cast<int>(i)), fixed(a, 2), fixed(b, 2),
                    fixed(b - a, 2), fixed(comparison.between.ciede2000.patch[i], 2)});
  }
  return charts.text() + "\n" + patches.text() +
         (comparison.shareReference() ? "" : "A and B aim at different reference colours.\n");
}

void run(CompareOptions& options) {
  options.files.input("A.json", options.a);
  options.files.input("B.json", options.b);
  options.files.pageOutput("--report", options.report);
  options.files.output("--json", options.json);
  const present::ChartComparison comparison(present::readJudgedChart(options.a),
                                            present::readJudgedChart(options.b));
  if (!options.report.empty())
    options.files.write(options.report, present::comparisonReport(comparison, options.provenance));
  options.writeJson(present::toJson(comparison));
  if (options.printsText()) std::cout << comparisonText(comparison);
}

}  // namespace

void addCompare(CLI::App& parent) {
  const auto options = std::make_shared<CompareOptions>();
  CLI::App& app =
      addSubCommand(parent, "compare", "Two fits or evaluations of the chart side by side",
                    "greycard ccm photo.jpg --json a.json\n"
                    "greycard ccm photo.jpg --fit best --json b.json\n"
                    "greycard compare a.json b.json --report both.html",
                    *options);
  app.add_option("a", options->a, "What greycard ccm or evaluate --json wrote")
      ->required()
      ->transform(inputFile())
      ->type_name("A.json");
  app.add_option("b", options->b, "Another such file")
      ->required()
      ->transform(inputFile())
      ->type_name("B.json");
  app.add_option("--report", options->report, "Report as one HTML file")->type_name("FILE");
  setJob(app, options, run);
}

}  // namespace greycard::cli
