// From UTF-16 text to what a face can draw, and how wide that is.
//
// A surrogate without its partner counts as U+FFFD.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "drawing/face.h"

namespace veltgeneral::drawing {

struct CodePoint {
  char32_t value = 0;
  std::size_t units = 0;  // 1 or 2
};

// The character at `at`, which lies inside `text`.
CodePoint codePointAt(std::u16string_view text, std::size_t at);

std::string toUtf8(std::u16string_view text);

// Whether `c` joins the character before it and takes no room of its own.
bool isMark(char32_t c);

// The width of `text` in points. Widths add up: a text is as wide as its pieces, unless they are
// cut inside a run of characters that the face lacks.
double textWidth(const Font& font, std::u16string_view text);

// Splits `text` into characters that the face has, given one by one to `onGlyph(Glyph)`, and runs
// of what it lacks (a character with marks on it among them), given to `onRun(u16string_view)`.
template <class OnGlyph, class OnRun>
void walk(Face& face, std::u16string_view text, OnGlyph onGlyph, OnRun onRun) {
  constexpr char16_t kFirstMark = 0x300;
  std::size_t runStart = 0;
  std::size_t runEnd = 0;  // equal: no run is open
  const auto closeRun = [&] {
    if (runEnd > runStart) onRun(text.substr(runStart, runEnd - runStart));
    runStart = runEnd = 0;
  };
  for (std::size_t i = 0; i < text.size();) {
    const CodePoint c = codePointAt(text, i);
    std::size_t next = i + c.units;
    while (next < text.size() && text[next] >= kFirstMark) {
      const CodePoint mark = codePointAt(text, next);
      if (!isMark(mark.value)) break;
      next += mark.units;
    }
    const bool alone = next == i + c.units;
    if (const Glyph glyph = alone ? face.glyph(c.value) : Glyph{}; glyph.index != 0) {
      closeRun();
      onGlyph(glyph);
    } else {
      if (runEnd == runStart) runStart = i;
      runEnd = next;
    }
    i = next;
  }
  closeRun();
}

}  // namespace veltgeneral::drawing
