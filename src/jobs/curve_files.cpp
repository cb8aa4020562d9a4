#include "greycard/jobs/curve_files.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>

#include "greycard/files.h"

namespace greycard {
namespace {

void checkForm(const CurveFileForm& form) {
  if (constexpr std::array kValues{64, 256, 512, 1024};
      std::ranges::find(kValues, form.values) == kValues.end())
    throw std::invalid_argument("a table of a curve file has 64, 256, 512 or 1024 values, not " +
                                std::to_string(form.values));
  if (constexpr std::array kBits{8, 10, 12, 14}; std::ranges::find(kBits, form.bits) == kBits.end())
    throw std::invalid_argument("values of a curve file have 8, 10, 12 or 14 bits, not " +
                                std::to_string(form.bits));
}

ImportedCurve imported(const std::filesystem::path& file, const GammaImport& import) {
  ImportedCurve result{curveTables(*import.curve), file, {}, import.notes};
  for (std::size_t c = 0; c < import.tables.size(); ++c)
    if (const auto& [numbers, bits] = import.tables[c]; numbers > 0)
      result.fileTables.push_back({static_cast<CurveChannel>(c + 1), numbers, bits});
  return result;
}

}  // namespace

std::string curveFileText(const GammaCurve& curve, const CurveFileForm& form) {
  checkForm(form);
  auto text = curve.GetFileText(form.values, form.bits);
  if (!text) throw JobError("the curve " + curve.Name() + " has no table that could be written");
  return *std::move(text);
}

CurveExport exportCurve(const GammaCurve& curve, const std::filesystem::path& file,
                        const CurveFileForm& form) {
  const std::string text = curveFileText(curve, form);
  CurveExport result{curveTables(curve), file, form};
  writeWholeFile(file, text);
  return result;
}

CurveImportReport importCurves(GammaCurveModel& catalogue,
                               std::span<const std::filesystem::path> files,
                               const CurveImportOptions& options) {
  CurveImportReport report;
  for (const std::filesystem::path& file : files) try {
      const GammaImport import = importAnyCurveFile(catalogue, file, options);
      if (import.refusal) throw CurveFileRefused(file, import);
      report.curves.push_back(imported(file, import));
    } catch (const CurveFileRefused& refusal) {
      report.refused.push_back({file, refusal.what(), refusal.notes()});
    } catch (const FileError& error) {
      report.refused.push_back({file, error.what(), {}});
    }
  return report;
}

}  // namespace greycard
