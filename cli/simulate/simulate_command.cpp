// greycard simulate: renders a photograph of the chart, or a flat field, with the truth about it.

#include <charconv>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>

#include "command.h"
#include "flat_field_options.h"
#include "greycard/files.h"
#include "greycard/names.h"
#include "greycard/number_text.h"
#include "greycard/picture.h"
#include "greycard/present/simulate.h"
#include "greycard/sample_meaning.h"
#include "job_files.h"
#include "option_checks.h"
#include "progress_bar.h"
#include "sub_commands.h"
#include "text_output.h"

namespace greycard::cli {
namespace {

struct SimulateOptions : CommonOptions {
  std::filesystem::path picture, truth;
  std::string light = "D65", sensor = "ordinary", size = "1600x1200", encoding;
  std::string bayer;
  std::optional<int> bits;
  std::vector<double> offset, surround;
  SimulationSettings settings;
  FlatFieldOptions flat;
};

// "1600x1200", into anything that has a width and a height.
template <typename Settings>
void parseSize(const std::string& text, Settings& settings) {
  const char* end = text.data() + text.size();
  const auto width = std::from_chars(text.data(), end, settings.width);
  if (width.ec == std::errc{} && width.ptr != end && *width.ptr == 'x') {
    const auto height = std::from_chars(width.ptr + 1, end, settings.height);
    if (height.ec == std::errc{} && height.ptr == end) return;
  }
  throw UsageError("--size: \"" + text + "\" is not WIDTHxHEIGHT in pixels, such as 1600x1200");
}

SimulationSettings settingsOf(const SimulateOptions& options) {
  SimulationSettings settings = options.settings;
  parseSize(options.size, settings);
  const auto light = illumFromName(options.light);
  if (!light) {
    std::vector<std::string> known;
    for (const Illum one : simulatedLights()) known.emplace_back(illumName(one));
    throw UsageError("--light: " + unknownName("light", options.light, known));
  }
  settings.light = *light;
  const auto sensor = modelSensorFromName(options.sensor);
  if (!sensor) {
    std::vector<std::string> known;
    for (const ModelSensor one : modelSensors()) known.emplace_back(modelSensorName(one));
    throw UsageError("--sensor: " + unknownName("sensor", options.sensor, known));
  }
  settings.sensor = *sensor;
  if (!options.offset.empty()) {
    settings.offsetX = options.offset[0];
    settings.offsetY = options.offset[1];
  }
  if (options.surround.size() == 2)
    throw UsageError("--surround takes one number for a grey or three for R,G,B, not two");
  for (std::size_t c = 0; !options.surround.empty() && c < 3; ++c)
    settings.surround[c] = options.surround[options.surround.size() == 3 ? c : 0];
  if (options.bits) settings.bits = *options.bits;
  settings.encoding = defaultEncoding(settings.bits);
  if (!options.encoding.empty())
    settings.encoding =
        options.encoding == "linear" ? SampleEncoding::linear : SampleEncoding::sRGB;
  return settings;
}

bool isDng(const std::filesystem::path& path) {
  const std::string ending = path.extension().string();
  return equalIgnoringCase(ending, ".dng");
}

// Whether a DNG is asked for, and which. \throws UsageError for options that go with the other kind
std::optional<DngForm> dngForm(const SimulateOptions& options) {
  if (!isDng(options.picture)) {
    if (!options.bayer.empty())
      throw UsageError("--bayer is for a DNG; end the name of --output in .dng");
    return std::nullopt;
  }
  if (options.encoding == "srgb") throw UsageError("--encoding: the samples of a DNG are linear");
  DngForm form;
  if (options.bits) form.bits = *options.bits;
  if (!options.bayer.empty()) form.bayer = bayerPatternFromName(options.bayer);
  return form;
}

// What `simulate` renders, with a progress bar.
template <typename Simulate>
auto render(Simulate simulate) try {
  ProgressBar bar("Rendering");
  return *simulate(bar.callback());
} catch (const std::invalid_argument& error) {
  throw UsageError(error.what());  // every setting came from the command line
}

// The truth about what was rendered.
template <typename Simulated>
void writeTruth(SimulateOptions& options, const Simulated& simulated) {
  const std::string truth = present::toJson(simulated);
  options.files.write(options.truth, truth);
  options.writeJson(truth);
}

void runFlat(SimulateOptions& options) {
  if (isJpegName(options.picture))
    throw UsageError("--output: JPEG's compression would change the noise; use .png, .tif or .pgm");
  FlatFieldSettings settings = options.flat.settings;
  parseSize(options.size, settings);
  settings.seed = options.settings.seed;
  settings.bits = options.bits.value_or(settings.bits);
  const SimulatedFlatField field = render([&](const ProgressCallback& progress) {
    return simulateFlatField(settings, options.picture, progress);
  });
  options.files.write(options.picture, field.picture,
                      ": a flat field of level " + fixed(settings.level, 1) + ", noise " +
                          fixed(settings.centreSigma, 2) + " at the centre and " +
                          fixed(settings.cornerGain, 2) + " times that in the corners");
  writeTruth(options, field);
}

void run(SimulateOptions& options) {
  const std::optional<DngForm> dng = options.flat.flat ? std::nullopt : dngForm(options);
  if (dng)
    options.files.output("--output", options.picture);
  else
    options.files.pictureOutput("--output", options.picture);
  options.files.output("--truth", options.truth);
  options.files.output("--json", options.json);
  if (options.flat.flat) return runFlat(options);

  const SimulationSettings settings = settingsOf(options);
  const SimulatedChart chart = render([&](const ProgressCallback& progress) {
    return dng ? simulateDng(settings, *dng, options.picture, progress)
               : simulateChart(settings, options.picture, progress);
  });
  const std::string shows = std::string(": the chart under ") + illumName(settings.light) + ", " +
                            modelSensorName(settings.sensor) + " sensor, patch pitch " +
                            fixed(chart.truth.pitch, 1) + " pixels";
  if (dng)
    options.files.write(options.picture, dngOf(chart), shows);
  else
    options.files.write(options.picture, chart.picture, shows);
  writeTruth(options, chart);
}

void addSceneOptions(CLI::App& app, SimulateOptions& options) {
  SimulationSettings& s = options.settings;
  CLI::Option_group& scene = *app.add_option_group("Scene");
  scene.add_option("--light", options.light, "A, D65, TL84, D50, Horizon or CoolWhite")
      ->capture_default_str()
      ->type_name("NAME");
  scene.add_option("--share", s.sizeShare, "Share of the picture that the chart takes")
      ->capture_default_str();
  scene.add_option("--offset", options.offset, "Shift from the centre, as shares of the picture")
      ->expected(2)
      ->delimiter(',')
      ->type_name("X,Y");
  scene.add_option("--rotate", s.rotationDeg, "Degrees clockwise")->capture_default_str();
  scene.add_option("--tilt", s.tiltDeg, "Degrees by which the chart's top leans away")
      ->capture_default_str();
  scene.add_option("--yaw", s.yawDeg, "Degrees by which its right side turns away")
      ->capture_default_str();
  scene
      .add_option("--surround", options.surround,
                  "What surrounds the chart, as a share of white (default 0.35)")
      ->expected(1, 3)
      ->delimiter(',')
      ->type_name("GREY|R,G,B")
      ->check(CLI::Number);
}

void addCameraOptions(CLI::App& app, SimulateOptions& options) {
  SimulationSettings& s = options.settings;
  CLI::Option_group& camera = *app.add_option_group("Camera");
  camera.add_option("--sensor", options.sensor, "ordinary, narrow, broad or colorimetric")
      ->capture_default_str()
      ->type_name("NAME");
  camera.add_option("--exposure", s.whiteShare, "Share of full scale that the white patch reaches")
      ->capture_default_str();
  camera.add_option("--vignette", s.vignetting, "Share of light lost in the corners")
      ->capture_default_str();
  camera.add_option("--blur", s.blurSigma, "Standard deviation of the blur in pixels")
      ->capture_default_str();
  camera
      .add_option(
          "--noise", s.shotNoise,
          "Standard deviation at full scale, as a share of it; falls with the root of light")
      ->capture_default_str();
  camera.add_option("--read-noise", s.readNoise, "Standard deviation without light, likewise")
      ->capture_default_str();
  camera.add_option("--seed", s.seed, "Seed of the noise")
      ->check(wholeNumbersFrom(0, INT64_MAX))
      ->capture_default_str();
}

void addPictureOptions(CLI::App& app, SimulateOptions& options) {
  SimulationSettings& s = options.settings;
  CLI::Option_group& picture = *app.add_option_group("Picture");
  picture.add_option("--size", options.size, "Pixels")
      ->capture_default_str()
      ->type_name("WIDTHxHEIGHT");
  picture.add_option("--bits", options.bits,
                     "8 (default) or 16; of a DNG 10, 12, 14 (default) or 16");
  picture
      .add_option("--bayer", options.bayer,
                  "A DNG holds one colour a pixel, in this 2x2 pattern (default: all three)")
      ->check(CLI::IsMember({"RGGB", "BGGR", "GRBG", "GBRG"}, CLI::ignore_case))
      ->type_name("PATTERN");
  CLI::Option* const encoding =
      picture
          .add_option("--encoding", options.encoding,
                      "What samples mean: srgb (default for 8 bits) or linear (default for 16 "
                      "bits)")
          ->check(oneOf({"srgb", "linear"}))
          ->type_name("NAME");
  picture
      .add_flag_callback(
          "--linear", [&options] { options.encoding = "linear"; }, "Short for --encoding linear")
      ->excludes(encoding);
  picture.add_option("--black", s.blackLevel, "Sample value without light")->capture_default_str();
  picture.add_option("--white", s.whiteLevel,
                     "Sample value of full scale (default: the most that the bits hold)");
}

}  // namespace

void addSimulate(CLI::App& parent) {
  const auto options = std::make_shared<SimulateOptions>();
  CLI::App& app = addSubCommand(
      parent, "simulate",
      "Render a photograph of the 24-patch chart (the sensor's own values, not white-balanced), "
      "or\n"
      "a flat field with known noise",
      "greycard simulate -o chart.png --truth chart.json --light A --rotate 12 --noise 0.01\n"
      "greycard simulate -o raw.dng --bayer RGGB --bits 14 --black 512\n"
      "greycard simulate -o raw.tif --bits 16 --white 4095 --black 64 --sensor colorimetric\n"
      "greycard simulate --flat -o flat.png --size 2000x1500 --sigma 3 --gain 2 --fall-off 0.3",
      *options);
  app.add_option("-o,--output", options->picture,
                 "Picture to write (.png, .tif, ..., or .dng for a raw file)")
      ->required()
      ->type_name("FILE");
  app.add_option("--truth", options->truth,
                 "JSON of the centres, corners and linear values, or of the noise")
      ->type_name("FILE");
  addSceneOptions(app, *options);
  addCameraOptions(app, *options);
  addPictureOptions(app, *options);
  options->flat.addTo(app);
  setJob(app, options, run);
}

}  // namespace greycard::cli
