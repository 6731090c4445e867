// Style: how text looks from here on.
#pragma once

#include "drawing/face.h"
#include "drawing/geometry.h"

namespace veltgeneral::pdf::layout {

struct Style {
  drawing::Font font;
  drawing::Font boldFont;  // the same, bold: for table heads
  drawing::Colour colour;
  double spacing = 1.15;

  // From one line's top to the next one's.
  double lineHeight() const { return font.height() * spacing; }
};

}  // namespace veltgeneral::pdf::layout
