// Members that rewrite a text unit by unit: the normalisers and the cipher.
#include <gtest/gtest.h>

#include <numeric>
#include <random>
#include <tuple>
#include <vector>

#include "automation/code_page.h"
#include "automation/coerce.h"
#include "support/results.h"
#include "support/test_host.h"
#include "veltgeneral/funzioni.h"

namespace veltgeneral {
namespace {

// What normStringOnlyAscii blanks, by codes of the code page.
Text notAscii() {
  Text all;
  for (int code = 0; code < 160; ++code) {
    const char16_t c = systemCodePage().character(static_cast<std::uint8_t>(code));
    const bool stays = (c >= u' ' && c <= u'~') || TextView(u"\b\t\n\r‘’").find(c) != Text::npos;
    if (!stays) all.push_back(c);
  }
  return all;
}

const struct Member {
  const char* name;
  ErrInfo (Funzioni::*call)(TextView, Text&) const;
  Text replaced;
  std::vector<TextView> by;  // each by its text, the rest by blanks
} kMembers[] = {
    {"normStringForDb", &Funzioni::normStringForDb, u"'`\r\n", {u"''"}},
    {"normStringNoCRLF", &Funzioni::normStringNoCRLF, u"\r\n", {}},
    {"normStringOnlyAscii", &Funzioni::normStringOnlyAscii, notAscii(), {}},
    {"normStringOnlyApice", &Funzioni::normStringOnlyApice, u"'", {u"''"}},
    {"normStringForXML",
     &Funzioni::normStringForXML,
     u"&<>'èéàùòì",
     {u"&amp;", u"&lt;", u"&gt;", u"`", u"e`", u"e`", u"a`", u"u`", u"o`", u"i`"}},
};

// By the rule, one character at a time.
Text expectedOf(const Member& member, TextView text) {
  Text expected;
  for (const char16_t c : text) {
    const std::size_t at = member.replaced.find(c);
    const bool stays = at == Text::npos;
    expected += stays ? TextView(&c, 1) : at < member.by.size() ? member.by[at] : u" ";
  }
  expected.resize(trimRight(expected).size());
  return expected.empty() ? Text(u" ") : expected;
}

// Texts of all lengths and densities, so that every block boundary is met; the output is the input.
TEST(Normalise, ByBlocksAsByCharacters) {
  static constexpr TextView kOdd = u" Z'`\r\n&<>èéàùòìÉ \t\x0B\x7F€‘“–Ω\x81\xFF中";
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
  for (int round = 0; round < 1000; ++round) {
    const unsigned density = 1u << (random() % 12);
    Text text(random() % 3000, u'~');
    for (char16_t& c : text)
      if (random() % density == 0) c = kOdd[random() % kOdd.size()];
    check(text);
  }
  Text all(65536, u'\0');
  std::iota(all.begin(), all.end(), u'\0');
  check(TextView(all).substr(0, 32767));
  check(TextView(all).substr(32767, 32767));
}

TEST(Normalise, TextsTooLongToCountAndAbsentOnes) {
  const test::TestHost host;
  const Funzioni f;
  for (const Member& member : kMembers) {
    Text text(32767, u'x');
    EXPECT_TRUE((f.*member.call)(text, text).isSuccess());
    Text out = u"before";
    EXPECT_EQ(test::fields((f.*member.call)(text + u'\'', out)),
              test::ofModule(6, "Overflow", member.name));
    EXPECT_EQ(out, u"before");
  }
  const auto done = test::ofModule(0, "", "normStringOnlyApice");
  const std::tuple<Variant, Variant, test::Fields> cases[] = {
      {Empty{}, Null{}, test::fresh()},
      {Null{}, Null{}, test::fresh()},
      {Text(u"l'uno "), Text(u"l''uno"), done},
      {std::int16_t{-7}, Text(u"-7"), done},
      // What has no text fails here, what is too long fails where the apostrophes are doubled.
      {Bytes{1}, true, test::ofModule(13, "Type mismatch", "normStringOnlyApiceWithNull")},
      {Text(32768, u'x'), true, test::ofModule(6, "Overflow", "normStringOnlyApice")}};
  for (const auto& [value, expected, result] : cases) {
    Variant out = true;
    EXPECT_EQ(test::fields(f.normStringOnlyApiceWithNull(value, out)), result);
    EXPECT_EQ(out, expected);
  }
  EXPECT_EQ(host.logged(), 5 + 2);
}

TEST(Cipher, EveryCodeInAnyPlaceIsShiftedOrRefused) {
  const test::TestHost host;
  const Funzioni f;
  const CodePage& page = systemCodePage();
  const auto check = [&](const char* name, auto member, int code, int by, std::size_t place) {
    const auto shifted = static_cast<std::uint8_t>(code + by);
    const bool fits = shifted == code + by;
    Text text(10000, u'm');
    text[place] = page.character(static_cast<std::uint8_t>(code));
    Text expected(text.size(), static_cast<char16_t>(u'm' + by));
    expected[place] = page.character(shifted);
    Text out = u"before";
    const ErrInfo result = (f.*member)(text, out);
    ASSERT_EQ(out, fits ? expected : u"before") << code;
    (f.*member)(text, text);
    ASSERT_EQ(text == expected, fits) << code;
    ASSERT_EQ(test::fields(result),
              test::ofModule(fits ? 0 : 5, fits ? "" : "Invalid procedure call or argument", name));
  };
  for (int code = 0; code < 256; ++code) {
    for (const std::size_t place : {0, 63, 64, 1023, 1024, 9999}) {
      check("simpleEncrypt", &Funzioni::simpleEncrypt, code, 10, place);
      check("simpleDecrypt", &Funzioni::simpleDecrypt, code, -10, place);
    }
  }
  EXPECT_EQ(host.logged(), 2 * 120);  // ten codes of each member, in six places
  // A character that the page does not have counts as "?".
  Text text = u"Ω中";
  f.simpleEncrypt(text, text);
  EXPECT_EQ(text, u"II");
}

}  // namespace
}  // namespace veltgeneral
