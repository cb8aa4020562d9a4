// greycard ae luma-match: the factor that brings one colour to the lightness of another.

#include <charconv>
#include <cmath>
#include <iostream>
#include <memory>

#include "ae_commands.h"
#include "command.h"
#include "greycard/image_utils_ex.h"
#include "greycard/nlopt_helper.h"
#include "greycard/number_text.h"
#include "job_files.h"
#include "option_checks.h"
#include "text_table.h"
#include "transition.h"

namespace greycard::cli {
namespace {

struct LumaMatchOptions : CommonOptions {
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

double lightness(const Vector3& rgb, double factor) {
  Vector3 lab;
  ImageUtilsEx::sRGBToCIELab(
      lab, {factor * rgb[0] / 255.0, factor * rgb[1] / 255.0, factor * rgb[2] / 255.0});
  return lab[0];
}

void run(const LumaMatchOptions& options) {
  JobFiles().textOutput("--json", options.json);
  const Vector3 test = colourFrom(options.test), target = colourFrom(options.target);
  SearchOptions search;
  search.seed = options.seed;
  const double factor = NLoptHelper().findMinSearch(test, target, search);
  const double before = lightness(test, 1.0), after = lightness(test, factor),
               wanted = lightness(target, 1.0);
  writeJson(options.json,
            {{"factor", factor}, {"test_L", before}, {"scaled_L", after}, {"target_L", wanted}});
  if (!options.printsText()) return;
  std::cout << "factor " << fixed(factor, 6) << "\nL* of the test colour " << fixed(before, 4)
            << ", scaled " << fixed(after, 4) << ", of the target " << fixed(wanted, 4) << "\n";
  constexpr double kWorthTelling = 0.01;
  if (std::abs(after - wanted) > kWorthTelling)
    std::cout << "No factor from 0 to 10 reaches the target.\n";
}

}  // namespace

void addAeLumaMatch(CLI::App& ae) {
  const auto options = std::make_shared<LumaMatchOptions>();
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
  app.callback([options] { run(*options); });
}

}  // namespace greycard::cli
