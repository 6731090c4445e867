#include "drawing/fallback.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "drawing/face.h"
#include "drawing/text.h"

namespace veltgeneral::drawing {
namespace {

// Another font's character may be this much wider than the cell without claiming the next one.
constexpr double kTolerance = 0.25;

int wholeCells(int width, double cell) {
  if (width == 0) return 0;  // an accent on the character before it
  const double cells = std::max(1.0, std::ceil(width / cell - kTolerance));
  return static_cast<int>(std::lround(cells * cell));
}

// Widens each cluster of `item` to whole cells; `cell` is in Pango's units.
void fitToCells(PangoGlyphItem* item, const char* text, double cell) {
  PangoGlyphItemIter cluster;
  for (gboolean more = pango_glyph_item_iter_init_start(&cluster, item, text); more != FALSE;
       more = pango_glyph_item_iter_next_cluster(&cluster)) {
    const int low = std::min(cluster.start_glyph, cluster.end_glyph + 1);
    const int high = std::max(cluster.start_glyph + 1, cluster.end_glyph);
    PangoGlyphInfo* glyphs = item->glyphs->glyphs;
    int width = 0;
    for (int i = low; i < high; ++i) width += glyphs[i].geometry.width;
    glyphs[high - 1].geometry.width += wholeCells(width, cell) - width;
  }
}

int widthOf(const PangoLayoutLine* line) {
  int width = 0;
  for (const GSList* run = line->runs; run != nullptr; run = run->next)
    width += pango_glyph_string_get_width(static_cast<PangoGlyphItem*>(run->data)->glyphs);
  return width;
}

}  // namespace

Fallback::Fallback(const FontRequest& request, double cell)
    : cell_(cell),
      fonts_(pango_cairo_font_map_new()),
      context_(pango_font_map_create_context(fonts_.get())),
      layout_(pango_layout_new(context_.get())),
      description_(pango_font_description_new()) {
  pango_cairo_context_set_font_options(context_.get(), fontOptions());
  pango_cairo_context_set_resolution(context_.get(), 72);
  pango_context_set_round_glyph_positions(context_.get(), FALSE);
  pango_layout_set_single_paragraph_mode(layout_.get(), TRUE);
  pango_font_description_set_family(description_.get(), request.family.c_str());
  if (request.bold) pango_font_description_set_weight(description_.get(), PANGO_WEIGHT_BOLD);
  if (request.italic) pango_font_description_set_style(description_.get(), PANGO_STYLE_ITALIC);
}

PangoLayoutLine* Fallback::shape(double size, std::u16string_view run) {
  const std::string text = toUtf8(run);
  pango_font_description_set_absolute_size(description_.get(), size * PANGO_SCALE);
  pango_layout_set_font_description(layout_.get(), description_.get());
  pango_layout_set_text(layout_.get(), text.data(), static_cast<int>(text.size()));
  PangoLayoutLine* line = pango_layout_get_line(layout_.get(), 0);
  if (cell_ > 0)
    for (GSList* piece = line->runs; piece != nullptr; piece = piece->next)
      fitToCells(static_cast<PangoGlyphItem*>(piece->data), pango_layout_get_text(layout_.get()),
                 cell_ * size * PANGO_SCALE);
  return line;
}

double Fallback::width(double size, std::u16string_view run) {
  return static_cast<double>(widthOf(shape(size, run))) / PANGO_SCALE;
}

double Fallback::draw(cairo_t* context, double size, Point baseline, std::u16string_view run) {
  pango_cairo_update_context(context, context_.get());
  pango_layout_context_changed(layout_.get());
  PangoLayoutLine* line = shape(size, run);
  cairo_move_to(context, baseline.x, baseline.y);
  pango_cairo_show_layout_line(context, line);
  cairo_new_path(context);
  return static_cast<double>(widthOf(line)) / PANGO_SCALE;
}

}  // namespace veltgeneral::drawing
