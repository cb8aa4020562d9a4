#pragma once

// The text file in which a tone curve is exchanged: number lists, each after its keyword.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "token_stream.h"

namespace greycard {

/// The lists of a file: the tables of R (or all channels), G and B, then the points of the same.
inline constexpr std::size_t kCurveFileLists = 6, kFirstPointList = 3;

/// Written before the first list of a kind in a unified curve; a per-channel curve has "R:", "G:"
/// or "B:" in place of the colon.
inline constexpr std::string_view kTableKeyword = "GammaTableV2",
                                  kPointsKeyword = "GammaControlPointsV2";

struct CurveFileList {
  bool present = false;
  std::size_t line = 0;  ///< of the keyword that opened it, or of its first number
  std::string opener;    ///< that keyword; empty when the file began with numbers
  std::vector<std::int32_t> numbers;
};

/// A token that means nothing in a curve file.
struct UnknownToken {
  std::size_t line;
  std::string token;  ///< its first bytes
};

struct CurveFileContents {
  static constexpr std::size_t kUnknownTokensKept = 5;

  std::array<CurveFileList, kCurveFileLists> lists;
  std::vector<UnknownToken> firstUnknown;  ///< at most kUnknownTokensKept
  std::size_t unknownTokens = 0;
};

/// Collects the lists of a file. Never fails: what is neither a keyword nor a 32-bit whole number
/// is counted and skipped.
CurveFileContents readCurveFile(TokenStream& tokens);

}  // namespace greycard
