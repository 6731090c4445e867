// Face: one font file, opened, with a table of its glyphs; Font: a face at a size.
//
// The table is built once, 256 characters at a time as they are met, so that a text becomes glyphs
// without asking the font again. A face belongs to one thread.
#pragma once

#include <cairo.h>

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <tuple>

#include "drawing/handles.h"

namespace veltgeneral::drawing {

class Fallback;
class FontFile;

struct FontRequest {
  std::string family;  // UTF-8; a family or an alias that fontconfig knows: "Courier New", "serif"
  bool bold = false;
  bool italic = false;
  bool fixedPitch = false;  // refuse a stand-in whose characters differ in width

  friend bool operator<(const FontRequest& a, const FontRequest& b) {
    return std::tie(a.family, a.bold, a.italic, a.fixedPitch) <
           std::tie(b.family, b.bold, b.italic, b.fixedPitch);
  }
};

struct Glyph {
  std::uint32_t index = 0;  // 0: the face lacks the character
  double advance = 0;       // ems
};

class Face {
 public:
  // Opens what fontconfig has for `request`: the font itself, its metric twin or a stand-in.
  // Throws Error where there is no scalable font, or only a proportional one for a request of
  // fixed pitch.
  explicit Face(const FontRequest& request);
  ~Face();
  Face(const Face&) = delete;
  Face& operator=(const Face&) = delete;

  bool isFixedPitch() const { return cell_ > 0; }
  // The common advance of a fixed-pitch face in ems; 0 for a proportional one.
  double cell() const { return cell_; }
  double ascent() const { return ascent_; }    // ems above the base line
  double descent() const { return descent_; }  // ems below it, positive

  // In a fixed-pitch face every glyph advances by the cell. A control character is a blank.
  Glyph glyph(char32_t c);
  // Serves the characters that the face lacks.
  Fallback& fallback();
  cairo_font_face_t* handle() const { return face_.get(); }

 private:
  using GlyphPage = std::array<Glyph, 256>;

  void readMetrics();
  std::unique_ptr<GlyphPage> readPage(char32_t first) const;

  FontRequest request_;
  std::string family_;
  Handle<cairo_font_face_t, cairo_font_face_destroy> face_;
  std::unique_ptr<FontFile> file_;
  double ascent_ = 0;
  double descent_ = 0;
  double cell_ = 0;
  std::array<std::unique_ptr<GlyphPage>, 256> pages_;
  std::unique_ptr<Fallback> fallback_;
};

// The faces in use, each opened once. References stay valid as long as the book.
class FaceBook {
 public:
  Face& face(const FontRequest& request);  // throws Error as Face does

 private:
  std::map<FontRequest, Face> faces_;
};

struct Font {
  Face* face = nullptr;  // borrowed
  double size = 0;       // points

  double ascent() const { return face->ascent() * size; }
  double height() const { return (face->ascent() + face->descent()) * size; }
  double cell() const { return face->cell() * size; }
};

// How every font of ours is drawn: metrics unhinted, so that screen and paper agree.
const cairo_font_options_t* fontOptions();

}  // namespace veltgeneral::drawing
