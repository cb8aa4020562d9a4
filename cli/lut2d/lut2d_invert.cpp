// greycard lut2d invert: the table that undoes another, and how well it does.

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <iostream>
#include <memory>

#include "command.h"
#include "greycard/files.h"
#include "greycard/number_text.h"
#include "job_files.h"
#include "lut2d_commands.h"
#include "lut2d_file.h"
#include "lut2d_planes.h"
#include "text_table.h"

namespace greycard::cli {
namespace {

struct InvertOptions : CommonOptions {
  std::filesystem::path lut, output;
};

// The record's changes as a configuration.
Lut2DConfig inverseOf(Lut2DConfig config, int& uncovered) {
  TwoDLutHelper helper;
  config.inverse_flag = 1.0F;
  helper.SetConfig(config);
  helper.CalInverseLut2dCfg();
  uncovered = helper.UncoveredNodes();
  config.inverse_flag = 0.0F;
  for (std::size_t i = 0; i < kLut2dNodes; ++i) {
    const Lut2dPair& delta = helper.record()->delta[i / kLut2dSatColumns][i % kLut2dSatColumns];
    config.lut_2d_h[i] = double{delta.h};
    config.lut_2d_s[i] = double{delta.s} / 256.0;
  }
  return config;
}

// Hues every 5 degrees, saturations 0.1 to 0.9, three lightnesses.
Picture colourChart() {
  Picture chart(72, 27, 3, 16);
  for (int y = 0; y < chart.height; ++y)
    for (int x = 0; x < chart.width; ++x) {
      const auto rgb = TwoDLutHelper::HLStoRGB(5.0 * x, 0.1 * (1 + y % 9), 0.35 + 0.15 * (y / 9));
      for (std::size_t channel = 0; channel < 3; ++channel)
        chart.pixel(x, y)[channel] = static_cast<std::uint16_t>(std::lround(1023.0 * rgb[channel]));
    }
  return chart;
}

struct Error {
  double mean = 0.0, worst = 0.0;

  void add(double error, std::size_t count) {
    mean += error / static_cast<double>(count);
    worst = std::max(worst, error);
  }
};
struct RoundTrip {
  Error hueDeg, sat;
};

RoundTrip roundTrip(const Lut2DConfig& forward, const Lut2DConfig& inverse) {
  const TenBitPlanes before(colourChart(), 1023);
  TenBitPlanes after = before;
  TwoDLutHelper helper;
  helper.SetConfig(forward);
  after.apply(helper);
  helper.SetConfig(inverse);
  after.apply(helper);
  const auto hls = [](const TenBitPlanes& planes, std::size_t i) {
    return TwoDLutHelper::RGBtoHLS(planes.r[i] / 1023.0, planes.g[i] / 1023.0,
                                   planes.b[i] / 1023.0);
  };
  RoundTrip trip;
  for (std::size_t i = 0; i < before.r.size(); ++i) {
    const auto was = hls(before, i), is = hls(after, i);
    const double turn = std::fabs(is.h - was.h);
    trip.hueDeg.add(std::min(turn, 360.0 - turn), before.r.size());
    trip.sat.add(std::fabs(is.s - was.s), before.r.size());
  }
  return trip;
}

void run(const InvertOptions& options) {
  JobFiles files;
  files.input("LUT", options.lut);
  files.textOutput("--output", options.output);
  files.textOutput("--json", options.json);
  const Lut2DConfig forward = readLut2d(options.lut);
  int uncovered = 0;
  const Lut2DConfig inverse = inverseOf(forward, uncovered);
  const RoundTrip trip = roundTrip(forward, inverse);
  writeJson(options.output.string(), lut2dJson(inverse));
  writeJson(options.json, {{"uncovered_nodes", uncovered},
                           {"mean_hue_error_deg", trip.hueDeg.mean},
                           {"worst_hue_error_deg", trip.hueDeg.worst},
                           {"mean_saturation_error", trip.sat.mean},
                           {"worst_saturation_error", trip.sat.worst}});
  if (!options.printsText() || options.output == "-") return;
  std::cout << "Wrote " << quoted(options.output) << "; " << uncovered
            << (uncovered == 1 ? " node lies in no triangle of the table's targets and changes"
                               : " nodes lie in no triangle of the table's targets and change")
            << " nothing\n"
            << "There and back over a chart of colours:\n"
            << "  hue         mean " << fixed(trip.hueDeg.mean, 2) << ", worst "
            << fixed(trip.hueDeg.worst, 2) << " degrees\n"
            << "  saturation  mean " << fixed(trip.sat.mean, 4) << ", worst "
            << fixed(trip.sat.worst, 4) << "\n";
}

}  // namespace

void addLut2dInvert(CLI::App& lut2d) {
  const auto options = std::make_shared<InvertOptions>();
  CLI::App& app = addSubCommand(
      lut2d, "invert",
      "The table that undoes a table, and the error of going there and back: over hues every 5\n"
      "degrees, saturations 0.1 to 0.9 and lightnesses 0.35, 0.5 and 0.65, in 10 bits",
      "greycard lut2d invert warmer.json -o back.json", *options);
  app.add_option("lut", options->lut, "Table to invert")->required()->type_name("LUT");
  app.add_option("-o,--output", options->output, "Table to write, as JSON")
      ->required()
      ->type_name("FILE");
  app.callback([options] { run(*options); });
}

}  // namespace greycard::cli
