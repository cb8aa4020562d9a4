#pragma once

// A tone curve as a file of somebody's holds it, before it becomes a table of the catalogue.

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "greycard/gamma_import.h"

namespace greycard::reading {

inline constexpr std::size_t kFewestEntries = 2, kMostEntries = 65536;

/// A number with its place in the text, both from 1.
struct Located {
  double value = 0.0;
  std::size_t line = 0, column = 0;
};

struct RawCurve {
  /// Without inputs the outputs lie at equal steps.
  struct Channel {
    std::vector<Located> inputs, outputs;
  };
  std::vector<Channel> channels;  ///< one for all, or red, green and blue
  std::optional<int> bits;        ///< of the outputs, where the file tells
  /// Full scale of the inputs, where the file tells; else the last one, or 1 when none is above.
  std::optional<double> lastInput;
  bool clipsOutputs = false;  ///< outputs are fractions, and what lies outside 0..1 is clipped
  std::vector<GammaImportNote> notes;
};

/// Why a text gives no curve, with the place.
class Refusal : public std::runtime_error {
 public:
  explicit Refusal(GammaImportNote note) : std::runtime_error(note.text), m_note(std::move(note)) {}
  /// Line and column from 1; 0 for none.
  Refusal(std::size_t line, std::size_t column, std::string_view word, std::string text);
  const GammaImportNote& note() const { return m_note; }

 private:
  GammaImportNote m_note;
};

/// The word, or its first bytes, for a note.
std::string keptWord(std::string_view word);

/// A decimal number, or a whole one in hexadecimal digits after 0x; empty for any other word.
std::optional<double> numberIn(std::string_view word);

/// The readers, one a form. \throws Refusal
RawCurve readCube(std::string_view text);
RawCurve readCArrays(std::string_view text);
RawCurve readJson(std::string_view text);
RawCurve readYaml(std::string_view text);
/// Whether the numbers stand in two to four columns; never refuses.
bool standsInColumns(std::string_view text);
/// Numbers one after the other, or in one to four columns: values; inputs and outputs; red, green
/// and blue; inputs, red, green and blue.
RawCurve readNumbers(std::string_view text);

}  // namespace greycard::reading
