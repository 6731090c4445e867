#include "drawing/canvas.h"

#include "drawing/error.h"
#include "drawing/fallback.h"
#include "drawing/image.h"
#include "drawing/text.h"

namespace veltgeneral::drawing {

Canvas::Canvas(cairo_surface_t* surface, double unitsPerPoint) : context_(cairo_create(surface)) {
  cairo_scale(context_.get(), unitsPerPoint, unitsPerPoint);
  cairo_set_font_options(context_.get(), fontOptions());
}

void Canvas::useColour(Colour colour) {
  cairo_set_source_rgb(context_.get(), colour.red / 255.0, colour.green / 255.0,
                       colour.blue / 255.0);
}

void Canvas::flush() {
  if (gathered_.empty()) return;
  useColour(textColour_);
  cairo_show_glyphs(context_.get(), gathered_.data(), static_cast<int>(gathered_.size()));
  gathered_.clear();
}

void Canvas::useFont(const Font& font, Colour colour) {
  const bool sameFont = font.face == font_.face && font.size == font_.size;
  if (!sameFont || !(colour == textColour_)) flush();
  textColour_ = colour;
  if (sameFont) return;
  font_ = font;
  cairo_set_font_face(context_.get(), font.face->handle());
  cairo_set_font_size(context_.get(), font.size);
}

double Canvas::text(const Font& font, Point start, Colour colour, std::u16string_view text) {
  useFont(font, colour);
  double x = start.x;
  walk(
      *font.face, text,
      [&](const Glyph& glyph) {
        gathered_.push_back({glyph.index, x, start.y});
        x += glyph.advance * font.size;
      },
      [&](std::u16string_view run) {
        flush();
        useColour(colour);
        cairo_save(context_.get());
        x += font.face->fallback().draw(context_.get(), font.size, {x, start.y}, run);
        cairo_restore(context_.get());
      });
  return x - start.x;
}

void Canvas::line(Point from, Point to, double thickness, Colour colour) {
  flush();
  useColour(colour);
  cairo_set_line_width(context_.get(), thickness);
  cairo_move_to(context_.get(), from.x, from.y);
  cairo_line_to(context_.get(), to.x, to.y);
  cairo_stroke(context_.get());
}

void Canvas::fill(const Rectangle& area, Colour colour) {
  flush();
  useColour(colour);
  cairo_rectangle(context_.get(), area.x, area.y, area.width, area.height);
  cairo_fill(context_.get());
}

void Canvas::outline(const Rectangle& area, double thickness, Colour colour) {
  flush();
  useColour(colour);
  cairo_set_line_width(context_.get(), thickness);
  cairo_rectangle(context_.get(), area.x, area.y, area.width, area.height);
  cairo_stroke(context_.get());
}

void Canvas::image(const Image& picture, const Rectangle& area) {
  flush();
  const Size dots = picture.dots();
  cairo_save(context_.get());
  cairo_translate(context_.get(), area.x, area.y);
  cairo_scale(context_.get(), area.width / dots.width, area.height / dots.height);
  cairo_set_source_surface(context_.get(), picture.handle(), 0, 0);
  // The picture itself, no pattern of it: a PDF then takes it as it is.
  cairo_paint(context_.get());
  cairo_restore(context_.get());
}

void Canvas::showPage() {
  flush();
  cairo_show_page(context_.get());
}

void Canvas::check() const {
  if (const cairo_status_t status = cairo_status(context_.get()); status != CAIRO_STATUS_SUCCESS)
    throw Error(cairo_status_to_string(status));
}

}  // namespace veltgeneral::drawing
