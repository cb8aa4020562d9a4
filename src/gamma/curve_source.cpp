#include "greycard/curve_source.h"

#include <system_error>

#include "greycard/files.h"
#include "greycard/gamma_curve_model.h"
#include "greycard/names.h"

namespace greycard {
namespace {

std::vector<std::string> noteTexts(const std::filesystem::path& file, const GammaImport& import) {
  std::vector<std::string> texts;
  for (const GammaImportNote& note : import.notes) texts.push_back(noteText(file, note));
  return texts;
}

}  // namespace

std::string noteText(const std::filesystem::path& file, const GammaImportNote& note) {
  std::string text = quoted(file);
  if (note.line > 0) text += ", line " + std::to_string(note.line);
  if (!note.token.empty()) text += ", \"" + note.token + "\"";
  return printable(text + ": " + note.text);
}

CurveFileRefused::CurveFileRefused(const std::filesystem::path& file, const GammaImport& import)
    : JobError(noteText(file, import.refusal.value_or(GammaImportNote{}))),
      m_notes(noteTexts(file, import)) {}

SourcedCurve curveByNameOrFile(const std::string& nameOrFile) {
  GammaCurveModel catalogue(true);
  if (GammaCurvePtr curve = catalogue.GetGammaCurveByName(nameOrFile)) return {curve, {}};
  if (std::error_code ignored; !std::filesystem::exists(nameOrFile, ignored))
    throw UnknownName(unknownName("curve or curve file", nameOrFile, catalogue.GetNames()));
  const GammaImport import = catalogue.ImportWithReport(nameOrFile);
  if (import.refusal) throw CurveFileRefused(nameOrFile, import);
  return {import.curve, noteTexts(nameOrFile, import)};
}

ComparisonCurve comparisonCurve(const std::string& nameOrFile) {
  GammaCurveModel model(false);
  if (nameOrFile == "HDR10") return {curveTables(*model.GenerateHDRCurve(10000)), {}};
  if (nameOrFile == "HLG") return {curveTables(*model.GenerateHLGCurve()), {}};
  const SourcedCurve source = curveByNameOrFile(nameOrFile);
  ComparisonCurve comparison{curveTables(*source.curve), source.notes};
  comparison.curve.name = std::filesystem::path(nameOrFile).filename().string();
  return comparison;
}

}  // namespace greycard
