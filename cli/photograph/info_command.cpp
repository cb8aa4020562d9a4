// greycard info: what a photograph is and what its samples are taken for.

#include <filesystem>
#include <iostream>
#include <memory>

#include "command.h"
#include "greycard/files.h"
#include "greycard/number_text.h"
#include "greycard/present/photograph.h"
#include "option_checks.h"
#include "sample_options.h"
#include "sub_commands.h"
#include "text_table.h"

namespace greycard::cli {
namespace {

struct InfoOptions : CommonOptions {
  std::filesystem::path photo;
  SampleOptions samples;
};

std::string infoText(const PhotographInfo& info) {
  const SampleLevels& levels = info.levels;
  TextTable table({{"", TextTable::Align::Left}, {"", TextTable::Align::Left}});
  table.addRow({"File", quoted(info.file) + ", " + info.format});
  table.addRow({"Picture", std::to_string(info.width) + " x " + std::to_string(info.height) +
                               " pixels, " + (info.channels == 1 ? "grey" : "R, G, B") + ", " +
                               std::to_string(info.bits) + " bits"});
  table.addRow({"Samples",
                std::string(levels.encoding == SampleEncoding::sRGB ? "sRGB-encoded" : "linear") +
                    ", " + general(levels.blackLevel, 6) + " to " + general(levels.whiteLevel, 6)});
  if (info.capture)
    for (const auto& [name, value] : captureRows(*info.capture)) table.addRow({name, value});
  return table.text();
}

void run(InfoOptions& options) {
  options.files.input("PHOTO", options.photo);
  options.files.output("--json", options.json);
  const PhotographInfo info = describePhotograph(options.samples.read(options.photo));
  options.writeJson(present::toJson(info));
  if (!options.printsText()) return;
  std::cout << infoText(info);
  options.printWarnings(info.warnings);
}

}  // namespace

void addInfo(CLI::App& parent) {
  const auto options = std::make_shared<InfoOptions>();
  CLI::App& app = addSubCommand(
      parent, "info",
      "What a photograph is: format, size, what its samples are taken for, and of raw files the\n"
      "camera, sensor, exposure, levels and the camera's own white balance",
      "greycard info capture.dng --json capture.json\n"
      "greycard info capture.raw --dump 4000x3000:12p:RGGB --black 256",
      *options);
  app.add_option("photo", options->photo, "Photograph, raw or not")
      ->required()
      ->transform(inputFile())
      ->type_name("PHOTO");
  options->samples.addTo(app);
  setJob(app, options, run);
}

}  // namespace greycard::cli
