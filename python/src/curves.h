#pragma once

// Tables and point lists that a curve shares with its host.

#include <pybind11/pybind11.h>

#include <utility>

#include "greycard/gamma_curve.h"
#include "greycard/gamma_curve_model.h"

namespace greycard::python {

/// What Python holds of a shared table; as a parameter or result None is the absent one.
struct TableHandle {
  GammaTablePtr shared;
};
struct PointsHandle {
  ControlPointListPtr shared;
};

/// Fills the catalogue's class, which bindGammaCurve declares, and binds what goes with it.
void bindGammaModel(pybind11::module_& m, pybind11::class_<GammaCurveModel>& bound);

}  // namespace greycard::python

namespace pybind11::detail {

template <typename Handle, typename Shared>
struct shared_caster {
  bool load(handle source, bool) {
    if (source.is_none()) return true;
    if (!isinstance<Handle>(source)) return false;
    value = source.cast<const Handle&>().shared;
    return true;
  }
  static handle cast(const Shared& shared, return_value_policy, handle) {
    if (!shared) return none().release();
    return pybind11::cast(Handle{shared}).release();
  }
  operator Shared*() { return &value; }
  operator Shared&() { return value; }
  operator Shared&&() && { return std::move(value); }
  template <typename T>
  using cast_op_type = movable_cast_op_type<T>;

 private:
  Shared value;
};

template <>
struct type_caster<greycard::GammaTablePtr>
    : shared_caster<greycard::python::TableHandle, greycard::GammaTablePtr> {
  static constexpr auto name =
      const_name("Optional[") + make_caster<greycard::python::TableHandle>::name + const_name("]");
};
template <>
struct type_caster<greycard::ControlPointListPtr>
    : shared_caster<greycard::python::PointsHandle, greycard::ControlPointListPtr> {
  static constexpr auto name =
      const_name("Optional[") + make_caster<greycard::python::PointsHandle>::name + const_name("]");
};

}  // namespace pybind11::detail
