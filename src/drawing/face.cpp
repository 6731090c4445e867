#include "drawing/face.h"

#include <cairo-ft.h>
#include <fontconfig/fontconfig.h>

#include FT_ADVANCES_H

#include "drawing/error.h"
#include "drawing/fallback.h"

namespace veltgeneral::drawing {
namespace {

using Pattern = Handle<FcPattern, FcPatternDestroy>;

const FcChar8* chars(const std::string& text) {
  return reinterpret_cast<const FcChar8*>(text.c_str());
}

Pattern match(const FontRequest& request) {
  const Pattern wanted(FcPatternCreate());
  if (!wanted) throw std::bad_alloc();
  FcPatternAddString(wanted.get(), FC_FAMILY, chars(request.family));
  FcPatternAddInteger(wanted.get(), FC_WEIGHT, request.bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
  FcPatternAddInteger(wanted.get(), FC_SLANT, request.italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
  FcPatternAddBool(wanted.get(), FC_SCALABLE, FcTrue);
  if (request.fixedPitch) FcPatternAddInteger(wanted.get(), FC_SPACING, FC_MONO);
  FcConfigSubstitute(nullptr, wanted.get(), FcMatchPattern);
  FcDefaultSubstitute(wanted.get());
  FcResult result = FcResultNoMatch;
  Pattern found(FcFontMatch(nullptr, wanted.get(), &result));
  FcBool scalable = FcFalse;
  if (found) FcPatternGetBool(found.get(), FC_SCALABLE, 0, &scalable);
  if (scalable == FcFalse) throw Error("no scalable font serves");
  return found;
}

bool isControl(char32_t c) { return c < 0x20 || (c >= 0x7F && c < 0xA0); }

}  // namespace

// The font file, opened for this face alone: Cairo keeps one for all threads, and holding its lock
// does not keep its own drawing away from it.
class FontFile {
 public:
  explicit FontFile(FcPattern* found) {
    FcChar8* path = nullptr;
    int index = 0;
    FcPatternGetString(found, FC_FILE, 0, &path);
    FcPatternGetInteger(found, FC_INDEX, 0, &index);
    FT_Library library = nullptr;
    if (FT_Init_FreeType(&library) != 0) throw std::bad_alloc();
    library_.reset(library);
    FT_Face face = nullptr;
    if (path == nullptr ||
        FT_New_Face(library, reinterpret_cast<const char*>(path), index, &face) != 0)
      throw Error("the font file cannot be read");
    face_.reset(face);
    if (face->units_per_EM == 0) throw Error("the font file cannot be read");
  }

  FT_Face operator->() const { return face_.get(); }
  double ems(FT_Long units) const {
    return static_cast<double>(units) / static_cast<double>(face_->units_per_EM);
  }
  Glyph glyph(char32_t c) const {
    const FT_UInt index = FT_Get_Char_Index(face_.get(), isControl(c) ? U' ' : c);
    FT_Fixed advance = 0;
    if (index == 0 || FT_Get_Advance(face_.get(), index, FT_LOAD_NO_SCALE, &advance) != 0)
      return {};
    return {index, ems(advance)};
  }

 private:
  Handle<FT_LibraryRec_, FT_Done_FreeType> library_;
  Handle<FT_FaceRec_, FT_Done_Face> face_;
};

const cairo_font_options_t* fontOptions() {
  static const Handle<cairo_font_options_t, cairo_font_options_destroy> options = [] {
    Handle<cairo_font_options_t, cairo_font_options_destroy> made(cairo_font_options_create());
    cairo_font_options_set_hint_metrics(made.get(), CAIRO_HINT_METRICS_OFF);
    cairo_font_options_set_hint_style(made.get(), CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_antialias(made.get(), CAIRO_ANTIALIAS_GRAY);
    return made;
  }();
  return options.get();
}

Face::Face(const FontRequest& request) : request_(request) {
  const Pattern found = match(request);
  FcChar8* name = nullptr;
  if (FcPatternGetString(found.get(), FC_FAMILY, 0, &name) == FcResultMatch)
    family_ = reinterpret_cast<const char*>(name);
  face_.reset(cairo_ft_font_face_create_for_pattern(found.get()));
  file_ = std::make_unique<FontFile>(found.get());
  readMetrics();
  if (request.fixedPitch && !isFixedPitch())
    throw Error("only a proportional font serves: " + family_);
}

Face::~Face() = default;

void Face::readMetrics() {
  pages_[0] = readPage(0);
  ascent_ = file_->ems((*file_)->ascender);
  descent_ = file_->ems(-(*file_)->descender);
  // The font's own word for its pitch is often wrong; its widths are not.
  const double width = (*pages_[0])[U'M'].advance;
  for (char32_t c = U'!'; c < 0x7F; ++c)
    if (const Glyph& glyph = (*pages_[0])[c]; glyph.index == 0 || glyph.advance != width) return;
  cell_ = width;
  for (Glyph& glyph : *pages_[0]) glyph.advance = cell_;
}

std::unique_ptr<Face::GlyphPage> Face::readPage(char32_t first) const {
  auto page = std::make_unique<GlyphPage>();
  for (char32_t i = 0; i < page->size(); ++i) {
    (*page)[i] = file_->glyph(first + i);
    if (isFixedPitch()) (*page)[i].advance = cell_;
  }
  return page;
}

Glyph Face::glyph(char32_t c) {
  const std::size_t page = c >> 8;
  if (page >= pages_.size()) return {};
  if (!pages_[page]) pages_[page] = readPage(c & ~char32_t{0xFF});
  return (*pages_[page])[c & 0xFF];
}

Fallback& Face::fallback() {
  if (!fallback_) fallback_ = std::make_unique<Fallback>(request_, cell_);
  return *fallback_;
}

Face& FaceBook::face(const FontRequest& request) {
  return faces_.try_emplace(request, request).first->second;
}

}  // namespace veltgeneral::drawing
