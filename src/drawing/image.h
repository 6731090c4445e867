// Image: a PNG or JPEG picture, decoded.
#pragma once

#include <cairo.h>

#include <string>

#include "drawing/geometry.h"
#include "drawing/handles.h"

namespace veltgeneral::drawing {

class Image {
 public:
  // Reads the file (a host path), whose first bytes decide its kind. Throws Error: no such file,
  // neither PNG nor JPEG, damaged, or beyond 50 million dots.
  explicit Image(const std::string& path);

  Size dots() const;  // width and height in picture elements
  cairo_surface_t* handle() const { return surface_.get(); }

 private:
  Handle<cairo_surface_t, cairo_surface_destroy> surface_;
};

}  // namespace veltgeneral::drawing
