// Text on its way to the bytes outside, and back: UTF-8 and the code pages.
#include "veltgeneral/text.h"

#include <gtest/gtest.h>

#include <numeric>
#include <tuple>

#include "automation/code_page.h"
#include "support/error_of.h"

namespace veltgeneral {
namespace {

TEST(Text, CrossesTheRimBothWays) {
  // The way back differs only from what was malformed.
  const std::tuple<std::string_view, TextView, std::string_view> cases[] = {
      {std::string_view("a\0b", 3), TextView(u"a\0b", 3), std::string_view("a\0b", 3)},
      {"\xC3\xA8\xE2\x82\xAC", u"è€", "\xC3\xA8\xE2\x82\xAC"},
      {"\xF0\x9F\x98\x80", u"\U0001F600", "\xF0\x9F\x98\x80"},
      // Malformed: a stray tail, an overlong form, a coded surrogate, beyond the last character.
      {"a\x80z", u"a\uFFFDz", "a\uFFFDz"},
      {"\xC0\xAF", u"\uFFFD\uFFFD", "\uFFFD\uFFFD"},
      {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD", "\uFFFD\uFFFD\uFFFD"},
      {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD", "\uFFFD\uFFFD\uFFFD\uFFFD"},
      // Cut short: one replacement for the whole piece.
      {"\xE2\x82z\xE2\x82", u"\uFFFDz\uFFFD", "\uFFFDz\uFFFD"},
  };
  for (const auto& [utf8, text, back] : cases) {
    EXPECT_EQ(fromUtf8(utf8), text) << utf8;
    EXPECT_EQ(toUtf8(text), back) << utf8;
  }
  // Surrogates without their other half.
  EXPECT_EQ(toUtf8(Text{0xD83D, u'a', 0xDE00, 0xD83D}), "\uFFFDa\uFFFD\uFFFD");
}

TEST(CodePage, BytesSurviveARoundTripAndStrangeCharactersAreNotGuessed) {
  std::string bytes(256, '\0');
  std::iota(bytes.begin(), bytes.end(), '\0');
  for (const char* name : {"CP1252", "windows-1252", "ISO-8859-15", "CP850", "US-ASCII", "CP037"}) {
    const CodePage page(name);
    EXPECT_EQ(toBytes(fromBytes(bytes, page), page), bytes) << name;
  }
  // The built-in page is the host's own, which goes by another name there.
  const CodePage page("CP1252");
  EXPECT_EQ(fromBytes(bytes, page), fromBytes(bytes, CodePage("MS-ANSI")));
  // In a text that is longer than the blocks of ASCII, and at their edges.
  for (const std::size_t at : {0, 63, 64, 65, 199}) {
    Text text(200, u'a');
    text.replace(at, 1, u"\u2032\u02BCè\uFF07€\u0101\U0001F600");
    EXPECT_EQ(toBytes(text, page).substr(at, 8), "??\xE8?\x80???");
  }
  for (const char* name : {"UTF-8", "UTF-16", "UTF-7", "SHIFT-JIS", "EUC-JP", "no such page", ""})
    EXPECT_NE(errorOf([&] { const CodePage none(name); }), 0) << name;
}

}  // namespace
}  // namespace veltgeneral
