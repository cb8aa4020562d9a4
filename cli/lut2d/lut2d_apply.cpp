// greycard lut2d apply: a picture through a hue/saturation table.

#include <cmath>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>

#include "command.h"
#include "greycard/files.h"
#include "greycard/jobs/apply_fit.h"
#include "greycard/photograph.h"
#include "greycard/picture.h"
#include "greycard/present/lut2d.h"
#include "greycard/present/photograph.h"
#include "job_files.h"
#include "lut2d_commands.h"
#include "option_checks.h"
#include "text_output.h"

namespace greycard::cli {
namespace {

struct ApplyOptions : CommonOptions {
  std::filesystem::path photo, lut, from, output, compare;
  std::optional<int> bits;
};

// With the advice in the command's words.
AppliedLut2d applied(const ApplyOptions& options, const Picture& picture,
                     const Lut2DConfig& table) try {
  return applyLut2d(picture, table, {options.bits}, options.photo, options.lut);
} catch (const WrongSampleBits& wrong) {
  throw JobError(wrong.fact() +
                 (options.bits == 8 ? "; --bits must be 10 or 16" : "; leave out --bits"));
}

void run(ApplyOptions& options) {
  options.files.input("PHOTO", options.photo);
  options.files.input("--lut", options.lut);
  options.files.input("--from", options.from);
  options.files.pictureOutput("--output", options.output);
  options.files.pictureOutput("--compare", options.compare);
  options.files.output("--json", options.json);
  const Lut2DConfig table = present::readLut2d(options.lut);
  const Photograph photograph = readPhotograph(options.photo);
  const AppliedLut2d result = applied(
      options,
      options.from.empty() ? photograph.picture
                           : applyFit(photograph, present::readFittedPipeline(options.from)),
      table);
  const Lut2dApplyReport& report = result.report;
  const double share =
      static_cast<double>(report.changedPixels) / static_cast<double>(report.pixels);
  options.files.write(
      options.output, result.picture(),
      ": " + std::to_string(std::lround(100.0 * share)) + " % of the pixels moved by the table");
  if (!options.compare.empty())
    options.files.write(options.compare, present::labelledComparison(result));
  options.writeJson(present::toJson(report));
  if (options.printsText()) options.printWarnings(photograph.warnings);
}

}  // namespace

void addLut2dApply(CLI::App& lut2d) {
  const auto options = std::make_shared<ApplyOptions>();
  CLI::App& app = addSubCommand(
      lut2d, "apply",
      "Move the colours of a picture. The table works on 10 bits: samples of 8 or 16 bits are\n"
      "scaled to that and back.",
      "greycard lut2d apply photo.png --lut warmer.json -o warmer.png --compare both.png",
      *options);
  app.add_option("photo", options->photo, "Picture with 8 or 16 bits a sample")
      ->required()
      ->transform(inputFile())
      ->type_name("PHOTO");
  app.add_option("--lut", options->lut, "Table")
      ->required()
      ->transform(inputFile())
      ->type_name("FILE");
  app.add_option("--from", options->from,
                 "A fit that ccm --json wrote: the photograph goes through its gains, matrix and "
                 "tone curve before the table moves its colours")
      ->transform(inputFile())
      ->type_name("FILE");
  app.add_option("-o,--output", options->output, "Picture to write, with the same bits")
      ->required()
      ->type_name("FILE");
  app.add_option("--compare", options->compare, "Picture of before and after, side by side")
      ->type_name("FILE");
  app.add_option("--bits", options->bits,
                 "10 for samples of 0..1023 in a 16-bit picture (default: all bits of the file)")
      ->check(CLI::IsMember({8, 10, 16}))
      ->type_name("N");
  setJob(app, options, run);
}

}  // namespace greycard::cli
