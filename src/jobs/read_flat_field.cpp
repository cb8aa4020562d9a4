#include "greycard/jobs/read_flat_field.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>
#include <utility>

#include "greycard/files.h"
#include "greycard/luma.h"
#include "greycard/photograph.h"

namespace greycard {
namespace {

FlatField readBareSamples(const std::filesystem::path& file, const BareSamples& raw) {
  if (raw.bits != 8 && raw.bits != 16)
    throw std::invalid_argument("bare samples have 8 or 16 bits, not " + std::to_string(raw.bits));
  const std::string bytes = readWholeFile(file);
  const std::uint64_t perSample = raw.bits == 8 ? 1 : 2, count = bytes.size() / perSample;
  if (raw.width == 0 || bytes.size() % perSample != 0 || count % raw.width != 0 ||
      count / raw.width != raw.height || count == 0)
    throw JobError(quoted(file) + " holds " + std::to_string(bytes.size()) +
                   " bytes, which is not " + std::to_string(raw.width) + " x " +
                   std::to_string(raw.height) + " samples of " + std::to_string(raw.bits) +
                   " bits");
  FlatField field{file, raw.width, raw.height, {}, false};
  field.samples.reserve(count);
  for (std::size_t i = 0; i < bytes.size(); i += perSample) {
    const auto low = static_cast<unsigned char>(bytes[i]);
    const auto high = perSample == 1 ? 0U : static_cast<unsigned char>(bytes[i + 1]);
    field.samples.push_back(static_cast<std::uint16_t>(low | high << 8U));
  }
  return field;
}

void check(const Picture& picture) {
  const bool agrees = picture.width > 0 && picture.height > 0 &&
                      (picture.channels == 1 || picture.channels == 3) &&
                      picture.samples.size() == static_cast<std::size_t>(picture.width) *
                                                    static_cast<std::size_t>(picture.height) *
                                                    static_cast<std::size_t>(picture.channels);
  if (!agrees)
    throw std::invalid_argument("a flat field is empty or its size and samples disagree");
}

// Brings the samples to 8 bits.
void scale(FlatField& field, double black, double white) {
  constexpr double kMost = 255.0;
  if (!(std::isfinite(black) && std::isfinite(white) && white > black))
    throw std::invalid_argument("the white level of a flat field must be above its black level");
  field.fileCodes = (white - black) / kMost;
  for (std::uint16_t& sample : field.samples)
    sample = static_cast<std::uint16_t>(
        std::clamp(std::round((sample - black) / field.fileCodes), 0.0, kMost));
}

}  // namespace

FlatField flatField(Picture picture, const std::optional<LumaChoice>& luma,
                    const std::filesystem::path& file) {
  check(picture);
  FlatField field{file,
                  static_cast<std::uint64_t>(picture.width),
                  static_cast<std::uint64_t>(picture.height),
                  {},
                  isJpegName(file)};
  if (picture.channels == 1) {
    field.samples = std::move(picture.samples);
    return field;
  }
  if (!luma)
    throw ColourFlatField((file.empty() ? "the flat field" : quoted(file)) +
                          " is a colour picture; say how it becomes luma: rec601 (a weighted sum) "
                          "or green (that channel alone)");
  field.samples.reserve(picture.samples.size() / 3);
  for (std::size_t i = 0; i < picture.samples.size(); i += 3)
    field.samples.push_back(*luma == LumaChoice::Green ? picture.samples[i + 1]
                                                       : luma601(&picture.samples[i]));
  return field;
}

FlatField readFlatField(const std::filesystem::path& file, const FlatFieldOptions& options) {
  if (options.bits && (*options.bits < 8 || *options.bits > 16))
    throw std::invalid_argument("samples of a flat field have 8 to 16 bits, not " +
                                std::to_string(*options.bits));
  std::optional<double> black = options.black, white = options.white;
  if (!white && options.bits) white = static_cast<double>((1U << *options.bits) - 1U);
  FlatField field;
  if (options.raw) {
    field = readBareSamples(file, *options.raw);
  } else {
    Photograph photograph = readPhotograph(file, {{{}, black, white}, {}});
    if (photograph.capture) black = 0.0, white = photograph.picture.ceiling();
    field = flatField(std::move(photograph.picture), options.luma, file);
    field.warnings = std::move(photograph.warnings);
  }
  if (black || white) scale(field, black.value_or(0.0), white.value_or(255.0));
  return field;
}

}  // namespace greycard
