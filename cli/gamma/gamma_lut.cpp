// greycard gamma lut: a curve in the shapes in which it is used elsewhere.

#include <filesystem>
#include <iostream>
#include <memory>

#include "command.h"
#include "curve_options.h"
#include "gamma_commands.h"
#include "greycard/files.h"
#include "greycard/present/gamma.h"
#include "option_checks.h"
#include "text_output.h"

namespace greycard::cli {
namespace {

struct LutOptions : CommonOptions {
  CurveChoice choice;
  std::string kind;
  std::optional<int> bits;
  std::filesystem::path output;
};

void run(LutOptions& options) {
  if (options.kind == "12bit" && options.bits == 14)
    throw UsageError("--kind 12bit takes a curve of 8 bits; leave out --bits");
  options.choice.nameFile(options.files);
  options.files.output("--output", options.output);
  options.files.output("--json", options.json);
  const GammaCurvePtr curve = options.choice.curve();
  const CurveLut lut = buildCurveLut(*curve, {enumFrom<LutKind>(kLutKindNames, options.kind),
                                              options.choice.curveChannel(), options.bits});
  const std::string text = lutText(lut);
  options.files.write(options.output, text);
  options.writeJson(present::toJson(lut));
  if (options.printsText() && options.output.empty()) std::cout << text;
}

}  // namespace

void addGammaLut(CLI::App& gamma) {
  const auto options = std::make_shared<LutOptions>();
  CLI::App& app = addSubCommand(
      gamma, "lut",
      "A look-up table made of a curve, one value a line.\n"
      "  255        256 entries, each fourth of the curve\n"
      "  255-14bit  256 entries of a 14-bit curve, divided by 62.4\n"
      "  norm       256 entries of an 8-bit curve, divided by 255\n"
      "  12bit      4096 codes of 12 bits of an 8-bit curve, joined by straight lines; the last\n"
      "             four are equal",
      "greycard gamma lut VOutdoor --kind 12bit -o outdoor.txt", *options);
  options->choice.addTo(app);
  app.add_option("--kind", options->kind, "See above")
      ->required()
      ->type_name("NAME")
      ->check(oneOf({"255", "255-14bit", "norm", "12bit"}));
  app.add_option(
         "--bits", options->bits,
         "Bits that the curve is shifted to first: 8 or 14 (default: what the kind expects, "
         "14 for 255-14bit and 8 for the others)")
      ->check(CLI::IsMember({8, 14}))
      ->type_name("N");
  app.add_option("-o,--output", options->output, "File for the values instead of standard output")
      ->type_name("FILE");
  setJob(app, options, run);
}

}  // namespace greycard::cli
