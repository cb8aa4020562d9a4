#include "curve_output.h"

#include <iostream>

#include "greycard/files.h"
#include "greycard/names.h"
#include "greycard/present/gamma.h"
#include "text_output.h"

namespace greycard::cli {

void CurveOutput::addTo(CLI::App& app) {
  addCurveFileForm(app, form);
  app.add_option("-o,--output", output, "Curve file to write")->required()->type_name("FILE");
  plot.addTo(app);
  exports.addTo(app, exchange::MaterialKind::Curve);
}

void CurveOutput::nameFiles(JobFiles& files) {
  files.output("--output", output);
  plot.nameFiles(files);
  files.textOutput("--json", json);
  exports.nameFiles(files);
}

void CurveOutput::write(const GammaCurve& curve) const {
  const CurveExport exported = exportCurve(curve, output, form);
  plot.write([&](const auto& against) { return present::curvePlot(exported.curve, against); });
  if (!json.empty()) writeText(json, present::toJson(exported));
  std::vector<std::string> lines;
  if (exports.any()) lines = exports.write(exported.curve);
  if (!printsText()) return;
  std::cout << printable(curve.Name()) << ": "
            << (exported.curve.unified ? "one table" : "three tables") << " of " << form.values
            << " values of " << form.bits << " bits in " << quoted(output) << '\n';
  for (const std::string& line : lines) std::cout << line << '\n';
}

}  // namespace greycard::cli
