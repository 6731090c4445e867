#include "platform/linux/settings/profile_file.h"

#include <gtest/gtest.h>

#include "platform/linux/settings/settings_text.h"
#include "support/test_host.h"

namespace veltgeneral::platform {
namespace {

using test::latin1;
using test::withLineEnds;

std::string wide(std::string_view latin) {
  return std::string(kUtf16Mark) + utf16OfInner(innerOfPage(latin, latin1()));
}

TEST(ProfileFile, Reads) {
  // "|" ends a line.
  constexpr std::string_view kSample =
      "unreachable=1|  [ Main ]  trailing|; comment=1| Key = value ; kept |key=second|"
      "no equals here|quoted=\" blanks \"|single='x'|uneven=\"x'|lone=\"|empty=|=nameless|a=b=c|"
      "#hash=1|[open=bracket|\xE8=umlaut|[other]|[MAIN]|late=1|[x]y]|k=1";
  const struct {
    TextView section, key;
    std::optional<Text> value;
  } kCases[] = {
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
  for (const char* lineEnd : {"\n", "\r\n", "\r"}) {
    const std::string narrow = withLineEnds(kSample, lineEnd);
    for (const std::string& bytes : {narrow, wide(narrow)}) {
      ProfileFile file(bytes, latin1());
      for (const auto& [section, key, value] : kCases) {
        EXPECT_EQ(file.value(section, key), value) << toUtf8(section) << "/" << toUtf8(key);
      }
      EXPECT_EQ(file.sectionNames(), Text(u"Main\0other\0MAIN\0x]y\0", 20));
      EXPECT_EQ(file.keyNames(u"x]y"), Text(u"k\0", 2));
      EXPECT_EQ(file.keyNames(u"OTHER"), Text());
    }
  }
}

TEST(ProfileFile, EditsTouchTheLinesTheyMust) {
  const struct {
    std::string_view before;
    Text section;
    std::optional<Text> key, text;
    std::string_view after;
  } kCases[] = {
      {"[s]|k = old |k=2|", u"S", u"K", u"new", "[s]|k = new|k=2|"},
      {"[s]|k=v|", u"s", u"k", u"v", "[s]|k=v|"},
      {"[s]|k=||", u"s", u"k", u"v", "[s]|k=v||"},
      // Blanks before the old value stay, unless the new one has its own: they would add up.
      {"[s]|k=  v|", u"s", u"k", u"  v", "[s]|k=  v|"},
      {"[s]|k=  v|", u"s", u"k", u" w ", "[s]|k= w |"},
      // Behind the last key, before blank lines and comments.
      {"[s]|a=1|; c|b=2||; t|[t]|", u"s", u"k", u"v", "[s]|a=1|; c|b=2|k=v||; t|[t]|"},
      {"[s]||[t]|", u"s", u"k", u"v", "[s]|k=v||[t]|"},
      // A missing last line end is supplied, in the style around it.
      {"[s]|a=1", u"s", u"k", u"v", "[s]|a=1|k=v|"},
      {"[s]|a=1", u"t", u"k", u"v", "[s]|a=1|[t]|k=v|"},
      {"[s]|a=1|b=2", u"s", u"A", std::nullopt, "[s]|b=2"},
      {"[s]|a=1|a=2|", u"s", u"a", std::nullopt, "[s]|a=2|"},
      {"[s]|a=1|", u"s", u"b", std::nullopt, "[s]|a=1|"},
      {"[s]|a=1|", u"t", std::nullopt, std::nullopt, "[s]|a=1|"},
      // The whole first section, text or not, without the comment that leads the next one.
      {"; h|[s]|a=1|; in|b=2||; t||[t]|[S]|", u"s", std::nullopt, u"x", "; h|; t||[t]|[S]|"},
  };
  const auto edit = [](const std::string& bytes, const auto& c) {
    const auto pointerTo = [](const auto& text) { return text ? &*text : nullptr; };
    return editProfile(bytes, c.section, pointerTo(c.key), pointerTo(c.text), false, latin1());
  };
  for (const auto& c : kCases) {
    for (const char* lineEnd : {"\n", "\r\n", "\r"}) {
      const std::string before = withLineEnds(c.before, lineEnd);
      const std::string after = withLineEnds(c.after, lineEnd);
      EXPECT_EQ(edit(before, c).value_or("as it is"), before == after ? "as it is" : after);
      EXPECT_EQ(edit(wide(before), c).value_or(wide(before)), wide(after));
    }
  }
}

TEST(ProfileFile, UnitsOfEveryKindSurviveAnEdit) {
  const Text key = u"k", text = u"\U0001F600 \xDC00", page = u"\u20AC\xE8";
  // A lone surrogate, a NUL and half a unit at the end.
  const std::string before = std::string("\xFF\xFE[\0s\0]\0\n\0\x00\xD8=\0\0\0x", 17);
  const std::string after = editProfile(before, u"s", &key, &text, false, latin1()).value_or("");
  EXPECT_TRUE(after.starts_with(before.substr(0, 16)) && after.ends_with('x'));
  EXPECT_EQ(ProfileFile(after, latin1()).value(u"s", u"k"), text);
  for (const char* bytes : {"", "[s]"})
    EXPECT_EQ(editProfile(bytes, u"s", &key, &page, false, latin1()), "[s]\r\nk=?\xE8\r\n");
  const std::string made = editProfile("", u"s", &key, &page, true, latin1()).value_or("");
  EXPECT_EQ(ProfileFile(made, latin1()).value(u"s", u"k"), page);
}

}  // namespace
}  // namespace veltgeneral::platform
