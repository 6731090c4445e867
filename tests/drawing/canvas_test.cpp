// Draws on a picture at 4 dots a point and looks at the dots.
#include "drawing/canvas.h"

#include <gtest/gtest.h>

#include "drawing/error.h"

namespace veltgeneral::drawing {
namespace {

constexpr int kScale = 4;
constexpr Colour kBlack{};
constexpr Colour kBlue = Colour::fromBgr(0x00FF0000);

class Paper {
 public:
  Paper() : surface_(cairo_image_surface_create(CAIRO_FORMAT_RGB24, 400, 200)) {
    canvas.fill({0, 0, 100, 50}, {255, 255, 255});
  }
  std::uint32_t dot(double x, double y) {
    canvas.flush();
    cairo_surface_flush(surface_.get());
    const unsigned char* row =
        cairo_image_surface_get_data(surface_.get()) +
        static_cast<int>(y * kScale) * cairo_image_surface_get_stride(surface_.get());
    return reinterpret_cast<const std::uint32_t*>(row)[static_cast<int>(x * kScale)] & 0xFFFFFF;
  }
  // Whether anything but white lies in the area.
  bool inked(const Rectangle& area) {
    for (double y = area.y; y < area.y + area.height; y += 1.0 / kScale)
      for (double x = area.x; x < area.x + area.width; x += 1.0 / kScale)
        if (dot(x, y) != 0xFFFFFF) return true;
    return false;
  }

 private:
  Handle<cairo_surface_t, cairo_surface_destroy> surface_;

 public:
  Canvas canvas{surface_.get(), kScale};
};

TEST(Canvas, LinesAndBoxesLieWhereTheyAreSaid) {
  Paper paper;
  paper.canvas.fill({10, 10, 20, 10}, kBlue);
  paper.canvas.outline({10, 10, 20, 10}, 1, kBlack);
  paper.canvas.line({50, 5}, {50, 45}, 2, {255, 0, 0});
  EXPECT_EQ(paper.dot(20, 15), 0x0000FFu);
  EXPECT_EQ(paper.dot(10, 15), 0x000000u);
  EXPECT_EQ(paper.dot(49.2, 25), 0xFF0000u);
  EXPECT_EQ(paper.dot(50.8, 25), 0xFF0000u);
  EXPECT_FALSE(paper.inked({31, 5, 17, 40}));
  EXPECT_FALSE(paper.inked({48, 45.5, 4, 4}));
}

TEST(Canvas, EachCharacterIsDrawnInItsCell) {
  FaceBook book;
  Paper paper;
  const Font font{&book.face({"Courier New", false, false, true}), 20};
  // The third is in no fixed-pitch font here and takes two cells.
  const double width = paper.canvas.text(font, {4, 30}, kBlack, u"M \U0001F600M");
  EXPECT_NEAR(width, 5 * font.cell(), 0.01);
  const bool expected[] = {true, false, true, true, true, false};
  for (int cell = 0; cell < 6; ++cell) {
    const double x = 4 + cell * font.cell();
    EXPECT_EQ(paper.inked({x + 1, 30 - font.ascent(), font.cell() - 2, font.height()}),
              expected[cell])
        << cell;
  }
}

TEST(Canvas, WhatIsDrawnLaterCoversTextDrawnBefore) {
  FaceBook book;
  Paper paper;
  const Font font{&book.face({"Courier New", true, false, true}), 20};
  paper.canvas.text(font, {4, 30}, kBlack, u"MM");
  paper.canvas.fill({0, 0, 100, 50}, kBlue);
  EXPECT_EQ(paper.dot(8, 25), 0x0000FFu);
  paper.canvas.text(font, {4, 30}, {255, 0, 0}, u"\u2588");
  EXPECT_EQ(paper.dot(10, 25), 0xFF0000u);
}

}  // namespace
}  // namespace veltgeneral::drawing
