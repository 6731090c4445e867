#include "platform/linux/settings/profile_file.h"

#include <gtest/gtest.h>

#include "platform/linux/settings/settings_text.h"
#include "support.h"

namespace veltgeneral::platform {
namespace {

using test::latin1;

std::string wide(std::string_view latin) {
  return std::string(kUtf16Mark) + utf16OfInner(innerOfPage(latin, latin1()));
}

// A part of the text that the rules of reading are told by.
constexpr std::string_view kSample =
    "unreachable=1\r\n"
    "  [ Main ]  trailing\r"
    "; comment=1\n"
    " Key = value ; kept \r\n"
    "key=second\n"
    "no equals here\n"
    "quoted=\" blanks \"\n"
    "single='x'\n"
    "uneven=\"x'\n"
    "lone=\"\n"
    "empty=\n"
    "=nameless\n"
    "a=b=c\r"
    "#hash=1\n"
    "[open=bracket\n"
    "\xE8=umlaut\n"
    "[other]\n"
    "[MAIN]\n"
    "late=1\n"
    "[x]y]\n"
    "k=1";

TEST(ProfileFile, Reads) {
  struct Case {
    TextView section, key;
    std::optional<Text> value;
  };
  const Case cases[] = {
      {u"main", u"KEY", u"value ; kept"},
      {u" main ", u" key ", u"value ; kept"},
      {u"main", u"quoted", u" blanks "},
      {u"main", u"single", u"x"},
      {u"main", u"uneven", u"\"x'"},
      {u"main", u"lone", u"\""},
      {u"main", u"empty", u""},
      {u"main", u"", u"nameless"},
      {u"main", u"a", u"b=c"},
      {u"main", u"#hash", u"1"},
      {u"main", u"[open", u"bracket"},
      {u"main", u"È", u"umlaut"},
      {u"x]y", u"k", u"1"},
      // Comments, lines without "=", the second of equal sections, what precedes them all.
      {u"main", u"; comment", std::nullopt},
      {u"main", u"no equals here", std::nullopt},
      {u"main", u"late", std::nullopt},
      {u"", u"unreachable", std::nullopt},
      {u"nowhere", u"k", std::nullopt},
  };
  for (const std::string& bytes : {std::string(kSample), wide(kSample)}) {
    ProfileFile file(bytes, latin1());
    for (const Case& c : cases) {
      SCOPED_TRACE(toUtf8(c.section) + "/" + toUtf8(c.key));
      EXPECT_EQ(file.value(c.section, c.key), c.value);
    }
    EXPECT_EQ(file.sectionNames(), Text(u"Main\0other\0MAIN\0x]y\0", 20));
    EXPECT_EQ(file.keyNames(u"x]y"), Text(u"k\0", 2));
    EXPECT_EQ(file.keyNames(u"OTHER"), Text());
  }
}

TEST(ProfileFile, EditsTouchTheLinesTheyMust) {
  struct Case {
    std::string_view before;
    Text section;
    std::optional<Text> key, text;
    std::optional<std::string_view> after;
  };
  const Case cases[] = {
      {"", u"s", u"k", u"v", "[s]\r\nk=v\r\n"},
      {"[s]\nk = old \nk=2\n", u"S", u"K", u"new", "[s]\nk = new\nk=2\n"},
      {"[s]\rk=\r\r", u"s", u"k", u"v", "[s]\rk=v\r\r"},
      {"[s]\nk=v\n", u"s", u"k", u"v", std::nullopt},
      // Blanks before the old value stay, unless the new one has its own: they would add up.
      {"[s]\nk=  v\n", u"s", u"k", u"  v", std::nullopt},
      {"[s]\nk=  v\n", u"s", u"k", u" w ", "[s]\nk= w \n"},
      // Behind the last key, before blank lines and comments.
      {"[s]\na=1\n; c\nb=2\n\n; t\n[t]\n", u"s", u"k", u"v",
       "[s]\na=1\n; c\nb=2\nk=v\n\n; t\n[t]\n"},
      {"[s]\n\n[t]\n", u"s", u"k", u"v", "[s]\nk=v\n\n[t]\n"},
      // A missing last line end is supplied, in the style around it.
      {"[s]\na=1", u"s", u"k", u"v", "[s]\na=1\nk=v\n"},
      {"[s]\r\na=1", u"t", u"k", u"v", "[s]\r\na=1\r\n[t]\r\nk=v\r\n"},
      {"[s]", u"s", u"k", u"v", "[s]\r\nk=v\r\n"},
      {"[s]\na=1\nb=2", u"s", u"A", std::nullopt, "[s]\nb=2"},
      {"[s]\na=1\na=2\n", u"s", u"a", std::nullopt, "[s]\na=2\n"},
      {"[s]\na=1\n", u"s", u"b", std::nullopt, std::nullopt},
      {"[s]\na=1\n", u"t", std::nullopt, std::nullopt, std::nullopt},
      // The whole first section, text or not, without the comment that leads the next one.
      {"; h\n[s]\na=1\n; in\nb=2\n\n; t\n[t]\n[S]\n", u"s", std::nullopt, u"ignored",
       "; h\n; t\n[t]\n[S]\n"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.before);
    const Text* key = c.key ? &*c.key : nullptr;
    const Text* text = c.text ? &*c.text : nullptr;
    const auto after = editProfile(c.before, c.section, key, text, false, latin1());
    EXPECT_EQ(after, c.after ? std::optional<std::string>(*c.after) : std::nullopt);
    const auto wideAfter = editProfile(wide(c.before), c.section, key, text, false, latin1());
    EXPECT_EQ(wideAfter, c.after ? std::optional(wide(*c.after)) : std::nullopt);
  }
}

TEST(ProfileFile, UnitsOfEveryKindSurviveAnEdit) {
  const Text key = u"k";
  const Text text = u"\U0001F600 \xDC00";
  // A lone surrogate, a NUL and half a unit at the end.
  const std::string before = std::string("\xFF\xFE[\0s\0]\0\n\0\x00\xD8=\0\0\0x", 17);
  const auto after = editProfile(before, u"s", &key, &text, false, latin1());
  ASSERT_TRUE(after);
  EXPECT_TRUE(after->starts_with(before.substr(0, 16)));
  EXPECT_EQ(after->back(), 'x');
  EXPECT_EQ(ProfileFile(*after, latin1()).value(u"s", u"k"), text);
  const Text page = u"\u20AC\xE8";
  EXPECT_EQ(*editProfile("", u"s", &key, &page, false, latin1()), "[s]\r\nk=?\xE8\r\n");
  EXPECT_EQ(
      ProfileFile(*editProfile("", u"s", &key, &page, true, latin1()), latin1()).value(u"s", u"k"),
      page);
}

}  // namespace
}  // namespace veltgeneral::platform
