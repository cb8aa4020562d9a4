// greycard lut2d: hue/saturation tables; and lut2d new, which makes one.

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>
#include <vector>

#include "command.h"
#include "greycard/files.h"
#include "greycard/present/lut2d.h"
#include "job_files.h"
#include "lut2d_commands.h"
#include "option_checks.h"
#include "sub_commands.h"
#include "text_output.h"

namespace greycard::cli {
namespace {

struct NewOptions : CommonOptions {
  std::filesystem::path output;
  std::vector<float> fade{0.0F, 0.0F, 1.0F, 1.0F};
  Lut2dIdentityOptions table;  // but for the fade
};

void run(NewOptions& options) {
  if (!std::ranges::is_sorted(options.fade)) throw UsageError("--fade: A,B,C,D must not fall");
  options.files.output("--output", options.output);
  options.files.output("--json", options.json);
  Lut2dIdentityOptions identity = options.table;
  std::ranges::copy(options.fade, identity.fade.begin());
  const std::string json = present::toJson(identityLut2d(identity));
  options.files.write(options.output, json, ": a table that changes nothing");
  options.files.write(options.json, json);
}

}  // namespace

void addLut2dNew(CLI::App& lut2d) {
  const auto options = std::make_shared<NewOptions>();
  CLI::App& app = addSubCommand(
      lut2d, "new",
      "Make a table that changes nothing: hue rows every 15 degrees, saturations every 1/15",
      "greycard lut2d new -o table.json --fade 0.05,0.15,0.85,0.95 --y-blend 1", *options);
  app.add_option("-o,--output", options->output, "Table to write, as JSON")
      ->required()
      ->type_name("FILE");
  app.add_option("--fade", options->fade,
                 "Lightness (0 to 1) where the effect begins to fade in, is full, begins to fade "
                 "out and is gone (default 0,0,1,1)")
      ->expected(4)
      ->delimiter(',')
      ->type_name("A,B,C,D")
      ->check(numbersFrom(0.0, 1.0));
  app.add_option("--y-blend", options->table.yBlend, "Share of the luma that is restored")
      ->capture_default_str()
      ->check(numbersFrom(0.0, 1.0));
  app.add_option("--h-shift", options->table.hShift,
                 "Hue changes reach 15 degrees times 2 to this power, in steps as much coarser")
      ->capture_default_str()
      ->check(wholeNumbersFrom(0, 6));
  app.add_option("--s-shift", options->table.sShift,
                 "Saturation changes reach 0.25 times 2 to this power")
      ->capture_default_str()
      ->check(wholeNumbersFrom(0, 6));
  setJob(app, options, run);
}

void addLut2d(CLI::App& parent) {
  CLI::App& lut2d = *parent.add_subcommand("lut2d", "Edit, apply and invert hue/saturation tables");
  lut2d.footer(
      "Example:\n  greycard lut2d new -o table.json\n"
      "  greycard lut2d adjust table.json --at 20,0.5 --by 15,0 --range 2,4 -o warmer.json\n"
      "  greycard lut2d apply photo.png --lut warmer.json -o warmer.png");
  lut2d.require_subcommand(1);
  addLut2dNew(lut2d);
  addLut2dShow(lut2d);
  addLut2dAdjust(lut2d);
  addLut2dInvert(lut2d);
  addLut2dApply(lut2d);
}

}  // namespace greycard::cli
