#include "greycard/curve_source.h"

#include <system_error>

#include "greycard/curve_import.h"
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

// 257 codes of 10 bits; null for any other name.
GammaCurvePtr standardCurve(const std::string& name) {
  GammaCurveModel model(false);
  if (name == "HDR10") return model.GenerateHDRCurve(10000);
  return name == "HLG" ? model.GenerateHLGCurve() : nullptr;
}

// As its codes would be read from a file.
GammaCurvePtr resampled(const GammaCurve& standard) {
  std::string codes;
  for (const std::int32_t code : *standard.Data()) codes += std::to_string(code) + '\n';
  GammaCurveModel model(false);
  return importAnyCurve(model, standard.Name(), std::move(codes)).curve;
}

}  // namespace

std::string noteText(const std::filesystem::path& file, const GammaImportNote& note) {
  std::string text = quoted(file);
  if (note.line > 0) text += ", line " + std::to_string(note.line);
  if (note.column) text += ", column " + std::to_string(*note.column);
  if (!note.token.empty()) text += ", \"" + note.token + "\"";
  return printable(text + ": " + note.text);
}

CurveFileRefused::CurveFileRefused(const std::filesystem::path& file, const GammaImport& import)
    : JobError(noteText(file, import.refusal.value_or(GammaImportNote{}))),
      m_notes(noteTexts(file, import)) {}

SourcedCurve curveByNameOrFile(const std::string& nameOrFile) {
  GammaCurveModel catalogue(true);
  if (GammaCurvePtr curve = catalogue.GetGammaCurveByName(nameOrFile)) return {curve, {}};
  if (const GammaCurvePtr standard = standardCurve(nameOrFile)) return {resampled(*standard), {}};
  if (std::error_code ignored; !std::filesystem::exists(nameOrFile, ignored)) {
    std::vector<std::string> names = catalogue.GetNames();
    names.insert(names.end(), {"HDR10", "HLG"});
    throw UnknownName(unknownName("curve or curve file", nameOrFile, names));
  }
  const GammaImport import = importAnyCurveFile(catalogue, nameOrFile);
  if (import.refusal) throw CurveFileRefused(nameOrFile, import);
  return {import.curve, noteTexts(nameOrFile, import)};
}

ComparisonCurve comparisonCurve(const std::string& nameOrFile) {
  if (const GammaCurvePtr standard = standardCurve(nameOrFile)) return {curveTables(*standard), {}};
  const SourcedCurve source = curveByNameOrFile(nameOrFile);
  ComparisonCurve comparison{curveTables(*source.curve), source.notes};
  comparison.curve.name = std::filesystem::path(nameOrFile).filename().string();
  return comparison;
}

}  // namespace greycard
