#pragma once

// One description of a struct serves writing and reading. A struct that JSON can hold has
//
//   void describe(auto& fields, Like<Struct> auto& value) {
//     fields("photo", value.photo);                        a field of any type below
//     fields.derived("mean", value.mean());                written; passed over when read
//     fields.optional("saturation", value.saturation);     written and read only where it is there
//     fields.optional("white_level", value.level, 1, 65535);    a whole number within bounds
//     fields.group("fit", [&](auto& inner) { ... });       an object without a struct of its own
//     fields.rows("patches", 24, [&](auto& row, std::size_t i) { ... });    a list of objects
//     fields("worst_patch", OneBased{value.worst});        counted from 1 in JSON
//     fields("lut_2d_h", inRows<16>(value.changes));       an array as lists of 16
//   }
//
// in this namespace, and JsonWriter and JsonReader do the rest. Fields are numbers, bool, texts,
// paths, enumerations with an EnumNames, std::array, std::vector and std::optional (null) of these,
// and described structs.

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "greycard/awb_utils.h"
#include "greycard/control_point.h"
#include "greycard/types.h"

namespace greycard::present {

/// Struct, const when it is written.
template <typename T, typename Struct>
concept Like = std::same_as<std::remove_const_t<T>, Struct>;

/// Names of an enumeration in JSON: specialise with `static constexpr std::array kNames` of
/// std::pair<Enum, const char*> and `static constexpr const char* kKind`.
template <typename Enum>
struct EnumNames;

/// kNames of an enumeration that counts from 0, from its names in that order.
template <typename Enum, std::size_t Size>
constexpr auto namesInOrder(const std::array<const char*, Size>& names) {
  std::array<std::pair<Enum, const char*>, Size> pairs{};
  for (std::size_t i = 0; i < Size; ++i) pairs[i] = {static_cast<Enum>(i), names[i]};
  return pairs;
}

/// A number counted from 0 here and from 1 in JSON.
template <typename Whole>
struct OneBased {
  Whole& value;
};
template <typename Whole>
OneBased(Whole&) -> OneBased<Whole>;

/// Single precision, a number or an array, written with the digits of a double.
template <typename Floats>
struct AllDigits {
  Floats& value;
};
template <typename Floats>
AllDigits(Floats&) -> AllDigits<Floats>;

template <typename T>
inline constexpr bool isOneBased = false;
template <typename T>
inline constexpr bool isOneBased<OneBased<T>> = true;

/// An array that is a list of rows in JSON.
template <std::size_t Columns, typename Array>
struct InRows {
  Array& values;
  static constexpr std::size_t kColumns = Columns;
  static constexpr std::size_t kRows = std::tuple_size_v<std::remove_const_t<Array>> / Columns;
};
template <std::size_t Columns, typename Array>
InRows<Columns, Array> inRows(Array& values) {
  return {values};
}

template <typename T>
inline constexpr bool isInRows = false;
template <std::size_t Columns, typename Array>
inline constexpr bool isInRows<InRows<Columns, Array>> = true;

template <typename T>
inline constexpr bool isAllDigits = false;
template <typename T>
inline constexpr bool isAllDigits<AllDigits<T>> = true;

template <typename T>
inline constexpr bool isOptional = false;
template <typename T>
inline constexpr bool isOptional<std::optional<T>> = true;

template <typename T>
inline constexpr bool isArray = false;
template <typename T, std::size_t Size>
inline constexpr bool isArray<std::array<T, Size>> = true;

template <typename T>
inline constexpr bool isVector = false;
template <typename T>
inline constexpr bool isVector<std::vector<T>> = true;

// Written as lists.
inline std::array<const double*, 2> components(const Point2& p) {
  return {&p.x, &p.y};
}
inline std::array<double*, 2> components(Point2& p) {
  return {&p.x, &p.y};
}
inline std::array<const double*, 2> components(const WhiteBalancePoint& p) {
  return {&p.rg, &p.bg};
}
inline std::array<double*, 2> components(WhiteBalancePoint& p) {
  return {&p.rg, &p.bg};
}
inline std::array<const double*, 4> components(const PatchRegion& r) {
  return {&r.left, &r.top, &r.width, &r.height};
}
inline std::array<double*, 4> components(PatchRegion& r) {
  return {&r.left, &r.top, &r.width, &r.height};
}
inline std::array<const std::int32_t*, 2> components(const ControlPoint& p) {
  return {&p.X, &p.Y};
}
inline std::array<std::int32_t*, 2> components(ControlPoint& p) {
  return {&p.X, &p.Y};
}

}  // namespace greycard::present
