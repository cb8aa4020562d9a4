#include "arrays.h"

#include <limits>
#include <utility>

namespace greycard::python {
namespace {

bool isNative(const py::dtype& type) {
  return type.byteorder() == '=' || type.byteorder() == '|';
}

bool isContiguous(const py::array& array) {
  return (array.flags() & py::array::c_style) != 0;
}

bool isAligned(const py::array& array) {
  return (array.flags() & py::detail::npy_api::NPY_ARRAY_ALIGNED_) != 0;
}

bool sameNumbers(const py::array& array, const py::dtype& wanted) {
  return array.dtype().kind() == wanted.kind() && array.itemsize() == wanted.itemsize() &&
         isNative(array.dtype());
}

std::string nameOf(const py::dtype& type) {
  return py::str(py::handle(type)).cast<std::string>();
}

std::string times(const Shape& shape) {
  std::string text;
  for (const py::ssize_t length : shape) {
    if (!text.empty()) text += " x ";
    text += length < 0 ? "any number" : std::to_string(length);
  }
  return text.empty() ? "no axes" : text;
}

std::string wantedText(const py::dtype& type, const Shape& shape) {
  return nameOf(type) + ", " + times(shape);
}

// Whether every whole number of the array lies within those of the wanted type.
template <typename Wide>
bool within(const py::array& array, py::ssize_t bytes, bool isSigned) {
  const auto wide = py::array_t<Wide, py::array::c_style | py::array::forcecast>::ensure(array);
  if (!wide) throw py::error_already_set();
  const int bits = static_cast<int>(8 * bytes) - (isSigned ? 1 : 0);
  const Wide largest = bits >= std::numeric_limits<Wide>::digits
                           ? std::numeric_limits<Wide>::max()
                           : static_cast<Wide>((static_cast<std::uint64_t>(1) << bits) - 1);
  Wide smallest = 0;
  if constexpr (std::is_signed_v<Wide>) {
    if (isSigned) smallest = -largest - 1;
  }
  const Wide* const numbers = wide.data();
  for (py::ssize_t i = 0; i < wide.size(); ++i)
    if (numbers[i] < smallest || numbers[i] > largest) return false;
  return true;
}

bool allFit(const py::array& array, const py::dtype& wanted) {
  const bool isSigned = wanted.kind() == 'i';
  if (array.dtype().kind() == 'u') return within<std::uint64_t>(array, wanted.itemsize(), isSigned);
  return within<std::int64_t>(array, wanted.itemsize(), isSigned);
}

bool kindFits(char given, char wanted) {
  const bool whole = given == 'i' || given == 'u';
  if (wanted == 'f') return whole || given == 'f';
  if (wanted == 'b') return given == 'b';
  return whole;
}

template <typename Sample>
Picture pictureOfArray(const py::array& array) {
  const std::span samples(static_cast<const Sample*>(array.data()),
                          static_cast<std::size_t>(array.size()));
  const auto height = static_cast<int>(array.shape(0)), width = static_cast<int>(array.shape(1));
  const int channels = array.ndim() == 2 ? 1 : 3;
  const py::gil_scoped_release release;
  return pictureOf(samples, width, height, channels);
}

Shape shapeOf(const Picture& picture) {
  Shape shape{picture.height, picture.width};
  if (picture.channels != 1) shape.push_back(picture.channels);
  return shape;
}

py::array eightBit(const Picture& picture) {
  py::array_t<std::uint8_t> array(shapeOf(picture));
  std::uint8_t* const out = array.mutable_data();
  const std::size_t count = picture.samples.size();
  const py::gil_scoped_release release;
  for (std::size_t i = 0; i < count; ++i) out[i] = static_cast<std::uint8_t>(picture.samples[i]);
  return array;
}

constexpr const char* kPictureWanted =
    "uint8 or uint16, height x width or height x width x 3 (R, G, B), C-contiguous";

}  // namespace

bool hasShape(const py::array& array, const Shape& shape) {
  if (shape == Shape{kAnyShape}) return true;
  if (array.ndim() != static_cast<py::ssize_t>(shape.size())) return false;
  for (py::ssize_t axis = 0; axis < array.ndim(); ++axis) {
    const py::ssize_t length = shape[static_cast<std::size_t>(axis)];
    if (length != kAnyLength && array.shape(axis) != length) return false;
  }
  return true;
}

std::string described(py::handle given) {
  if (given.is_none()) return "None";
  if (!py::isinstance<py::array>(given))
    return "an object of type " + py::str(py::type::of(given).attr("__name__")).cast<std::string>();
  const auto array = py::reinterpret_borrow<py::array>(given);
  std::string text = "an array of " + nameOf(array.dtype()) + ", " +
                     times(Shape(array.shape(), array.shape() + array.ndim()));
  if (!isContiguous(array)) text += ", not C-contiguous";
  if (!array.writeable()) text += ", read-only";
  return text;
}

void refuseType(py::handle given, const std::string& noun, const std::string& wanted) {
  throw py::type_error(noun + ": " + described(given) + "; wanted " + wanted);
}

void refuseValue(py::handle given, const std::string& noun, const std::string& wanted) {
  throw py::value_error(noun + ": " + described(given) + "; wanted " + wanted);
}

py::array readNumbers(py::handle given, const std::string& noun, const py::dtype& wanted,
                      const Shape& shape) {
  py::array array = py::array::ensure(given);
  if (!array) refuseType(given, noun, "an array of " + wantedText(wanted, shape));
  // A list without numbers is one of float64 to NumPy.
  const bool empty = array.size() == 0;
  if (!empty && !kindFits(array.dtype().kind(), wanted.kind()))
    refuseType(array, noun, wantedText(wanted, shape));
  if (!hasShape(array, shape)) refuseValue(array, noun, wantedText(wanted, shape));
  if (sameNumbers(array, wanted) && isContiguous(array) && isAligned(array)) return array;

  const bool whole = wanted.kind() == 'i' || wanted.kind() == 'u';
  if (whole && !empty && !allFit(array, wanted))
    refuseValue(array, noun, "whole numbers that fit " + nameOf(wanted));
  return py::array::ensure(array.attr("astype")(wanted, py::arg("order") = "C"),
                           py::array::c_style);
}

py::array changeNumbers(py::handle given, const std::string& noun, const py::dtype& wanted,
                        const Shape& shape) {
  const std::string text = wantedText(wanted, shape) +
                           ", C-contiguous and writable: it is changed "
                           "in place";
  if (!py::isinstance<py::array>(given)) refuseType(given, noun, "an array of " + text);
  auto array = py::reinterpret_borrow<py::array>(given);
  if (!sameNumbers(array, wanted)) refuseType(given, noun, text);
  if (!hasShape(array, shape) || !isContiguous(array) || !isAligned(array) || !array.writeable())
    refuseValue(given, noun, text);
  return array;
}

Picture pictureFrom(py::handle given) {
  if (!py::isinstance<py::array>(given))
    refuseType(given, "picture", std::string("a Picture or an array of ") + kPictureWanted);
  const auto array = py::reinterpret_borrow<py::array>(given);
  const py::dtype type = array.dtype();
  if (type.kind() != 'u' || type.itemsize() > 2 || !isNative(type))
    refuseType(given, "picture", kPictureWanted);
  const py::ssize_t axes = array.ndim();
  const bool shaped = axes == 2 || (axes == 3 && array.shape(2) == 3);
  if (!shaped || array.size() == 0 || !isContiguous(array) || !isAligned(array) ||
      array.shape(0) > std::numeric_limits<int>::max() ||
      array.shape(1) > std::numeric_limits<int>::max())
    refuseValue(given, "picture", kPictureWanted);

  return type.itemsize() == 1 ? pictureOfArray<std::uint8_t>(array)
                              : pictureOfArray<std::uint16_t>(array);
}

const Picture* pictureBehind(py::handle given) {
  if (!py::isinstance<py::array>(given)) return nullptr;
  const auto array = py::reinterpret_borrow<py::array>(given);
  py::object base = array.base();
  if (base && py::isinstance<py::array>(base))
    base = py::reinterpret_borrow<py::array>(base).base();  // of a view of the view
  if (!base || !py::isinstance<Picture>(base)) return nullptr;
  const auto& picture = base.cast<const Picture&>();
  const bool whole = picture.bits == 16 && array.data() == picture.samples.data() &&
                     sameNumbers(array, py::dtype::of<std::uint16_t>()) && isContiguous(array) &&
                     hasShape(array, shapeOf(picture));
  return whole ? &picture : nullptr;
}

py::array arrayOf(const Picture& picture, py::handle owner) {
  if (!isWellFormed(picture)) return py::array_t<std::uint16_t>(Shape{0, 0});
  if (picture.bits == 8) return eightBit(picture);
  return py::array(py::dtype::of<std::uint16_t>(), shapeOf(picture), picture.samples.data(), owner);
}

py::array arrayOf(Picture&& picture) {
  const py::object owner = py::cast(std::move(picture));
  return arrayOf(owner.cast<const Picture&>(), owner);
}

}  // namespace greycard::python
