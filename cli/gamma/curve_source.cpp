#include "curve_source.h"

#include <filesystem>
#include <iostream>

#include "command.h"
#include "gamma_commands.h"
#include "greycard/files.h"
#include "greycard/gamma_curve_model.h"
#include "greycard/names.h"

namespace greycard::cli {
namespace {

bool isInCatalogue(const std::string& name) {
  return GammaCurveModel(true).GetGammaCurveByName(name) != nullptr;
}

Json pointsJson(const ControlPointListPtr& points) {
  Json json = Json::array();
  if (points)
    for (const ControlPoint& point : *points) json.push_back({point.X, point.Y});
  return json;
}

}  // namespace

GammaCurvePtr curveByNameOrFile(const std::string& nameOrFile) {
  GammaCurveModel catalogue(true);
  if (GammaCurvePtr curve = catalogue.GetGammaCurveByName(nameOrFile)) return curve;
  if (!namesFile(nameOrFile))
    throw JobError(unknownName("curve or curve file", nameOrFile, catalogue.GetNames()));
  const GammaImport import = catalogue.ImportWithReport(nameOrFile);
  for (const GammaImportNote& note : import.notes)
    std::cerr << "note: " << noteText(nameOrFile, note) << '\n';
  if (import.refusal) throw JobError(noteText(nameOrFile, *import.refusal));
  return import.curve;
}

void nameCurveFile(JobFiles& files, const std::string& option, const std::string& nameOrFile) {
  if (!nameOrFile.empty() && !isInCatalogue(nameOrFile)) files.input(option, nameOrFile);
}

std::string noteText(const std::string& file, const GammaImportNote& note) {
  std::string text = quoted(std::filesystem::path(file));
  if (note.line > 0) text += ", line " + std::to_string(note.line);
  if (!note.token.empty()) text += ", \"" + note.token + "\"";
  return printable(text + ": " + note.text);
}

Json curveJson(const GammaCurve& curve) {
  Json json{{"name", curve.Name()},
            {"bits", kCurveBits},
            {"unified", curve.IsUnified()},
            {"table", *curve.Data()},
            {"points", pointsJson(curve.ControlPoints())}};
  if (!curve.IsUnified()) {
    json["table_green"] = *curve.DataG();
    json["table_blue"] = *curve.DataB();
    json["points_green"] = pointsJson(curve.ControlPointsG());
    json["points_blue"] = pointsJson(curve.ControlPointsB());
  }
  return json;
}

}  // namespace greycard::cli
