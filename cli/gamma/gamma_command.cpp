// greycard gamma: the catalogue of tone curves.

#include <iostream>
#include <memory>

#include "command.h"
#include "gamma_commands.h"
#include "greycard/present/gamma.h"
#include "job_files.h"
#include "sub_commands.h"
#include "text_output.h"
#include "text_table.h"

namespace greycard::cli {
namespace {

void list(CommonOptions& options) {
  options.files.output("--json", options.json);
  const GammaCurveModel catalogue(true);
  const GammaCatalogueListing listing = listCurves(catalogue);
  options.writeJson(present::toJson(listing));
  if (!options.printsText()) return;
  TextTable table({{"curve", TextTable::Align::Left},
                   {"entries"},
                   {"first"},
                   {"quarter"},
                   {"half"},
                   {"last"},
                   {"channels", TextTable::Align::Left}});
  for (const CatalogueCurve& curve : listing.curves) {
    const auto data = curveTable(*catalogue.GetGammaCurveByName(curve.name));
    const auto at = [&data](std::size_t quarters) {
      return std::to_string(data[std::min(quarters * data.size() / 4, data.size() - 1)]);
    };
    table.addRow({curve.name, std::to_string(curve.entries), at(0), at(1), at(2), at(4),
                  curve.unified ? "together" : "separate"});
  }
  std::cout << table.text() << "Outputs are " << kCurveBits << "-bit codes, 0.." << kCurveMax
            << ".\n";
}

}  // namespace

void addGammaList(CLI::App& gamma) {
  const auto options = std::make_shared<CommonOptions>();
  CLI::App& app =
      addSubCommand(gamma, "list", "The names of the catalogue, with a few outputs of each curve",
                    "greycard gamma list", *options);
  setJob(app, options, list);
}

void addGamma(CLI::App& parent) {
  CLI::App& gamma =
      *parent.add_subcommand("gamma", "Look at tone curves, convert them, and make tables of them");
  gamma.footer("Example:\n  greycard gamma show VGammaSRGB --plot curve.svg");
  gamma.require_subcommand(1);
  addGammaList(gamma);
  addGammaShow(gamma);
  addGammaLut(gamma);
  addGammaExport(gamma);
  addGammaImport(gamma);
  addGammaHdr10(gamma);
  addGammaHlg(gamma);
  addGammaPoints(gamma);
  addGammaDegamma(gamma);
  addGammaPower(gamma);
  addGammaMerge(gamma);
  addGammaInvert(gamma);
}

}  // namespace greycard::cli
