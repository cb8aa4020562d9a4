// greycard ae luma-match: the factor that brings one colour to the lightness of another.

#include <charconv>
#include <iostream>
#include <memory>

#include "ae_commands.h"
#include "command.h"
#include "greycard/number_text.h"
#include "greycard/present/fitting.h"
#include "job_files.h"
#include "option_checks.h"
#include "text_output.h"

namespace greycard::cli {
namespace {

struct LumaOptions : CommonOptions {
  std::string test, target;
  std::uint32_t seed = SearchOptions::kDefaultSeed;
};

Vector3 colourFrom(const std::string& text) {
  Vector3 colour{};
  const char* at = text.data();
  const char* const end = at + text.size();
  for (std::size_t c = 0; c < colour.size(); ++c) {
    const auto [stop, error] = std::from_chars(at, end, colour[c]);
    const bool complete = c + 1 < colour.size() ? stop != end && *stop == ',' : stop == end;
    if (error != std::errc{} || !complete || !(colour[c] >= 0.0 && colour[c] <= 255.0))
      throw UsageError("\"" + text + "\" is not a colour: R,G,B, each from 0 to 255");
    at = stop + 1;
  }
  return colour;
}

void run(LumaOptions& options) {
  options.files.output("--json", options.json);
  LumaMatchOptions colours;
  colours.test = colourFrom(options.test);
  colours.target = colourFrom(options.target);
  colours.search.seed = options.seed;
  const LumaMatch match = matchLuma(colours);
  options.writeJson(present::toJson(match));
  if (!options.printsText()) return;
  std::cout << "factor " << fixed(match.factor, 6) << "\nL* of the test colour "
            << fixed(match.testL, 4) << ", scaled " << fixed(match.scaledL, 4) << ", of the target "
            << fixed(match.targetL, 4) << "\n";
  if (!match.reached()) std::cout << "No factor from 0 to 10 reaches the target.\n";
}

}  // namespace

void addAeLumaMatch(CLI::App& ae) {
  const auto options = std::make_shared<LumaOptions>();
  CLI::App& app =
      addSubCommand(ae, "luma-match",
                    "The factor on an encoded sRGB colour that gives it the L* of another colour",
                    "greycard ae luma-match 200,100,50 100,100,100", *options);
  app.add_option("test", options->test, "Colour to scale")->required()->type_name("R,G,B");
  app.add_option("target", options->target, "Colour whose L* is wanted")
      ->required()
      ->type_name("R,G,B");
  app.add_option("--seed", options->seed, "Seed of the random numbers")
      ->capture_default_str()
      ->check(wholeNumbersFrom(0, UINT32_MAX));
  setJob(app, options, run);
}

}  // namespace greycard::cli
