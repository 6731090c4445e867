// The JPEG half of Image, and what both halves share.
#pragma once

#include <cairo.h>

#include <cstddef>
#include <cstdint>
#include <span>

#include "drawing/handles.h"

namespace veltgeneral::drawing {

constexpr std::size_t kMostBytes = 256u << 20;
constexpr std::uint64_t kMostDots = 50'000'000;

// Keeps a copy of `bytes` with the surface, as Cairo's data of the named kind.
void attach(cairo_surface_t* surface, const char* kind, std::span<const unsigned char> bytes);

// Decodes the whole picture, so that damage is found here, and keeps its bytes beside the dots: a
// PDF takes them as they are. Throws Error.
Handle<cairo_surface_t, cairo_surface_destroy> readJpeg(std::span<const unsigned char> bytes);

}  // namespace veltgeneral::drawing
