#pragma once
/// \file
/// \ingroup own

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "greycard/gamma_curve.h"

namespace greycard {

/// A remark on one place of a curve file.
struct GammaImportNote {
  std::size_t line = 0;                 ///< from 1; 0 when it is about the whole file
  std::string token;                    ///< the word it is about, as it stands there; may be empty
  std::string text;                     ///< one sentence without the file's name and line
  std::optional<std::size_t> column{};  ///< of the word in its line, from 1, where it is known
};

/// What an import made of a curve file.
struct GammaImport {
  /// One table of numbers as it stood in the file.
  struct Table {
    std::size_t numbers = 0;
    std::int32_t bits = 0;  ///< 8, 10, 12 or 14 as its last number tells; 0 for an unusable table
  };

  GammaCurvePtr curve;                     ///< in the catalogue now; absent when refused
  std::optional<GammaImportNote> refusal;  ///< why there is no curve; absent when there is one
  std::vector<GammaImportNote> notes;      ///< what was left out or may surprise, in file order
  std::array<Table, 3> tables;             ///< red (or all channels), green, blue
};

}  // namespace greycard
