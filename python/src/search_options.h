#pragma once

// SearchOptions in Python: its progress is a callable there.

#include <cstdint>

#include "bindings.h"
#include "greycard/nlopt_helper.h"

namespace greycard::python {

struct HeldOptions {
  std::uint32_t seed = SearchOptions::kDefaultSeed;
  double maxSeconds = SearchOptions().maxSeconds;
  int maxEvaluations = 0;
  ProgressArg progress;

  SearchOptions with(const ProgressCallback& callback) const {
    return {seed, maxSeconds, maxEvaluations, callback};
  }
  static HeldOptions of(const SearchOptions& options) {
    return {options.seed, options.maxSeconds, options.maxEvaluations, {}};
  }
};

/// As a field it is copied, and has no progress.
template <>
struct IsCopied<SearchOptions> : std::true_type {};

}  // namespace greycard::python

namespace pybind11::detail {

template <>
struct type_caster<greycard::SearchOptions> {
  PYBIND11_TYPE_CASTER(greycard::SearchOptions, const_name("SearchOptions"));
  bool load(handle source, bool convert) {
    make_caster<greycard::python::HeldOptions> held;
    if (source.is_none() || !held.load(source, convert)) return false;
    value = cast_op<const greycard::python::HeldOptions&>(held).with({});
    return true;
  }
  static handle cast(const greycard::SearchOptions& options, return_value_policy, handle) {
    return pybind11::cast(greycard::python::HeldOptions::of(options)).release();
  }
};

}  // namespace pybind11::detail
