#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <numeric>
#include <random>

#include "automation/code_page.h"
#include "automation/coerce.h"
#include "settings/support.h"
#include "support/results.h"
#include "veltgeneral/funzioni.h"

namespace veltgeneral {
namespace {

using Normaliser = ErrInfo (Funzioni::*)(TextView, Text&) const;

// A member and its rule in full, one character at a time.
struct Member {
  const char* name;
  Normaliser call;
  std::function<Text(char16_t)> replaced;
};

Text byTable(const std::map<char16_t, TextView>& table, char16_t c) {
  const auto row = table.find(c);
  return row == table.end() ? Text(1, c) : Text(row->second);
}

Text byCode(char16_t c) {
  const int code = systemCodePage().byte(c);
  const bool goes = code <= 7 || code == 11 || code == 12 || (code >= 14 && code <= 31) ||
                    (code >= 127 && code <= 144) || (code >= 147 && code <= 159);
  return Text(1, goes ? u' ' : c);
}

const std::map<char16_t, TextView> kForDb{
    {u'\'', u"''"}, {u'`', u" "}, {u'\r', u" "}, {u'\n', u" "}};
const std::map<char16_t, TextView> kForXml{
    {u'&', u"&amp;"}, {u'è', u"e`"}, {u'é', u"e`"},   {u'à', u"a`"},   {u'ù', u"u`"},
    {u'ò', u"o`"},    {u'ì', u"i`"}, {u'<', u"&lt;"}, {u'>', u"&gt;"}, {u'\'', u"`"}};

const Member kMembers[] = {
    {"normStringForDb", &Funzioni::normStringForDb, [](char16_t c) { return byTable(kForDb, c); }},
    {"normStringNoCRLF", &Funzioni::normStringNoCRLF,
     [](char16_t c) { return Text(1, c == u'\r' || c == u'\n' ? u' ' : c); }},
    {"normStringOnlyAscii", &Funzioni::normStringOnlyAscii, byCode},
    {"normStringOnlyApice", &Funzioni::normStringOnlyApice,
     [](char16_t c) { return c == u'\'' ? Text(u"''") : Text(1, c); }},
    {"normStringForXML", &Funzioni::normStringForXML,
     [](char16_t c) { return byTable(kForXml, c); }},
};

Text expectedOf(const Member& member, TextView text) {
  Text expected;
  for (const char16_t c : text) expected += member.replaced(c);
  expected.resize(trimRight(expected).size());
  return expected.empty() ? Text(u" ") : expected;
}

struct Sample {
  TextView text;
  TextView expected[5];  // in the members' order
};

constexpr Sample kSamples[] = {
    {u"O'Neil `x`", {u"O''Neil  x", u"O'Neil `x`", u"O'Neil `x`", u"O''Neil `x`", u"O`Neil `x`"}},
    {u"a\r\nb\r\n", {u"a  b", u"a  b", u"a\r\nb\r\n", u"a\r\nb\r\n", u"a\r\nb\r\n"}},
    {u"  <è> & \"ì\"É",
     {u"  <è> & \"ì\"É", u"  <è> & \"ì\"É", u"  <è> & \"ì\"É", u"  <è> & \"ì\"É",
      u"  &lt;e`&gt; &amp; \"i`\"É"}},
    {u"€“x”‘y’\t–Ω",
     {u"€“x”‘y’\t–Ω", u"€“x”‘y’\t–Ω", u"  x ‘y’\t Ω", u"€“x”‘y’\t–Ω", u"€“x”‘y’\t–Ω"}},
    {u"&lt;", {u"&lt;", u"&lt;", u"&lt;", u"&lt;", u"&amp;lt;"}},
    {u"   ", {u" ", u" ", u" ", u" ", u" "}},
    {u"", {u" ", u" ", u" ", u" ", u" "}},
    {TextView(u"\0x", 2),
     {TextView(u"\0x", 2), TextView(u"\0x", 2), u" x", TextView(u"\0x", 2), TextView(u"\0x", 2)}},
};

TEST(Normalise, ByTables) {
  const Funzioni f;
  for (const Sample& sample : kSamples) {
    for (std::size_t i = 0; i < std::size(kMembers); ++i) {
      SCOPED_TRACE(std::string(kMembers[i].name).append(" ").append(toUtf8(sample.text)));
      Text same(sample.text);
      EXPECT_EQ(test::fields((f.*kMembers[i].call)(same, same)),
                test::ofModule(0, "", kMembers[i].name));
      EXPECT_EQ(same, sample.expected[i]);
    }
  }
}

// Texts of all lengths and densities, so that every block boundary is met.
TEST(Normalise, ByBlocksAsByCharacters) {
  const Funzioni f;
  std::mt19937 random(11);
  static constexpr TextView kOdd = u"'`\r\n&<>èéàùòìÉ \t\x0B\x7F€‘“–Ω\x81\xFF中";
  for (int round = 0; round < 4000; ++round) {
    const unsigned density = 1u << (random() % 12);
    Text text(random() % 700, u'\0');
    for (char16_t& c : text) {
      c = random() % density == 0 ? kOdd[random() % kOdd.size()]
                                  : static_cast<char16_t>(u' ' + random() % 95);
    }
    for (const Member& member : kMembers) {
      Text out;
      (f.*member.call)(text, out);
      ASSERT_EQ(out, expectedOf(member, text)) << member.name << ' ' << toUtf8(text);
    }
  }
  Text all(65536, u'\0');
  std::iota(all.begin(), all.end(), u'\0');
  for (const TextView half : {TextView(all).substr(0, 32767), TextView(all).substr(32767, 32767)}) {
    for (const Member& member : kMembers) {
      Text out;
      (f.*member.call)(half, out);
      EXPECT_EQ(out, expectedOf(member, half)) << member.name;
    }
  }
}

TEST(Normalise, TextsTooLongToCountAreReportedLoggedAndLeftAlone) {
  const test::TestHost host;
  const Funzioni f;
  for (const Member& member : kMembers) {
    Text text(32767, u'x');
    EXPECT_TRUE((f.*member.call)(text, text).isSuccess());
    text += u'\'';
    Text out = u"before";
    EXPECT_EQ(test::fields((f.*member.call)(text, out)),
              test::ofModule(6, "Overflow", member.name));
    EXPECT_EQ(out, u"before");
    const std::string log = test::contentOf(host / "home/tarnview.log");
    const std::string place = std::string("[VELTGENERAL] [") + member.name + "]";
    EXPECT_NE(log.find(place), std::string::npos) << log;
  }
}

TEST(Normalise, VariantsKeepTheAbsenceOfAValue) {
  const test::TestHost host;
  const Funzioni f;
  for (const Variant& none : {Variant(Empty{}), Variant(Null{})}) {
    Variant out = Text(u"before");
    EXPECT_EQ(test::fields(f.normStringOnlyApiceWithNull(none, out)), test::fresh());
    EXPECT_EQ(out, Variant(Null{}));
  }
  Variant value = Text(u"l'uno ");
  EXPECT_EQ(test::fields(f.normStringOnlyApiceWithNull(value, value)),
            test::ofModule(0, "", "normStringOnlyApice"));
  EXPECT_EQ(value, Variant(Text(u"l''uno")));
  Variant out;
  f.normStringOnlyApiceWithNull(std::int16_t{-7}, out);
  EXPECT_EQ(out, Variant(Text(u"-7")));

  // What has no text fails here, what is too long fails where the apostrophes are doubled.
  EXPECT_EQ(test::fields(f.normStringOnlyApiceWithNull(Bytes{1}, out)),
            test::ofModule(13, "Type mismatch", "normStringOnlyApiceWithNull"));
  EXPECT_EQ(test::fields(f.normStringOnlyApiceWithNull(Text(32768, u'x'), out)),
            test::ofModule(6, "Overflow", "normStringOnlyApice"));
  EXPECT_EQ(out, Variant(Text(u"-7")));
  const std::string log = test::contentOf(host / "home/tarnview.log");
  EXPECT_EQ(std::ranges::count(log, '\n'), 2);
}

}  // namespace
}  // namespace veltgeneral
