// greycard gamma lut: a curve in the shapes in which it is used elsewhere.

#include "greycard/gamma_lut.h"

#include <array>
#include <filesystem>
#include <iostream>
#include <memory>
#include <vector>

#include "command.h"
#include "gamma_commands.h"
#include "greycard/files.h"
#include "greycard/number_text.h"
#include "job_files.h"
#include "text_table.h"
#include "transition.h"

namespace greycard::cli {
namespace {

struct LutOptions : CommonOptions {
  CurveChoice choice;
  std::string kind;
  int bits = 0;  // of the curve handed to the builder; 0: what it expects
  std::filesystem::path output;
};

struct Lut {
  std::vector<double> values;
  int decimals = 0;
};

Lut build(const std::string& kind, std::span<const std::int32_t> curve) {
  if (kind == "12bit") {
    std::array<std::int16_t, 4096> lut{};
    if (!GenerateGammaLUT12bit(lut, curve)) return {};
    lut.back() = lut[lut.size() - 2];  // left to the caller
    return {{lut.begin(), lut.end()}, 0};
  }
  std::array<double, 256> lut{};
  const bool built = kind == "255"    ? GenerateGammaLUT255(lut, curve)
                     : kind == "norm" ? GenerateGammaLUTNorm(lut, curve)
                                      : GenerateGammaLUT255_14bit(lut, curve);
  if (!built) return {};
  return {{lut.begin(), lut.end()}, kind == "255" ? 0 : 6};
}

void run(const LutOptions& options) {
  if (options.kind == "12bit" && options.bits == 14)
    throw UsageError("--kind 12bit takes a curve of 8 bits; leave out --bits");
  JobFiles files;
  options.choice.nameFile(files);
  files.output("--output", options.output);
  files.textOutput("--json", options.json);
  const GammaCurvePtr curve = options.choice.curve();
  const auto table = options.choice.table(*curve);
  std::vector<std::int32_t> entries(table.begin(), table.end());
  const int bits = options.bits != 0 ? options.bits : options.kind == "255-14bit" ? 14 : 8;
  for (auto& entry : entries) entry >>= kCurveBits - bits;
  const Lut lut = build(options.kind, entries);
  if (lut.values.empty())
    throw JobError("the curve has not 1024 entries; no such table can be made");

  std::string text;
  for (const double value : lut.values) text += fixed(value, lut.decimals) + '\n';
  if (!options.output.empty()) writeWholeFile(options.output, text);
  writeJson(options.json, {{"name", curve->Name()},
                           {"channel", options.choice.channel},
                           {"kind", options.kind},
                           {"curve_bits", bits},
                           {"values", lut.values}});
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
      ->check(CLI::IsMember({"255", "255-14bit", "norm", "12bit"}));
  app.add_option(
         "--bits", options->bits,
         "Bits that the curve is shifted to first: 8 or 14 (default: what the kind expects, "
         "14 for 255-14bit and 8 for the others)")
      ->check(CLI::IsMember({8, 14}))
      ->type_name("N");
  app.add_option("-o,--output", options->output, "File for the values instead of standard output")
      ->type_name("FILE");
  app.callback([options] { run(*options); });
}

}  // namespace greycard::cli
