#include "drawing/face.h"

#include <gtest/gtest.h>

#include "drawing/error.h"
#include "drawing/text.h"

namespace veltgeneral::drawing {
namespace {

// The published advance of "Courier New" and its metric twins.
constexpr double kCourierCell = 1229.0 / 2048;

TEST(Face, FixedPitchIsTheTwinAndNeverAProportionalStandIn) {
  FaceBook book;
  for (const bool bold : {false, true})
    for (const bool italic : {false, true}) {
      const Face& face = book.face({"Courier New", bold, italic, true});
      EXPECT_DOUBLE_EQ(face.cell(), kCourierCell) << bold << italic;
      EXPECT_EQ(&face, &book.face({"Courier New", bold, italic, true}));
    }
  EXPECT_THROW(book.face({"Liberation Sans", false, false, true}), Error);
  Face& sans = book.face({"Liberation Sans"});
  EXPECT_FALSE(sans.isFixedPitch());
  EXPECT_LT(sans.glyph(U'i').advance, sans.glyph(U'M').advance);
}

TEST(Text, FixedPitchAdvancesByWholeCells) {
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
  FaceBook book;
  const Font font{&book.face({"Courier New", false, false, true}), 10};
  for (const auto& [text, count] : cells)
    EXPECT_NEAR(textWidth(font, text), count * font.cell(), 0.01) << toUtf8(text);
}

TEST(Text, ProportionalWidthsAddUp) {
  FaceBook book;
  const Font font{&book.face({"Liberation Sans"}), 10};
  const double snow = textWidth(font, u"\u2603");
  EXPECT_GT(snow, 1);
  EXPECT_NEAR(textWidth(font, u"ab\u2603"), textWidth(font, u"ab") + snow, 0.01);
  EXPECT_NEAR(textWidth({font.face, 20}, u"ab"), 2 * textWidth(font, u"ab"), 1e-9);
}

TEST(Text, LoneSurrogatesAreReplaced) {
  const char16_t units[] = {0xD83D, u'a', 0xDE00, 0xD83D, 0xDE00};
  EXPECT_EQ(toUtf8({units, 5}),
            "\xEF\xBF\xBD"
            "a\xEF\xBF\xBD\xF0\x9F\x98\x80");
}

}  // namespace
}  // namespace veltgeneral::drawing
