#include "automation/code_page.h"

#include <gtest/gtest.h>

#include <numeric>

#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

TEST(CodePage, EveryByteSurvivesARoundTrip) {
  std::string bytes(256, '\0');
  std::iota(bytes.begin(), bytes.end(), '\0');
  for (const char* name : {"CP1252", "windows-1252", "ISO-8859-15", "CP850", "US-ASCII", "CP037"}) {
    SCOPED_TRACE(name);
    const CodePage page(name);
    EXPECT_EQ(toBytes(fromBytes(bytes, page), page), bytes);
  }
}

TEST(CodePage, TheBuiltInPageIsTheHostsOwn) {
  // Through another name, which the host resolves.
  const CodePage host("MS-ANSI");
  const CodePage page("CP1252");
  for (unsigned byte = 0; byte < 256; ++byte) {
    EXPECT_EQ(page.character(static_cast<std::uint8_t>(byte)),
              host.character(static_cast<std::uint8_t>(byte)))
        << byte;
  }
  EXPECT_EQ(page.character(0x81), 0x81);
}

TEST(CodePage, CharactersOutsideItAreNotGuessed) {
  const CodePage page("CP1252");
  EXPECT_EQ(toBytes(u"\u2032\u02BC\uFF07\u0101\U0001F600", page), "??????");
  EXPECT_EQ(toBytes(u"è€\u2019", page), "\xE8\x80\x92");
}

TEST(CodePage, BlocksAndTheirEdgesAgreeWithSingleCharacters) {
  const CodePage page("CP1252");
  for (const char16_t odd : {u'€', u'\xE8', u'\u0141', u'\uFF41'}) {
    for (std::size_t size : {0, 1, 63, 64, 65, 200}) {
      for (std::size_t at = 0; at < size; at += 21) {
        Text text(size, u'a');
        text[at] = odd;
        std::string expected(size, 'a');
        expected[at] = static_cast<char>(page.byte(odd));
        ASSERT_EQ(toBytes(text, page), expected);
        if (expected[at] != '?') {
          ASSERT_EQ(fromBytes(expected, page), text);
        }
      }
    }
  }
}

TEST(CodePage, OnlySingleBytePagesServe) {
  for (const char* name : {"UTF-8", "UTF-16", "UTF-7", "SHIFT-JIS", "EUC-JP", "no such page", ""}) {
    EXPECT_THROW(CodePage{name}, RuntimeError) << name;
  }
}

}  // namespace
}  // namespace veltgeneral
