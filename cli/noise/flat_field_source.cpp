#include "flat_field_source.h"

#include <charconv>
#include <limits>

#include "command.h"
#include "greycard/files.h"
#include "greycard/names.h"
#include "greycard/picture.h"

namespace greycard::cli {
namespace {

std::uint64_t wholeNumber(const std::string& text) {
  std::uint64_t value = 0;
  const char* const end = text.data() + text.size();
  const auto [at, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc{} || at != end || value == 0 ||
      value > std::numeric_limits<std::int32_t>::max())
    throw UsageError("--raw: \"" + text +
                     "\" is not a whole number above 0; give WIDTH,HEIGHT,BITS such as 640,480,8");
  return value;
}

LumaPlane readRaw(const FlatFieldSource& source) {
  if (!source.luma.empty()) throw UsageError("--luma means nothing for --raw samples");
  LumaPlane plane{wholeNumber(source.raw[0]), wholeNumber(source.raw[1]), {}};
  const std::uint64_t bits = wholeNumber(source.raw[2]);
  if (bits != 8 && bits != 16)
    throw UsageError("--raw: samples have 8 or 16 bits, not " + source.raw[2]);
  const std::string bytes = readWholeFile(source.file);
  const std::uint64_t perSample = bits / 8, samples = bytes.size() / perSample;
  if (bytes.size() % perSample != 0 || samples % plane.width != 0 ||
      samples / plane.width != plane.height)
    throw JobError(quoted(source.file) + " holds " + std::to_string(bytes.size()) +
                   " bytes, which is not " + source.raw[0] + " x " + source.raw[1] +
                   " samples of " + source.raw[2] + " bits; check --raw");
  plane.samples.reserve(samples);
  for (std::size_t i = 0; i < bytes.size(); i += perSample) {
    const auto low = static_cast<unsigned char>(bytes[i]);
    const auto high = perSample == 1 ? 0U : static_cast<unsigned char>(bytes[i + 1]);
    plane.samples.push_back(static_cast<std::uint16_t>(low | high << 8U));
  }
  return plane;
}

// ITU-R BT.601-7, section 2.5.1, rounded half up.
std::uint16_t rec601(const std::uint16_t* rgb) {
  constexpr std::uint32_t kRed = 299, kGreen = 587, kBlue = 114, kAll = 1000;
  return static_cast<std::uint16_t>((kRed * rgb[0] + kGreen * rgb[1] + kBlue * rgb[2] + kAll / 2) /
                                    kAll);
}

LumaPlane readLuma(const FlatFieldSource& source) {
  Picture picture = readPicture(source.file);
  LumaPlane plane{
      static_cast<std::uint64_t>(picture.width), static_cast<std::uint64_t>(picture.height), {}};
  plane.isJpeg = isJpegName(source.file);
  if (picture.channels == 1) {
    plane.samples = std::move(picture.samples);
    return plane;
  }
  if (source.luma.empty())
    throw JobError(quoted(source.file) +
                   " is a colour picture; say with --luma how it becomes luma: rec601 (a weighted "
                   "sum) or green (that channel alone)");
  plane.samples.reserve(picture.samples.size() / 3);
  for (std::size_t i = 0; i < picture.samples.size(); i += 3)
    plane.samples.push_back(source.luma == "green" ? picture.samples[i + 1]
                                                   : rec601(&picture.samples[i]));
  return plane;
}

}  // namespace

void FlatFieldSource::addTo(CLI::App& app) {
  app.add_option("flat", file, "Picture of an even surface, values of 8 bits (PNG, TIFF, ...)")
      ->required()
      ->type_name("FLATFIELD");
  app.add_option("--luma", luma, "What to take of a colour picture: rec601 or green")
      ->check(CLI::IsMember({"rec601", "green"}))
      ->type_name("NAME");
  app.add_option("--raw", raw, "The file holds bare samples of 8 or 16 bits, low byte first")
      ->expected(3)
      ->delimiter(',')
      ->type_name("WIDTH,HEIGHT,BITS");
}

LumaPlane FlatFieldSource::read() const {
  return raw.empty() ? readLuma(*this) : readRaw(*this);
}

}  // namespace greycard::cli
