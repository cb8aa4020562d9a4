#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "greycard/picture.h"
#include "plane_view.h"

namespace greycard {

/// The samples of a picture, those of a pixel side by side: rows of width * channels.
inline PlaneView<std::uint16_t> samplesOf(Picture& picture) {
  const auto of = [](int size) { return static_cast<std::size_t>(size); };
  return {std::span(picture.samples), of(picture.width) * of(picture.channels), of(picture.height)};
}
inline PlaneView<const std::uint16_t> samplesOf(const Picture& picture) {
  const auto of = [](int size) { return static_cast<std::size_t>(size); };
  return {std::span(picture.samples), of(picture.width) * of(picture.channels), of(picture.height)};
}

}  // namespace greycard
