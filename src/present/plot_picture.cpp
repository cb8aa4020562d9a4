#include "greycard/present/plot_picture.h"

#include <cairo.h>
#include <librsvg/rsvg.h>

#include <cmath>
#include <cstdint>
#include <memory>
#include <stdexcept>

namespace greycard::present {
namespace {

constexpr double kLargestSide = 16384.0;  // pixels

template <auto Free>
struct Freed {
  template <typename T>
  void operator()(T* object) const {
    Free(object);
  }
};
using Handle = std::unique_ptr<RsvgHandle, Freed<g_object_unref>>;
using Surface = std::unique_ptr<cairo_surface_t, Freed<cairo_surface_destroy>>;
using Context = std::unique_ptr<cairo_t, Freed<cairo_destroy>>;
using Error = std::unique_ptr<GError, Freed<g_error_free>>;

[[noreturn]] void refuse(GError* error) {
  const Error held(error);
  throw std::invalid_argument(std::string("the plot can't be drawn: ") +
                              (held ? held->message : "it has no size in pixels"));
}

// Premultiplied native-endian 0xAARRGGBB, opaque throughout, as R, G, B.
Picture pictureOf(cairo_surface_t* surface, int width, int height) {
  Picture picture;
  picture.width = width;
  picture.height = height;
  picture.channels = 3;
  picture.bits = 8;
  picture.samples.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3);
  const unsigned char* data = cairo_image_surface_get_data(surface);
  const int stride = cairo_image_surface_get_stride(surface);
  for (int y = 0; y < height; ++y) {
    const auto* row =
        reinterpret_cast<const std::uint32_t*>(data + static_cast<std::ptrdiff_t>(y) * stride);
    for (int x = 0; x < width; ++x)
      for (const unsigned shift : {16U, 8U, 0U})
        picture.samples.push_back(static_cast<std::uint16_t>(row[x] >> shift & 0xFFU));
  }
  return picture;
}

}  // namespace

bool drawsPlotPictures() {
  return true;
}

Picture plotPicture(std::string_view svg, double scale) {
  if (!(scale >= 0.1 && scale <= 10.0))
    throw std::invalid_argument("the scale of a plot's picture must be 0.1 to 10");
  GError* error = nullptr;
  const Handle handle(
      rsvg_handle_new_from_data(reinterpret_cast<const guint8*>(svg.data()), svg.size(), &error));
  if (!handle) refuse(error);
  double width = 0.0, height = 0.0;
  if (!rsvg_handle_get_intrinsic_size_in_pixels(handle.get(), &width, &height)) refuse(nullptr);
  width = std::round(width * scale);
  height = std::round(height * scale);
  if (!(width >= 1.0 && height >= 1.0 && width <= kLargestSide && height <= kLargestSide))
    refuse(nullptr);

  const Surface surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(width),
                                                   static_cast<int>(height)));
  const Context context(cairo_create(surface.get()));
  cairo_set_source_rgb(context.get(), 1.0, 1.0, 1.0);
  cairo_paint(context.get());
  const RsvgRectangle viewport{0.0, 0.0, width, height};
  if (!rsvg_handle_render_document(handle.get(), context.get(), &viewport, &error)) refuse(error);
  cairo_surface_flush(surface.get());
  return pictureOf(surface.get(), static_cast<int>(width), static_cast<int>(height));
}

}  // namespace greycard::present
