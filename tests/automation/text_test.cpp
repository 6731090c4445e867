#include "veltgeneral/text.h"

#include <gtest/gtest.h>

namespace veltgeneral {
namespace {

struct Case {
  std::string_view utf8;
  TextView text;
  std::string_view back;  // differs from `utf8` only where that was malformed
};

const Case kCases[] = {
    {"", u"", ""},
    {"ab", u"ab", "ab"},
    {"\xC3\xA8\xE2\x82\xAC", u"è€", "\xC3\xA8\xE2\x82\xAC"},
    {"\xF0\x9F\x98\x80", u"\U0001F600", "\xF0\x9F\x98\x80"},
    // Malformed: a stray tail, an overlong form, a coded surrogate, beyond the last character.
    {"a\x80z", u"a\uFFFDz", "a\xEF\xBF\xBDz"},
    {"\xC0\xAF", u"\uFFFD\uFFFD", "\xEF\xBF\xBD\xEF\xBF\xBD"},
    {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
    {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD",
     "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
    // Cut short: one replacement for the whole piece.
    {"\xE2\x82", u"\uFFFD", "\xEF\xBF\xBD"},
    {"\xE2\x82z", u"\uFFFDz", "\xEF\xBF\xBDz"},
};

TEST(Text, CrossesTheRimBothWays) {
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.utf8);
    EXPECT_EQ(fromUtf8(c.utf8), c.text);
    EXPECT_EQ(toUtf8(c.text), c.back);
  }
  EXPECT_EQ(toUtf8(TextView(u"a\0b", 3)), std::string("a\0b", 3));
}

TEST(Text, LoneSurrogatesAreReplaced) {
  const char16_t units[] = {0xD83D, u'a', 0xDE00, 0xD83D};
  EXPECT_EQ(toUtf8(TextView(units, 4)),
            "\xEF\xBF\xBD"
            "a\xEF\xBF\xBD\xEF\xBF\xBD");
}

}  // namespace
}  // namespace veltgeneral
