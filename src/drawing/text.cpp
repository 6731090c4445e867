#include "drawing/text.h"

#include <glib.h>

#include "drawing/fallback.h"

namespace veltgeneral::drawing {

CodePoint codePointAt(std::u16string_view text, std::size_t at) {
  const char32_t c = text[at];
  if ((c & 0xF800) != 0xD800) return {c, 1};
  const char32_t low = at + 1 < text.size() ? text[at + 1] : 0;
  if ((c & 0xFC00) != 0xD800 || (low & 0xFC00) != 0xDC00) return {0xFFFD, 1};
  return {0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00), 2};
}

std::string toUtf8(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    const CodePoint c = codePointAt(text, i);
    char bytes[6];
    const int length = g_unichar_to_utf8(c.value, bytes);
    out.append(bytes, static_cast<std::size_t>(length));
    i += c.units;
  }
  return out;
}

bool isMark(char32_t c) { return g_unichar_iszerowidth(c) != FALSE; }

double textWidth(const Font& font, std::u16string_view text) {
  double ems = 0;
  double points = 0;
  walk(
      *font.face, text, [&](const Glyph& glyph) { ems += glyph.advance; },
      [&](std::u16string_view run) { points += font.face->fallback().width(font.size, run); });
  return ems * font.size + points;
}

}  // namespace veltgeneral::drawing
