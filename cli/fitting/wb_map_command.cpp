// greycard wb-map: white-balance points of one sensor in another sensor's plane.

#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <vector>

#include "command.h"
#include "greycard/files.h"
#include "greycard/number_text.h"
#include "greycard/present/fitting.h"
#include "job_files.h"
#include "option_checks.h"
#include "sub_commands.h"
#include "text_output.h"
#include "text_table.h"

namespace greycard::cli {
namespace {

constexpr int kDigits = 8;

struct WbMapOptions : CommonOptions {
  std::vector<std::string> from, to, points;
  std::filesystem::path pointsFile, csv, report;
};

WhiteBalancePoint pointOption(const std::string& option, const std::string& text) {
  try {
    return whiteBalancePoint(text);
  } catch (const std::invalid_argument& error) {
    throw UsageError(option + " " + text + ": " + error.what());
  }
}

AWBUtils::ReferencePoints references(const std::string& option,
                                     const std::vector<std::string>& texts) {
  AWBUtils::ReferencePoints points;
  if (texts.size() != points.size())
    throw UsageError(option + " must be given three times and is given " +
                     std::to_string(texts.size()) + " times");
  for (std::size_t k = 0; k < points.size(); ++k) points[k] = pointOption(option, texts[k]);
  return points;
}

void addPair(std::vector<std::string>& cells, const WhiteBalancePoint& point) {
  cells.push_back(general(point.rg, kDigits));
  cells.push_back(general(point.bg, kDigits));
}

void print(const WhiteBalanceMapping& result) {
  const AffineTransform& t = result.transform;
  TextTable coefficients({{""}, {""}, {""}, {""}});
  const auto addRow = [&](const char* formula, double x, double y, double constant) {
    coefficients.addRow(
        {formula, general(x, kDigits), general(y, kDigits), general(constant, kDigits)});
  };
  addRow("X' = a X + b Y + e:  a, b, e =", t.a, t.b, t.e);
  addRow("Y' = c X + d Y + f:  c, d, f =", t.c, t.d, t.f);

  TextTable table({{"", TextTable::Align::Left},
                   {"R/G"},
                   {"B/G"},
                   {"mapped R/G"},
                   {"mapped B/G"},
                   {"target R/G"},
                   {"target B/G"}});
  const auto addPoint = [&](const std::string& name, const WhiteBalancePoint& point,
                            const std::optional<WhiteBalancePoint>& target) {
    std::vector<std::string> cells{name};
    addPair(cells, point);
    addPair(cells, t(point));
    if (target) addPair(cells, *target);
    table.addRow(std::move(cells));
  };
  for (std::size_t k = 0; k < result.from.size(); ++k)
    addPoint("reference " + std::to_string(k + 1), result.from[k], result.to[k]);
  for (std::size_t i = 0; i < result.points.size(); ++i)
    addPoint("point " + std::to_string(i + 1), result.points[i], std::nullopt);
  std::cout << coefficients.text() << "\n"
            << table.text() << "\nLargest difference of a mapped reference to its target: "
            << general(result.largestResidual(), 3) << "\n";
}

void run(WbMapOptions& options) {
  options.files.input("--points", options.pointsFile);
  options.files.output("--csv", options.csv);
  options.files.pageOutput("--report", options.report);
  options.files.output("--json", options.json);
  WhiteBalanceOptions job;
  job.from = references("--from", options.from);
  job.to = references("--to", options.to);
  for (const std::string& text : options.points) job.points.push_back(pointOption("--point", text));
  if (!options.pointsFile.empty()) {
    const auto more = readWhiteBalancePoints(options.pointsFile);
    job.points.insert(job.points.end(), more.begin(), more.end());
  }
  options.tellOptions(present::toJson(job), present::toJson(WhiteBalanceOptions{}));
  const WhiteBalanceMapping result = mapWhiteBalance(job);

  if (!options.csv.empty()) options.files.write(options.csv, present::wbMapCsv(result));
  if (!options.report.empty())
    options.files.write(options.report, present::wbMapReport(result, options.provenance));
  options.writeJson(present::toJson(result));
  if (options.printsText()) print(result);
}

void addPointsOption(CLI::App& app, const std::string& name, std::vector<std::string>& points,
                     const std::string& description) {
  app.add_option(name, points, description)->type_name("RG,BG")->allow_extra_args(false);
}

}  // namespace

void addWbMap(CLI::App& parent) {
  const auto options = std::make_shared<WbMapOptions>();
  CLI::App& app = addSubCommand(
      parent, "wb-map",
      "Map white-balance points (R/G, B/G) from one sensor's plane to another's by the affine\n"
      "transform that carries three reference points onto their counterparts",
      "greycard wb-map --from 0.45,0.71 --from 0.62,0.55 --from 0.88,0.38 \\\n"
      "  --to 0.48,0.66 --to 0.64,0.52 --to 0.93,0.37 --point 0.7,0.5",
      *options);
  addPointsOption(app, "--from", options->from,
                  "A reference point of the source sensor; three times");
  addPointsOption(app, "--to", options->to,
                  "Its counterpart of the target sensor, in the same order; three times");
  addPointsOption(app, "--point", options->points, "A point to map; as often as wanted");
  app.add_option("--points", options->pointsFile,
                 "File of points to map: RG,BG or RG BG a line; blank lines and lines that begin "
                 "with # are passed over")
      ->transform(inputFile())
      ->type_name("FILE");
  app.add_option("--csv", options->csv, "Points and mapped points to write, as CSV")
      ->type_name("FILE");
  app.add_option("--report", options->report, "Report as one HTML file")->type_name("FILE");
  setJob(app, options, run);
}

}  // namespace greycard::cli
