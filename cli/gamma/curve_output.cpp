#include "curve_output.h"

#include "greycard/names.h"
#include "greycard/present/gamma.h"

namespace greycard::cli {

void CurveOutput::addTo(CLI::App& app) {
  addCurveFileForm(app, form);
  app.add_option("-o,--output", output, "Curve file to write")->required()->type_name("FILE");
  plot.addTo(app);
  exports.addTo(app, exchange::MaterialKind::Curve);
}

void CurveOutput::nameFiles() {
  files.output("--output", output);
  plot.nameFiles(files);
  files.output("--json", json);
  exports.nameFiles(files);
}

void CurveOutput::write(const GammaCurve& curve) {
  const CurveExport exported{curveTables(curve), output, form};
  files.write(output, curveFileText(curve, form),
              ": " + printable(curve.Name()) +
                  (exported.curve.unified ? ", one table of " : ", three tables of ") +
                  std::to_string(form.values) + " values of " + std::to_string(form.bits) +
                  " bits");
  plot.write(files,
             [&](const auto& against) { return present::curvePlot(exported.curve, against); });
  writeJson(present::toJson(exported));
  if (exports.any()) exports.write(files, exported.curve);
}

}  // namespace greycard::cli
