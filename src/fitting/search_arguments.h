#pragma once

// The checks at the door of NLoptHelper. Each throws std::invalid_argument whose text begins with
// `call` (the method) and names the argument.

#include <cstddef>
#include <span>
#include <string>

#include "greycard/nlopt_helper.h"

namespace greycard {

[[noreturn]] void refuseArgument(const std::string& call, const std::string& argument,
                                 const std::string& trouble);

/// At least `count` values, the first `count` of them finite.
void requireFinite(const char* call, const char* argument, std::span<const double> values,
                   std::size_t count);

void requireFinite(const char* call, const char* argument, double value);

/// At least `count` rows.
void requireLength(const char* call, const char* argument, std::size_t length, std::size_t count);

/// Histograms of `count` images, finite.
void requireHistograms(const char* call, const char* argument,
                       std::span<const ChannelHistograms> histograms, std::size_t count);

/// lowerBound <= initialBound <= upperBound, entry by entry; all three finite and long enough.
void requireStartWithinBounds(const char* call, std::span<const double> lowerBound,
                              std::span<const double> upperBound,
                              std::span<const double> initialBound);

/// None negative, not all 0, and a finite sum.
void requireWeights(const char* call, std::span<const double> Weight);

/// Limits that are 0 or above.
void requireLimits(const char* call, const SearchOptions& options);

}  // namespace greycard
