#pragma once

// The fixed-point numbers that pixels are worked on in: 16-bit lanes, each kind with a scale of its
// own in its type. Each result of the arithmetic here is known to fit; from one kind to another
// only the functions lead that say so, or raw() and lane().

#include <concepts>
#include <cstdint>

namespace greycard {

/// In steps of a 10-bit sample: samples, their differences, and sums of two.
enum class SampleLane : std::int16_t {};
/// 2048 = 1.0: saturations and other shares.
enum class ShareLane : std::int16_t {};
/// 2048 to 60 degrees: red 0, green 4096, blue 8192.
enum class HueLane : std::int16_t {};
/// All bits set or none.
enum class LaneMask : std::int16_t {};

template <typename T>
concept Lane = std::same_as<T, SampleLane> || std::same_as<T, ShareLane> ||
    std::same_as<T, HueLane> || std::same_as<T, LaneMask>;

template <Lane T>
constexpr std::int16_t raw(T value) {
  return static_cast<std::int16_t>(value);
}
template <Lane T>
constexpr T lane(int value) {
  return static_cast<T>(static_cast<std::int16_t>(value));
}

template <Lane T>
constexpr T operator+(T a, T b) {
  return lane<T>(raw(a) + raw(b));
}
template <Lane T>
constexpr T operator-(T a, T b) {
  return lane<T>(raw(a) - raw(b));
}
template <Lane T>
constexpr T operator^(T a, T b) {
  return lane<T>(raw(a) ^ raw(b));
}
/// The value where the mask is set, else 0.
template <Lane T>
constexpr T operator&(T value, LaneMask mask) {
  return lane<T>(raw(value) & raw(mask));
}
constexpr LaneMask operator~(LaneMask mask) {
  return lane<LaneMask>(~raw(mask));
}

template <Lane T>
constexpr T min(T a, T b) {
  return raw(a) < raw(b) ? a : b;
}
template <Lane T>
constexpr T max(T a, T b) {
  return raw(a) > raw(b) ? a : b;
}

// Lanes are chosen by masks, not by ?:, which the compiler may turn into branches and then leave
// the loop scalar.
template <Lane T>
constexpr LaneMask ifNegative(T value) {
  return lane<LaneMask>(raw(value) >> 15);
}
template <Lane T>
constexpr T select(LaneMask mask, T set, T clear) {
  return lane<T>((raw(set) & raw(mask)) | (raw(clear) & ~raw(mask)));
}
/// The value with its sign changed where the mask is set.
template <Lane T>
constexpr T negatedWhere(LaneMask mask, T value) {
  return lane<T>((raw(value) ^ raw(mask)) - raw(mask));
}

}  // namespace greycard
