// A curve file as a new curve of the catalogue.

#include <utility>

#include "curve_file.h"
#include "gamma_curve_collection.h"
#include "gamma_model_state.h"
#include "greycard/gamma_curve_model.h"
#include "import_notes.h"

namespace greycard {
namespace {

GammaImport noNameFree(const std::string& base) {
  GammaImport import;
  import.refusal = {0,
                    {},
                    "the catalogue already holds \"" + base +
                        "\" and the same name with 1 to 998 "
                        "behind; rename the file or delete a curve"};
  return import;
}

}  // namespace

std::optional<std::string> GammaCurveModel::freeName(const std::string& base) const {
  constexpr int kHighestSuffix = 998;
  std::string name = base;
  for (int suffix = 1; m_Curves->Contains(name); ++suffix) {
    if (suffix > kHighestSuffix) return std::nullopt;
    name = base + std::to_string(suffix);
  }
  return name;
}

GammaImport GammaCurveModel::importCurve(const std::string& name, TokenStream& tokens) {
  const CurveFileContents file = readCurveFile(tokens);
  const auto numbers = [&file](std::size_t list) -> std::span<const std::int32_t> {
    return file.lists[list].numbers;
  };
  GammaImport import;
  import.curve =
      CreateCurve(name, numbers(0), numbers(1), numbers(2), numbers(3), numbers(4), numbers(5));
  describeImport(file, m_state->RGBGamma, m_state->GammaBitSize, import);
  if (import.curve) m_Curves->Add(import.curve);
  return import;
}

GammaImport GammaCurveModel::ImportText(TextView name, std::string text) {
  const std::string base(name);
  const auto unused = freeName(base);
  if (!unused) return noNameFree(base);
  TokenStream tokens = TokenStream::ofText(std::move(text));
  return importCurve(*unused, tokens);
}

GammaImport GammaCurveModel::ImportWithReport(const std::filesystem::path& fileName) {
  const std::string base = fileName.stem().string();
  const auto unused = freeName(base);
  if (!unused) return noNameFree(base);
  TokenStream tokens(fileName);
  return importCurve(*unused, tokens);
}

GammaCurvePtr GammaCurveModel::ImportFromFile(const std::filesystem::path& fileName) {
  return ImportWithReport(fileName).curve;
}

}  // namespace greycard
