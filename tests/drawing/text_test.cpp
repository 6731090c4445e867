// Characters in their cells, by their widths and as dots.
#include "drawing/text.h"

#include <gtest/gtest.h>

#include "drawing/canvas.h"
#include "drawing/error.h"
#include "support/dots.h"

namespace veltgeneral::drawing {
namespace {

constexpr double kCourierCell = 1229.0 / 2048;  // as published for "Courier New" and its twins

class DrawingText : public testing::Test {
 protected:
  Font courier(double size) { return {&book_.face({"Courier New", false, false, true}), size}; }

  FaceBook book_;
};

TEST_F(DrawingText, FixedPitchIsTheTwinAndNeverAProportionalStandIn) {
  for (const FontRequest& request : {FontRequest{"Courier New", false, false, true},
                                     {"Courier New", true, false, true},
                                     {"Courier New", false, true, true},
                                     {"Courier New", true, true, true}}) {
    const Face& face = book_.face(request);
    EXPECT_DOUBLE_EQ(face.cell(), kCourierCell) << request.bold << request.italic;
    EXPECT_EQ(&face, &book_.face(request));
  }
  EXPECT_THROW(book_.face({"Liberation Sans", false, false, true}), Error);
}

TEST_F(DrawingText, FixedPitchAdvancesByWholeCells) {
  const std::pair<std::u16string_view, int> cells[] = {
      {u"", 0},
      {u"perché €", 8},
      {u"a\r\n\u0081b", 5},  // controls are blanks
      {u"e\u0301x", 2},      // an accent joins its letter
      {u"e\u0301\u0300", 1},
      {u"a\u2603b", 3},      // not in the face
      {u"\U0001F600", 2},    // nor is this, and it is wider than a cell
      {u"\u05d0\u05d1", 2},  // right to left
      {u"\u2500|", 2},
  };
  for (const auto& [text, count] : cells)
    EXPECT_NEAR(textWidth(courier(10), text), count * 10 * kCourierCell, 0.01) << toUtf8(text);
}

TEST_F(DrawingText, ProportionalWidthsAddUp) {
  const Font font{&book_.face({"Liberation Sans"}), 10};
  EXPECT_FALSE(font.face->isFixedPitch());
  EXPECT_LT(textWidth(font, u"i"), textWidth(font, u"M"));
  const double snow = textWidth(font, u"\u2603");
  EXPECT_GT(snow, 1);
  EXPECT_NEAR(textWidth(font, u"ab\u2603"), textWidth(font, u"ab") + snow, 0.01);
  EXPECT_NEAR(textWidth({font.face, 20}, u"ab"), 2 * textWidth(font, u"ab"), 1e-9);
}

TEST_F(DrawingText, LoneSurrogatesAreReplaced) {
  const char16_t units[] = {0xD83D, u'a', 0xDE00, 0xD83D, 0xDE00};
  EXPECT_EQ(toUtf8({units, 5}), "\uFFFDa\uFFFD\U0001F600");
}

TEST_F(DrawingText, IsDrawnInItsCellsAndItsColourBelowWhatFollows) {
  constexpr int kScale = 4;
  const test::Picture picture = test::blackPicture(100 * kScale, 50 * kScale);
  Canvas canvas(picture.get(), kScale);
  const auto dot = [&](double x, double y) {
    return test::dotAt(picture.get(), static_cast<int>(x * kScale), static_cast<int>(y * kScale));
  };
  const Font font = courier(20);
  // The third is in no fixed-pitch font here and takes two cells.
  const double width = canvas.text(font, {4, 30}, {255, 255, 255}, u"M \U0001F600M");
  EXPECT_NEAR(width, 5 * font.cell(), 0.01);
  canvas.flush();
  const bool expected[] = {true, false, true, true, true, false};
  for (int cell = 0; cell < 6; ++cell) {
    bool inked = false;
    for (double y = 0; y < font.height(); y += 1.0 / kScale)
      for (double x = 1; x < font.cell() - 1; x += 1.0 / kScale)
        inked = inked || dot(4 + cell * font.cell() + x, 30 - font.ascent() + y) != 0;
    EXPECT_EQ(inked, expected[cell]) << cell;
  }
  canvas.text(font, {4, 30}, {255, 255, 255}, u"\u2588");
  canvas.text(font, {44, 30}, {255, 0, 0}, u"\u2588");
  canvas.fill({40, 0, 60, 50}, Colour::fromBgr(0x00FF0000));
  canvas.flush();
  EXPECT_EQ(dot(10, 25), 0xFFFFFFu);
  EXPECT_EQ(dot(50, 25), 0x0000FFu);
}

}  // namespace
}  // namespace veltgeneral::drawing
