#include "chart_source.h"

#include <stdexcept>

#include "command.h"
#include "option_checks.h"

namespace greycard::cli {

void ChartSource::addTo(CLI::App& app, bool regionsFromFile) {
  app.add_option("photo", photo, "Photograph of a 24-patch chart (PNG, TIFF, JPEG, ...)")
      ->required()
      ->type_name("PHOTO");
  if (regionsFromFile)
    app.add_option("--regions", locate.regions,
                   "Take the patches from this region file instead of looking for the chart")
        ->type_name("FILE");
  addSampleOptions(app);
}

void ChartSource::addSampleOptions(CLI::App& app) {
  app.add_option("--encoding", encoding,
                 "What samples mean: srgb (default for 8 bits) or linear (default for 16 bits)")
      ->check(CLI::IsMember({"srgb", "linear"}))
      ->type_name("NAME");
  app.add_option("--black", locate.samples.blackLevel, "Sample value without light (default 0)")
      ->check(anyFiniteNumber())
      ->type_name("LEVEL");
  app.add_option("--white", locate.samples.whiteLevel,
                 "Sample value of full scale (default 255 or 65535; 4095 for 12 bits)")
      ->check(anyFiniteNumber())
      ->type_name("LEVEL");
  app.add_flag("--force", locate.force, "Go on with a fit of the chart that is in doubt");
}

void ChartSource::nameFiles(JobFiles& files) const {
  files.input("the photograph", photo);
  files.input("--regions", locate.regions);
}

LocateOptions ChartSource::options() const {
  LocateOptions options = locate;
  if (encoding)
    options.samples.encoding = *encoding == "srgb" ? SampleEncoding::sRGB : SampleEncoding::linear;
  return options;
}

Picture ChartSource::read() const {
  Picture picture = readPicture(photo);
  try {
    sampleLevels(picture, locate.samples);
  } catch (const std::invalid_argument&) {
    throw UsageError("--white must be above --black");
  }
  return picture;
}

}  // namespace greycard::cli
