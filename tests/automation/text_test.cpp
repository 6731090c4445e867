#include "veltgeneral/text.h"

#include <gtest/gtest.h>

#include <tuple>

namespace veltgeneral {
namespace {

TEST(Text, CrossesTheRimBothWays) {
  // The way back differs only from what was malformed.
  const std::tuple<std::string_view, TextView, std::string_view> cases[] = {
      {"", u"", ""},
      {std::string_view("a\0b", 3), TextView(u"a\0b", 3), std::string_view("a\0b", 3)},
      {"\xC3\xA8\xE2\x82\xAC", u"è€", "\xC3\xA8\xE2\x82\xAC"},
      {"\xF0\x9F\x98\x80", u"\U0001F600", "\xF0\x9F\x98\x80"},
      // Malformed: a stray tail, an overlong form, a coded surrogate, beyond the last character.
      {"a\x80z", u"a\uFFFDz", "a\uFFFDz"},
      {"\xC0\xAF", u"\uFFFD\uFFFD", "\uFFFD\uFFFD"},
      {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD", "\uFFFD\uFFFD\uFFFD"},
      {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD", "\uFFFD\uFFFD\uFFFD\uFFFD"},
      // Cut short: one replacement for the whole piece.
      {"\xE2\x82", u"\uFFFD", "\uFFFD"},
      {"\xE2\x82z", u"\uFFFDz", "\uFFFDz"},
  };
  for (const auto& [utf8, text, back] : cases) {
    EXPECT_EQ(fromUtf8(utf8), text) << utf8;
    EXPECT_EQ(toUtf8(text), back) << utf8;
  }
  // Surrogates without their other half.
  EXPECT_EQ(toUtf8(Text{0xD83D, u'a', 0xDE00, 0xD83D}), "\uFFFDa\uFFFD\uFFFD");
}

}  // namespace
}  // namespace veltgeneral
