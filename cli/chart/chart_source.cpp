#include "chart_source.h"

#include <cmath>
#include <stdexcept>

#include "command.h"
#include "greycard/number_text.h"
#include "option_checks.h"

namespace greycard::cli {
namespace {

constexpr std::size_t kCorners = 4;

void addPlaceOptions(CLI::App& app, ChartSource& source, int photos) {
  CLI::Option_group& place = *app.add_option_group("Place of the chart");
  CLI::Option* corners =
      place
          .add_option(
              "--corners", source.corners,
              "The chart is here instead of looking for it: its patch field's outer corners "
              "at patches 1, 6, 24 and 19 in pixels, moved to the patches seen there" +
                  std::string(photos > 1 ? "; four for all photographs, or four for each" : ""))
          ->type_name("X,Y");
  corners->expected(kCorners, static_cast<int>(kCorners) * photos);
  place
      .add_option("--corners-of", source.cornersOf,
                  "What the corners are: those of the patch field, or the centres of the four "
                  "patches")
      ->check(oneOf({"field", "patches"}))
      ->needs(corners)
      ->capture_default_str()
      ->type_name("field|patches");
  place
      .add_option("--method", source.method,
                  "Search: lattice (flat regions in a grid), stated (dark-framed squares), or both")
      ->check(oneOf({"both", "lattice", "stated"}))
      ->excludes(corners)
      ->capture_default_str()
      ->type_name("NAME");
  place
      .add_option("--within", source.within,
                  "Look in this part of the photograph only, as for one chart of several: left, "
                  "top, width and height in pixels")
      ->excludes(corners)
      ->type_name("X,Y,W,H");
  place
      .add_option("--share", source.locate.sampledShare,
                  "Part of each patch's side that is sampled, in its middle")
      ->check(numbersFrom(0.05, 1.0))
      ->capture_default_str()
      ->type_name("SHARE");
  place.add_flag("--force", source.locate.force, "Go on with a chart that is in doubt");
}

// As many numbers as are wanted. \param example  says what is
std::vector<double> pixelsOf(const char* option, const std::string& word, std::size_t count,
                             const char* example) {
  std::vector<double> numbers;
  try {
    numbers = finiteNumbers(word);
  } catch (const std::invalid_argument&) {
    numbers.clear();
  }
  if (numbers.size() != count)
    throw UsageError(std::string(option) + " \"" + word + "\" is not " + example);
  return numbers;
}

Point2 pointOf(const std::string& word) {
  const auto xy = pixelsOf("--corners", word, 2, "a place in pixels; write X,Y as in 120,85");
  return {xy[0], xy[1]};
}

PatchRegion partOf(const std::string& word) {
  const auto part = pixelsOf("--within", word, 4,
                             "a part of a photograph; write X,Y,WIDTH,HEIGHT as in 40,0,640,480");
  return {part[0], part[1], part[2], part[3]};
}

}  // namespace

void ChartSource::addTo(CLI::App& app) {
  app.add_option("photo", photo,
                 "Photograph of a 24-patch chart (PNG, TIFF, JPEG, DNG and other raw files, ...)")
      ->required()
      ->transform(inputFile())
      ->type_name("PHOTO");
  app.add_option("--regions", locate.regions,
                 "Take the patches from this region file instead of looking for the chart")
      ->type_name("FILE");
  addSharedOptions(app, 1);
}

void ChartSource::addSharedOptions(CLI::App& app, int photos) {
  samples.addTo(app);
  addPlaceOptions(app, *this, photos);
}

void ChartSource::nameFiles(JobFiles& files) const {
  files.input("the photograph", photo);
  files.input("--regions", locate.regions);
}

LocateOptions ChartSource::options(std::size_t photograph) const {
  LocateOptions options = locate;
  options.samples = samples.meaning();
  if (method != "both")
    options.method = method == "lattice" ? SearchMethods::Lattice : SearchMethods::Stated;
  options.cornersOf = cornersOf == "field" ? CornerKind::PatchField : CornerKind::PatchCentres;
  if (!within.empty()) {
    if (!locate.regions.empty())
      throw UsageError("--regions says where the chart is; leave out --within");
    options.within = partOf(within);
  }
  if (corners.empty()) return options;
  if (!locate.regions.empty())
    throw UsageError("--regions and --corners both say where the chart is; give one of them");
  const std::size_t first = corners.size() > kCorners ? kCorners * photograph : 0;
  if (corners.size() < first + kCorners || corners.size() % kCorners != 0)
    throw UsageError("--corners are four for all photographs or four for each, not " +
                     std::to_string(corners.size()));
  auto& points = options.corners.emplace();
  for (std::size_t i = 0; i < kCorners; ++i) points[i] = pointOf(corners[first + i]);
  return options;
}

std::string nextStep(ChartRefusal refusal) {
  switch (refusal) {
    case ChartRefusal::NoPatches:
    case ChartRefusal::NoGrid:
    case ChartRefusal::OtherColours:
    case ChartRefusal::Covered:
      return " (--corners says where it is; greycard chart --annotate shows what was seen)";
    default:
      return {};
  }
}

}  // namespace greycard::cli
