// Pictures in memory, and their dots as 0x00RRGGBB.
#pragma once

#include <cairo.h>

#include <cstdint>
#include <cstring>
#include <string>

#include "drawing/handles.h"

namespace veltgeneral::test {

using Picture = drawing::Handle<cairo_surface_t, cairo_surface_destroy>;
using Pen = drawing::Handle<cairo_t, cairo_destroy>;

inline Picture blackPicture(int width, int height) {
  return Picture(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height));
}

inline std::uint32_t dotAt(cairo_surface_t* picture, int x, int y) {
  cairo_surface_flush(picture);
  const std::ptrdiff_t row = cairo_image_surface_get_stride(picture);
  std::uint32_t dot = 0;
  std::memcpy(&dot, cairo_image_surface_get_data(picture) + y * row + 4 * x, sizeof dot);
  return dot & 0xFFFFFF;
}

// A file of one colour, twice as wide as high.
inline void writePng(const std::string& path, int height, std::uint32_t colour) {
  const Picture picture = blackPicture(2 * height, height);
  const Pen pen(cairo_create(picture.get()));
  cairo_set_source_rgb(pen.get(), (colour >> 16) / 255.0, (colour >> 8 & 255) / 255.0,
                       (colour & 255) / 255.0);
  cairo_paint(pen.get());
  cairo_surface_write_to_png(picture.get(), path.c_str());
}

}  // namespace veltgeneral::test
