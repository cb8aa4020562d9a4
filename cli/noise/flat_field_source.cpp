#include "flat_field_source.h"

#include <charconv>
#include <cstdint>
#include <limits>

#include "command.h"
#include "greycard/files.h"
#include "option_checks.h"

namespace greycard::cli {
namespace {

int wholeNumber(const std::string& text) {
  std::uint64_t value = 0;
  const char* const end = text.data() + text.size();
  const auto [at, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc{} || at != end || value == 0 ||
      value > std::numeric_limits<std::int32_t>::max())
    throw UsageError("--raw: \"" + text +
                     "\" is not a whole number above 0; give WIDTH,HEIGHT,BITS such as 640,480,8");
  return static_cast<int>(value);
}

FlatField readRaw(const FlatFieldSource& source) {
  if (!source.luma.empty()) throw UsageError("--luma means nothing for --raw samples");
  BareSamples raw;
  raw.width = static_cast<std::uint64_t>(wholeNumber(source.raw[0]));
  raw.height = static_cast<std::uint64_t>(wholeNumber(source.raw[1]));
  raw.bits = wholeNumber(source.raw[2]);
  if (raw.bits != 8 && raw.bits != 16)
    throw UsageError("--raw: samples have 8 or 16 bits, not " + source.raw[2]);
  try {
    return readFlatField(source.file, {{}, raw});
  } catch (const JobError& error) {
    throw JobError(std::string(error.what()) + "; check --raw");
  }
}

FlatField readPicture(const FlatFieldSource& source) {
  FlatFieldOptions options;
  if (!source.luma.empty())
    options.luma = source.luma == "green" ? LumaChoice::Green : LumaChoice::Rec601;
  try {
    return readFlatField(source.file, options);
  } catch (const ColourFlatField&) {
    throw JobError(quoted(source.file) +
                   " is a colour picture; say with --luma how it becomes luma: rec601 (a weighted "
                   "sum) or green (that channel alone)");
  }
}

}  // namespace

void FlatFieldSource::addTo(CLI::App& app) {
  app.add_option("flat", file, "Picture of an even surface, values of 8 bits (PNG, TIFF, ...)")
      ->required()
      ->transform(inputFile())
      ->type_name("FLATFIELD");
  app.add_option("--luma", luma, "What to take of a colour picture: rec601 or green")
      ->check(CLI::IsMember({"rec601", "green"}))
      ->type_name("NAME");
  app.add_option("--raw", raw, "The file holds bare samples of 8 or 16 bits, low byte first")
      ->expected(3)
      ->delimiter(',')
      ->type_name("WIDTH,HEIGHT,BITS");
}

FlatField FlatFieldSource::read() const {
  return raw.empty() ? readPicture(*this) : readRaw(*this);
}

}  // namespace greycard::cli
