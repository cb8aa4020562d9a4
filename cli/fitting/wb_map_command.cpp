// greycard wb-map: white-balance points of one sensor in another sensor's plane.

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <vector>

#include "command.h"
#include "greycard/awb_utils.h"
#include "greycard/files.h"
#include "greycard/number_text.h"
#include "job_files.h"
#include "sub_commands.h"
#include "text_table.h"
#include "transition.h"

namespace greycard::cli {
namespace {

constexpr int kDigits = 8;
// Of the largest target coordinate: rounding stays far below unless the source points are almost
// on one line.
constexpr double kLargestSoundResidual = 1e-6;

struct WbMapOptions : CommonOptions {
  std::vector<std::string> from, to, points;
  std::filesystem::path pointsFile, csv;
};

struct WbMapResult {
  AWBUtils::ReferencePoints from, to;
  AffineTransform transform;
  std::vector<WhiteBalancePoint> points;

  double largestResidual() const {
    double largest = 0.0;
    for (std::size_t k = 0; k < from.size(); ++k) {
      const WhiteBalancePoint mapped = transform(from[k]);
      for (const double difference : {mapped.rg - to[k].rg, mapped.bg - to[k].bg})
        largest = std::isnan(difference) ? difference : std::max(largest, std::abs(difference));
    }
    return largest;
  }
  bool meetsTargets() const {
    double scale = 0.0;
    for (const auto& [rg, bg] : to) scale = std::max({scale, std::abs(rg), std::abs(bg)});
    return largestResidual() <= kLargestSoundResidual * scale;
  }
};

// Throws a part of a sentence; the caller says where.
WhiteBalancePoint pointFrom(std::string_view text) {
  const auto numbers = finiteNumbers(text);
  if (numbers.size() != 2)
    throw std::invalid_argument("a point is two numbers RG,BG, and here are " +
                                std::to_string(numbers.size()));
  return {numbers[0], numbers[1]};
}

WhiteBalancePoint pointOption(const std::string& option, const std::string& text) {
  try {
    return pointFrom(text);
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

std::vector<WhiteBalancePoint> readPoints(const std::filesystem::path& path) {
  const std::string text = readWholeFile(path);
  std::vector<WhiteBalancePoint> points;
  std::size_t number = 0;
  for (std::size_t at = 0, end = 0; at < text.size(); at = end + 1) {
    end = std::min(text.find('\n', at), text.size());
    const std::string_view line = std::string_view(text).substr(at, end - at);
    ++number;
    const std::size_t first = line.find_first_not_of(" \t\r");
    if (first == std::string_view::npos || line[first] == '#') continue;
    try {
      points.push_back(pointFrom(line));
    } catch (const std::invalid_argument& error) {
      throw JobError("line " + std::to_string(number) + " of " + quoted(path) + ": " +
                     error.what());
    }
  }
  if (points.empty())
    throw JobError(quoted(path) + " holds no points; each of its lines should be RG,BG");
  return points;
}

std::vector<double> pairOf(const WhiteBalancePoint& point) {
  return {point.rg, point.bg};
}

Json resultJson(const WbMapResult& result) {
  const AffineTransform& t = result.transform;
  Json json = {
      {"coefficients", {{"a", t.a}, {"b", t.b}, {"c", t.c}, {"d", t.d}, {"e", t.e}, {"f", t.f}}},
      {"spans_plane", AWBUtils::SpansPlane(result.from)},
      {"largest_residual", result.largestResidual()}};
  for (std::size_t k = 0; k < result.from.size(); ++k)
    json["references"].push_back({{"from", pairOf(result.from[k])},
                                  {"to", pairOf(result.to[k])},
                                  {"mapped", pairOf(t(result.from[k]))}});
  json["points"] = Json::array();
  for (const WhiteBalancePoint& point : result.points)
    json["points"].push_back({{"point", pairOf(point)}, {"mapped", pairOf(t(point))}});
  return json;
}

std::string resultCsv(const WbMapResult& result) {
  std::string csv = "rg,bg,mapped_rg,mapped_bg\n";
  for (const WhiteBalancePoint& point : result.points) {
    const WhiteBalancePoint mapped = result.transform(point);
    csv += exact(point.rg) + "," + exact(point.bg) + "," + exact(mapped.rg) + "," +
           exact(mapped.bg) + "\n";
  }
  return csv;
}

void addPair(std::vector<std::string>& cells, const WhiteBalancePoint& point) {
  cells.push_back(general(point.rg, kDigits));
  cells.push_back(general(point.bg, kDigits));
}

void print(const WbMapResult& result) {
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

void run(const WbMapOptions& options) {
  JobFiles files;
  files.input("--points", options.pointsFile);
  files.output("--csv", options.csv);
  files.textOutput("--json", options.json);
  WbMapResult result;
  result.from = references("--from", options.from);
  result.to = references("--to", options.to);
  for (const std::string& text : options.points)
    result.points.push_back(pointOption("--point", text));
  if (!options.pointsFile.empty()) {
    const auto more = readPoints(options.pointsFile);
    result.points.insert(result.points.end(), more.begin(), more.end());
  }
  result.transform = AWBUtils().GetAffineTransform(result.from, result.to);

  if (!options.csv.empty()) writeWholeFile(options.csv, resultCsv(result));
  writeJson(options.json, resultJson(result));
  if (options.printsText()) print(result);
  if (!AWBUtils::SpansPlane(result.from))
    std::cerr << "greycard wb-map: the three source points do not span a plane, so they leave the "
                 "mapping open and these figures mean nothing; choose three that form a triangle\n";
  else if (!result.meetsTargets())
    std::cerr
        << "greycard wb-map: the references are not mapped onto their targets, for the source "
           "points are almost on one line or the figures are too large; choose three points "
           "that form a wider triangle\n";
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
      ->type_name("FILE");
  app.add_option("--csv", options->csv, "Points and mapped points to write, as CSV")
      ->type_name("FILE");
  app.callback([options] { run(*options); });
}

}  // namespace greycard::cli
