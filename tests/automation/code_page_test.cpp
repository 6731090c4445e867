#include "automation/code_page.h"

#include <gtest/gtest.h>

#include <numeric>

#include "support/error_of.h"

namespace veltgeneral {
namespace {

TEST(CodePage, EveryByteSurvivesARoundTrip) {
  std::string bytes(256, '\0');
  std::iota(bytes.begin(), bytes.end(), '\0');
  for (const char* name : {"CP1252", "windows-1252", "ISO-8859-15", "CP850", "US-ASCII", "CP037"}) {
    const CodePage page(name);
    EXPECT_EQ(toBytes(fromBytes(bytes, page), page), bytes) << name;
  }
  // The built-in page is the host's own, which goes by another name there.
  EXPECT_EQ(fromBytes(bytes, CodePage("CP1252")), fromBytes(bytes, CodePage("MS-ANSI")));
}

TEST(CodePage, CharactersOutsideItAreNotGuessed) {
  const CodePage page("CP1252");
  EXPECT_EQ(toBytes(u"\u2032\u02BC\uFF07\u0101\U0001F600", page), "??????");
  EXPECT_EQ(toBytes(u"è€\u2019\u0081", page), "\xE8\x80\x92\x81");
}

TEST(CodePage, BlocksAndTheirEdgesAgreeWithSingleCharacters) {
  const CodePage page("CP1252");
  for (const char16_t odd : {u'€', u'\xE8', u'\u0141', u'\uFF41'}) {
    for (const std::size_t size : {1, 63, 64, 65, 200}) {
      for (std::size_t at = 0; at < size; at += 21) {
        Text text(size, u'a');
        text[at] = odd;
        std::string expected(size, 'a');
        expected[at] = static_cast<char>(page.byte(odd));
        ASSERT_EQ(toBytes(text, page), expected);
        if (expected[at] == '?') text[at] = u'?';
        ASSERT_EQ(fromBytes(expected, page), text);
      }
    }
  }
}

TEST(CodePage, OnlySingleBytePagesServe) {
  for (const char* name : {"UTF-8", "UTF-16", "UTF-7", "SHIFT-JIS", "EUC-JP", "no such page", ""}) {
    EXPECT_NE(errorOf([&] { const CodePage page(name); }), 0) << name;
  }
}

}  // namespace
}  // namespace veltgeneral
