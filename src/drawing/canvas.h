// Canvas: draws on any Cairo surface, in points.
//
// Texts of one font and colour are gathered and drawn together; the order of what overlaps is kept.
// A canvas belongs to one thread and keeps its surface alive.
#pragma once

#include <cairo.h>

#include <string_view>
#include <vector>

#include "drawing/face.h"
#include "drawing/geometry.h"

namespace veltgeneral::drawing {

class Image;

class Canvas {
 public:
  // `unitsPerPoint`: 1 on PDF surfaces; dots per inch / 72 on screens and pictures.
  explicit Canvas(cairo_surface_t* surface, double unitsPerPoint = 1);

  // Draws `text` from `start` on the base line and returns its width: where the last character's
  // cell ends. The face must outlive the next flush().
  double text(const Font& font, Point start, Colour colour, std::u16string_view text);
  void line(Point from, Point to, double thickness, Colour colour);
  void fill(const Rectangle& area, Colour colour);
  // The outline, its thickness half inside and half outside of `area`.
  void outline(const Rectangle& area, double thickness, Colour colour);
  // Stretches the picture over `area`.
  void image(const Image& picture, const Rectangle& area);

  // Draws what was gathered and finishes the page; drawing goes on with an empty one.
  void showPage();
  // Draws what was gathered.
  void flush();
  // Throws Error when the surface has failed, be it long ago.
  void check() const;

  // The surface's own tool, for what is not here; flush() first.
  cairo_t* handle() const { return context_.get(); }

 private:
  void useFont(const Font& font, Colour colour);
  void useColour(Colour colour);

  Handle<cairo_t, cairo_destroy> context_;
  Font font_;
  Colour textColour_;
  std::vector<cairo_glyph_t> gathered_;
};

}  // namespace veltgeneral::drawing
