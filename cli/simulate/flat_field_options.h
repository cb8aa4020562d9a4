#pragma once

#include <CLI/CLI.hpp>

#include "greycard/flat_field_simulator.h"

namespace greycard::cli {

/// What `greycard simulate --flat` renders, but for the size, bits and seed, which charts have too.
struct FlatFieldOptions {
  bool flat = false;
  FlatFieldSettings settings;

  /// To be called after the chart's options: --flat excludes those that mean nothing for it.
  void addTo(CLI::App& app);
};

}  // namespace greycard::cli
