// Fallback: draws through Pango the characters that a face lacks, each from a font that has it.
//
// Next to a fixed-pitch face every character takes whole cells, as many as it needs, so that what
// follows stays in its column. Lengths are in the canvas's units.
#pragma once

#include <pango/pangocairo.h>

#include <string_view>

#include "drawing/geometry.h"
#include "drawing/handles.h"

namespace veltgeneral::drawing {

struct FontRequest;

class Fallback {
 public:
  // `cell` is the face's cell in ems, 0 for a proportional face.
  Fallback(const FontRequest& request, double cell);

  double width(double size, std::u16string_view run);
  // Draws in the context's colour and returns the width.
  double draw(cairo_t* context, double size, Point baseline, std::u16string_view run);

 private:
  PangoLayoutLine* shape(double size, std::u16string_view run);

  double cell_;
  Handle<PangoFontMap, g_object_unref> fonts_;  // our own: the default one belongs to its thread
  Handle<PangoContext, g_object_unref> context_;
  Handle<PangoLayout, g_object_unref> layout_;
  Handle<PangoFontDescription, pango_font_description_free> description_;
};

}  // namespace veltgeneral::drawing
