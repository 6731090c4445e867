#include <gtest/gtest.h>

#include <map>
#include <numeric>
#include <random>

#include "automation/code_page.h"
#include "automation/coerce.h"
#include "support/results.h"
#include "support/test_host.h"
#include "veltgeneral/funzioni.h"

namespace veltgeneral {
namespace {

using Replacements = std::map<char16_t, TextView>;

// What it blanks, by codes of the code page.
Replacements notAscii() {
  Replacements all;
  for (int code = 0; code < 160; ++code) {
    const char16_t c = systemCodePage().character(static_cast<std::uint8_t>(code));
    const bool stays = (c >= u' ' && c <= u'~') || TextView(u"\b\t\n\r‘’").find(c) != Text::npos;
    if (!stays) all[c] = u" ";
  }
  return all;
}

const Replacements kForXml{{u'&', u"&amp;"}, {u'è', u"e`"}, {u'é', u"e`"}, {u'à', u"a`"},
                           {u'ù', u"u`"},    {u'ò', u"o`"}, {u'ì', u"i`"}, {u'<', u"&lt;"},
                           {u'>', u"&gt;"},  {u'\'', u"`"}};

const struct Member {
  const char* name;
  ErrInfo (Funzioni::*call)(TextView, Text&) const;
  Replacements replaced;
} kMembers[] = {
    {"normStringForDb",
     &Funzioni::normStringForDb,
     {{u'\'', u"''"}, {u'`', u" "}, {u'\r', u" "}, {u'\n', u" "}}},
    {"normStringNoCRLF", &Funzioni::normStringNoCRLF, {{u'\r', u" "}, {u'\n', u" "}}},
    {"normStringOnlyAscii", &Funzioni::normStringOnlyAscii, notAscii()},
    {"normStringOnlyApice", &Funzioni::normStringOnlyApice, {{u'\'', u"''"}}},
    {"normStringForXML", &Funzioni::normStringForXML, kForXml},
};

// By the rule, one character at a time.
Text expectedOf(const Member& member, TextView text) {
  Text expected;
  for (const char16_t c : text) {
    const auto row = member.replaced.find(c);
    expected += row == member.replaced.end() ? TextView(&c, 1) : row->second;
  }
  expected.resize(trimRight(expected).size());
  return expected.empty() ? Text(u" ") : expected;
}

// Texts of all lengths and densities, so that every block boundary is met; the output is the input.
TEST(Normalise, ByBlocksAsByCharacters) {
  static constexpr TextView kOdd = u"'`\r\n&<>èéàùòìÉ \t\x0B\x7F€‘“–Ω\x81\xFF中";
  const Funzioni f;
  const auto check = [&](TextView given) {
    for (const Member& member : kMembers) {
      Text text(given);
      ASSERT_EQ(test::fields((f.*member.call)(text, text)), test::ofModule(0, "", member.name));
      ASSERT_EQ(text, expectedOf(member, given)) << member.name << ' ' << toUtf8(given);
    }
  };
  check(u"");
  check(u"   ");
  std::mt19937 random(11);
  for (int round = 0; round < 4000; ++round) {
    const unsigned density = 1u << (random() % 12);
    Text text(random() % 700, u'\0');
    for (char16_t& c : text) {
      c = random() % density == 0 ? kOdd[random() % kOdd.size()]
                                  : static_cast<char16_t>(u' ' + random() % 95);
    }
    check(text);
  }
  Text all(65536, u'\0');
  std::iota(all.begin(), all.end(), u'\0');
  check(TextView(all).substr(0, 32767));
  check(TextView(all).substr(32767, 32767));
}

TEST(Normalise, TextsTooLongToCountAreReportedLoggedAndLeftAlone) {
  const test::TestHost host;
  const Funzioni f;
  for (const Member& member : kMembers) {
    Text text(32767, u'x');
    EXPECT_TRUE((f.*member.call)(text, text).isSuccess());
    Text out = u"before";
    EXPECT_EQ(test::fields((f.*member.call)(text + u'\'', out)),
              test::ofModule(6, "Overflow", member.name));
    EXPECT_EQ(out, u"before");
    EXPECT_NE(host.get("home/tarnview.log").find(member.name), std::string::npos);
  }
}

TEST(Normalise, VariantsKeepTheAbsenceOfAValue) {
  const test::TestHost host;
  const Funzioni f;
  const Text tooLong(32768, u'x');
  const auto done = test::ofModule(0, "", "normStringOnlyApice");
  const std::tuple<Variant, Variant, decltype(test::fresh())> cases[] = {
      {Empty{}, Null{}, test::fresh()},
      {Null{}, Null{}, test::fresh()},
      {Text(u"l'uno "), Text(u"l''uno"), done},
      {std::int16_t{-7}, Text(u"-7"), done},
      // What has no text fails here, what is too long fails where the apostrophes are doubled.
      {Bytes{1}, true, test::ofModule(13, "Type mismatch", "normStringOnlyApiceWithNull")},
      {tooLong, true, test::ofModule(6, "Overflow", "normStringOnlyApice")},
  };
  for (const auto& [value, expected, result] : cases) {
    Variant out = true;
    EXPECT_EQ(test::fields(f.normStringOnlyApiceWithNull(value, out)), result);
    EXPECT_EQ(out, expected);
  }
  EXPECT_EQ(host.logged(), 2);
}

}  // namespace
}  // namespace veltgeneral
