#include "flat_field_source.h"

#include <charconv>
#include <cstdint>
#include <limits>
#include <stdexcept>

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

BareSamples bareSamples(const FlatFieldSource& source) {
  if (!source.luma.empty()) throw UsageError("--luma means nothing for --raw samples");
  BareSamples raw;
  raw.width = static_cast<std::uint64_t>(wholeNumber(source.raw[0]));
  raw.height = static_cast<std::uint64_t>(wholeNumber(source.raw[1]));
  raw.bits = wholeNumber(source.raw[2]);
  if (raw.bits != 8 && raw.bits != 16)
    throw UsageError("--raw: samples have 8 or 16 bits, not " + source.raw[2]);
  return raw;
}

}  // namespace

void FlatFieldSource::addTo(CLI::App& app) {
  app.add_option("flat", file, "Picture of an even surface, values of 8 bits (PNG, TIFF, ...)")
      ->required()
      ->transform(inputFile())
      ->type_name("FLATFIELD");
  app.add_option("--luma", luma, "What to take of a colour picture: rec601 or green")
      ->check(oneOf({"rec601", "green"}))
      ->type_name("NAME");
  app.add_option("--raw", raw, "The file holds bare samples of 8 or 16 bits, low byte first")
      ->expected(3)
      ->delimiter(',')
      ->type_name("WIDTH,HEIGHT,BITS");
  app.add_option("--black", levels.black, "Sample value without light, which becomes 0")
      ->check(anyFiniteNumber())
      ->type_name("LEVEL");
  app.add_option("--white", levels.white, "Sample value of full scale, which becomes 255")
      ->check(anyFiniteNumber())
      ->type_name("LEVEL");
  app.add_option("--bits", levels.bits,
                 "Bits of a sample, 8 to 16: full scale is the most that they hold")
      ->check(wholeNumbersFrom(8, 16))
      ->type_name("N");
}

FlatFieldOptions FlatFieldSource::options() const {
  FlatFieldOptions options = levels;
  if (levels.bits && levels.white)
    throw UsageError("--bits and --white both tell full scale; give one of them");
  if (!raw.empty()) options.raw = bareSamples(*this);
  if (!luma.empty()) options.luma = luma == "green" ? LumaChoice::Green : LumaChoice::Rec601;
  return options;
}

FlatField FlatFieldSource::read() const try {
  return readFlatField(file, options());
} catch (const ColourFlatField&) {
  throw JobError(quoted(file) +
                 " is a colour picture; say with --luma how it becomes luma: rec601 (a weighted "
                 "sum) or green (that channel alone)");
} catch (const std::invalid_argument&) {
  throw UsageError("--white must be above --black");
} catch (const JobError& error) {
  if (raw.empty()) throw;
  throw JobError(std::string(error.what()) + "; check --raw");
}

}  // namespace greycard::cli
