#pragma once

// NumPy arrays and the library's numbers. What is only read may be any array or sequence whose
// numbers fit; what is changed in place must be the very array. Refusals name what was given and
// what is wanted: TypeError for a wrong kind of numbers, ValueError for shape, layout and range.

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

#include <array>
#include <concepts>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <vector>

#include "greycard/awb_utils.h"
#include "greycard/lut2d_cfg.h"
#include "greycard/patch_sampler.h"
#include "greycard/picture.h"
#include "greycard/types.h"

namespace greycard::python {

namespace py = pybind11;

template <typename T>
concept Number = std::is_arithmetic_v<T> && !std::same_as<T, char>;

/// Lengths of an array's axes; kAnyLength fits all. kAnyShape alone fits any number of axes too.
using Shape = std::vector<py::ssize_t>;
inline constexpr py::ssize_t kAnyLength = -1, kAnyShape = -2;

/// "an array of float32, 4 x 5", "a str", "None".
std::string described(py::handle given);

/// \throws py::type_error / py::value_error: "<noun>: <given>; wanted <wanted>"
[[noreturn]] void refuseType(py::handle given, const std::string& noun, const std::string& wanted);
[[noreturn]] void refuseValue(py::handle given, const std::string& noun, const std::string& wanted);

/// Whether the array's axes are as long as wanted.
bool hasShape(const py::array& array, const Shape& shape);

/// The numbers as a C-contiguous array of `wanted`, the same object where it is one already; whole
/// numbers must fit. Floating-point numbers may come from whole ones, not the other way round.
py::array readNumbers(py::handle given, const std::string& noun, const py::dtype& wanted,
                      const Shape& shape);
/// The given array itself, which must be a writable C-contiguous one of exactly that dtype.
py::array changeNumbers(py::handle given, const std::string& noun, const py::dtype& wanted,
                        const Shape& shape);

/// A picture from an array of uint8 or uint16, height x width or height x width x 3 (R, G, B),
/// C-contiguous; copied, without the interpreter lock.
Picture pictureFrom(py::handle array);
/// The picture whose samples, all of them and of 16 bits, the array is; null for any other.
const Picture* pictureBehind(py::handle array);
/// The samples as an array of uint8 or uint16 that keeps `owner` alive: 16-bit samples are the
/// picture's own memory, 8-bit ones a copy.
py::array arrayOf(const Picture& picture, py::handle owner);
/// The same of a picture that the array takes over.
py::array arrayOf(Picture&& picture);

/// A parameter of numbers that are only read: a caller's sequence until `read` names it.
template <Number T>
class In {
 public:
  py::object given;

  /// Valid as long as this object. \param shape  any one row of numbers at first
  std::span<const T> read(const char* name, const Shape& shape = {kAnyLength}) {
    array_ = readNumbers(given, name, py::dtype::of<T>(), shape);
    return {static_cast<const T*>(array_.data()), static_cast<std::size_t>(array_.size())};
  }

 private:
  py::array array_;
};

/// A parameter of numbers that are changed in place.
template <Number T>
class InOut {
 public:
  py::object given;

  std::span<T> change(const char* name, const Shape& shape = {kAnyLength}) {
    py::array array = changeNumbers(given, name, py::dtype::of<T>(), shape);
    return {static_cast<T*>(array.mutable_data()), static_cast<std::size_t>(array.size())};
  }
};

/// Structs that are nothing but numbers are an axis of an array when many of them stand in a row.
template <typename Row>
struct RowTraits {
  static constexpr std::size_t numbers = 0;
};
template <Number T, typename Row>
struct RowOf {
  using Element = T;
  static constexpr std::size_t numbers = sizeof(Row) / sizeof(T);
};
template <>
struct RowTraits<Point2> : RowOf<double, Point2> {};  // x, y
template <>
struct RowTraits<PatchRegion> : RowOf<double, PatchRegion> {};  // left, top, width, height
template <>
struct RowTraits<ChannelClipping> : RowOf<double, ChannelClipping> {};  // ceiling, floor
template <>
struct RowTraits<WhiteBalancePoint> : RowOf<double, WhiteBalancePoint> {};  // rg, bg
template <>
struct RowTraits<Lut2dPair> : RowOf<float, Lut2dPair> {};  // h, s

/// Fixed tables of numbers, such as Vector3, Matrix3 and PatchTable: their number and their shape.
template <typename Table>
struct TableTraits {
  static constexpr bool isTable = false;
};
template <typename Row, std::size_t N>
requires(RowTraits<Row>::numbers > 0) struct TableTraits<std::array<Row, N>> {
  using Element = typename RowTraits<Row>::Element;
  static constexpr bool isTable = true;
  static Shape shape() {
    return {static_cast<py::ssize_t>(N), static_cast<py::ssize_t>(RowTraits<Row>::numbers)};
  }
};
template <Number T, std::size_t N>
struct TableTraits<std::array<T, N>> {
  using Element = T;
  static constexpr bool isTable = true;
  static Shape shape() { return {static_cast<py::ssize_t>(N)}; }
};
template <typename Row, std::size_t N>
requires(TableTraits<Row>::isTable) struct TableTraits<std::array<Row, N>> {
  using Element = typename TableTraits<Row>::Element;
  static constexpr bool isTable = true;
  static Shape shape() {
    Shape shape = TableTraits<Row>::shape();
    shape.insert(shape.begin(), static_cast<py::ssize_t>(N));
    return shape;
  }
};
template <typename Table>
concept NumberTable = TableTraits<Table>::isTable;

template <NumberTable Table>
Table tableFrom(py::handle given, const char* noun) {
  using Element = typename TableTraits<Table>::Element;
  static const Shape shape = TableTraits<Table>::shape();
  // Most are just right, and looking closer takes longer than many a call.
  const bool right = py::array_t<Element, py::array::c_style>::check_(given) &&
                     hasShape(py::reinterpret_borrow<py::array>(given), shape);
  const py::array numbers = right ? py::reinterpret_borrow<py::array>(given)
                                  : readNumbers(given, noun, py::dtype::of<Element>(), shape);
  Table table;
  std::memcpy(&table, numbers.data(), sizeof table);
  return table;
}
/// A new array of the table's numbers.
template <NumberTable Table>
py::array arrayOf(const Table& table) {
  using Traits = TableTraits<Table>;
  return py::array(py::dtype::of<typename Traits::Element>(), Traits::shape(), &table);
}
/// The table itself as an array that keeps `owner`, whose part it is, alive.
template <NumberTable Table>
py::array viewOf(Table& table, py::handle owner) {
  using Traits = TableTraits<Table>;
  return py::array(py::dtype::of<typename Traits::Element>(), Traits::shape(), &table, owner);
}

template <Number T>
std::vector<T> vectorFrom(py::handle given, const std::string& noun) {
  const py::array numbers = readNumbers(given, noun, py::dtype::of<T>(), {kAnyLength});
  const T* const first = static_cast<const T*>(numbers.data());
  return std::vector<T>(first, first + numbers.size());
}
template <Number T>
py::array arrayOf(std::span<const T> numbers) {
  return py::array(py::dtype::of<T>(), {static_cast<py::ssize_t>(numbers.size())}, numbers.data());
}

}  // namespace greycard::python

namespace pybind11::detail {

template <greycard::python::Number T>
struct type_caster<greycard::python::In<T>> {
  PYBIND11_TYPE_CASTER(greycard::python::In<T>, const_name("numpy.typing.ArrayLike"));
  bool load(handle source, bool) {
    if (source.is_none() || isinstance<str>(source)) return false;
    value.given = reinterpret_borrow<object>(source);
    return true;
  }
};

template <greycard::python::Number T>
struct type_caster<greycard::python::InOut<T>> {
  PYBIND11_TYPE_CASTER(greycard::python::InOut<T>, const_name("numpy.typing.NDArray[") +
                                                       npy_format_descriptor<T>::name +
                                                       const_name("]"));
  bool load(handle source, bool) {
    value.given = reinterpret_borrow<object>(source);
    return true;
  }
};

// Refuses by an exception, which tells more than the list of signatures that false would give; not
// in the first round over overloads, where another one may fit.
template <typename Row, std::size_t N>
requires(greycard::python::NumberTable<std::array<Row, N>>) struct type_caster<std::array<Row, N>> {
  using Table = std::array<Row, N>;
  PYBIND11_TYPE_CASTER(
      Table,
      const_name("numpy.ndarray[") +
          npy_format_descriptor<typename greycard::python::TableTraits<Table>::Element>::name +
          const_name("]"));
  bool load(handle source, bool convert) {
    if (source.is_none() || (!convert && !isinstance<array>(source))) return false;
    value = greycard::python::tableFrom<Table>(source, "numbers");
    return true;
  }
  static handle cast(const Table& table, return_value_policy, handle) {
    return greycard::python::arrayOf(table).release();
  }
};

template <greycard::python::Number T>
struct type_caster<std::vector<T>> {
  PYBIND11_TYPE_CASTER(std::vector<T>, const_name("numpy.ndarray[") +
                                           npy_format_descriptor<T>::name + const_name("]"));
  bool load(handle source, bool convert) {
    if (source.is_none() || (!convert && !isinstance<array>(source))) return false;
    value = greycard::python::vectorFrom<T>(source, "numbers");
    return true;
  }
  static handle cast(const std::vector<T>& numbers, return_value_policy, handle) {
    return greycard::python::arrayOf(std::span<const T>(numbers)).release();
  }
};

// A Picture, or an array that becomes one for the length of the call.
template <>
struct type_caster<greycard::Picture> : type_caster_base<greycard::Picture> {
  bool load(handle source, bool convert) {
    if (!source.is_none() && type_caster_base<greycard::Picture>::load(source, false)) return true;
    if (!convert) return false;
    value = const_cast<greycard::Picture*>(greycard::python::pictureBehind(source));
    if (value != nullptr) return true;
    made_ = greycard::python::pictureFrom(source);
    value = &made_;
    return true;
  }

 private:
  greycard::Picture made_;
};

}  // namespace pybind11::detail
