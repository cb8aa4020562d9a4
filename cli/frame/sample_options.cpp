#include "sample_options.h"

#include <stdexcept>

#include "command.h"
#include "greycard/files.h"
#include "option_checks.h"

namespace greycard::cli {

void SampleOptions::addTo(CLI::App& app) {
  app.add_option("--encoding", m_encoding,
                 "What samples mean: srgb (default for 8 bits) or linear (default for 16 bits and "
                 "raw files)")
      ->check(oneOf({"srgb", "linear"}))
      ->type_name("NAME");
  app.add_option("--black", m_levels.blackLevel,
                 "Sample value without light (default 0, or what a raw file says)")
      ->check(anyFiniteNumber())
      ->type_name("LEVEL");
  app.add_option("--white", m_levels.whiteLevel,
                 "Sample value of full scale (default 255, 65535 or what a raw file says; 4095 for "
                 "12 bits)")
      ->check(anyFiniteNumber())
      ->type_name("LEVEL");
  app.add_option("--dump", m_dump,
                 "Photographs are a sensor's samples without a header: size, bits (8 to 16, low "
                 "byte first; 10p or 12p packed), pattern such as RGGB, bytes before them, bytes "
                 "from row to row")
      ->type_name("WxH:BITS:PATTERN[:OFFSET[:STRIDE]]");
}

SampleMeaning SampleOptions::meaning() const {
  SampleMeaning meaning = m_levels;
  if (!m_encoding.empty())
    meaning.encoding = m_encoding == "srgb" ? SampleEncoding::sRGB : SampleEncoding::linear;
  return meaning;
}

std::optional<DumpLayout> SampleOptions::dump() const {
  if (m_dump.empty()) return std::nullopt;
  try {
    return dumpLayoutFromText(m_dump);
  } catch (const std::invalid_argument& error) {
    throw UsageError(std::string("--dump: ") + error.what());
  }
}

PhotographOptions SampleOptions::reading() const {
  const auto &black = m_levels.blackLevel, &white = m_levels.whiteLevel;
  if (black && white && *white <= *black) throw UsageError("--white must be above --black");
  return {meaning(), dump()};
}

Photograph SampleOptions::read(const std::filesystem::path& file) const {
  const PhotographOptions options = reading();
  try {
    Photograph photograph = readPhotograph(file, options);
    sampleLevels(photograph.picture, photograph.samples);
    return photograph;
  } catch (const std::invalid_argument& error) {
    if (m_levels.blackLevel || m_levels.whiteLevel)
      throw UsageError("--white must be above --black");
    throw JobError("can't read " + quoted(file) + ": " + error.what());
  }
}

}  // namespace greycard::cli
