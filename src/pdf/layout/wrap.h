// Wrapping: cuts a text into lines that fit a width.
#pragma once

#include <string_view>
#include <vector>

#include "drawing/canvas.h"
#include "pdf/commands.h"
#include "pdf/layout/style.h"

namespace veltgeneral::pdf::layout {

struct Line {
  std::u16string_view text;    // of the wrapped text
  double width = 0;            // points
  bool endsParagraph = false;  // followed by a line end or nothing: never justified
};

// Appends the lines of `text` to `lines`: at least one, cut at blanks (which vanish there) and at
// line ends; a word longer than `width` is cut where it must, so a line is wider than `width` only
// if its one character is.
void wrap(const drawing::Font& font, std::u16string_view text, double width,
          std::vector<Line>& lines);

// Draws one line between `left` and `left + width`, its top at `top`.
void drawLine(drawing::Canvas& canvas, const drawing::Font& font, drawing::Colour colour,
              const Line& line, Align align, double left, double width, double top);

}  // namespace veltgeneral::pdf::layout
