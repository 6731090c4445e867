// The test and the reading are asked about every text, so a row also proves what is refused.
#include "automation/number_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <optional>
#include <random>
#include <vector>

#include "automation/coerce.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

struct Case {
  std::vector<TextView> texts;
  std::optional<double> us;
  std::optional<double> italian;
};

constexpr std::nullopt_t kNone = std::nullopt;

const Case kCases[] = {
    // text       US English  Italian
    {{u"0"}, 0, 0},
    {{u"12"}, 12, 12},
    {{u"\t 1 \r\n", u"1.", u"1,", u"+ 1"}, 1, 1},
    {{u".5"}, .5, kNone},
    {{u",5"}, kNone, .5},
    {{u"1.5"}, 1.5, 15},
    {{u"1,5"}, 15, 1.5},
    {{u"0,5"}, 5, .5},
    {{u"1,,2"}, 12, kNone},
    {{u"1..2"}, kNone, 12},
    {{u"1,234.5"}, 1234.5, kNone},
    {{u"1.234,5"}, kNone, 1234.5},
    {{u"1,2,e1"}, 120, kNone},
    // One sign, before or after; parentheses are one too.
    {{u"-1", u"- 1", u"1-", u"1 -", u"(1)", u"( 1 ) ", u"&HFFFF", u" &HFFFFFFFF ", u"&o177777"},
     -1,
     -1},
    // The locale's own currency sign, once.
    {{u"$1"}, 1, kNone},
    {{u"-$ 1", u"$-1", u"($1)"}, -1, kNone},
    {{u"1 €"}, kNone, 1},
    // Exponents.
    {{u"1e2", u"1D2"}, 100, 100},
    {{u"2E+03"}, 2000, 2000},
    {{u"5d-1"}, .5, .5},
    // Literals wrap at 16 and at 32 bits.
    {{u"&H7FFF"}, 32767, 32767},
    {{u"&h10000"}, 65536, 65536},
    {{u"&O17"}, 15, 15},
    // No digit, or something else beside them.
    {{u"1.5.2"}, kNone, 152},
};

constexpr TextView kRefused[] = {
    u"--1",   u"-1-", u"(-1)", u"(1",   u"1)",    u"()",   u"€1€",         u"€",
    u"1e",    u"1e+", u"1 e2", u"1e 2", u"1e2.0", u"e2",   u"&H100000000", u"&O8",
    u"&h",    u"&HG", u"-&H1", u"&",    u"0x1A",  u"",     u" ",           u"-",
    u".",     u",",   u"-.",   u"1 2",  u"12a",   u"True", u"1/2",         TextView(u"1\0", 2),
    u"\uFF11"};

void expect(TextView text, const std::optional<double>& answer) {
  EXPECT_EQ(isNumeric(text), answer.has_value());
  if (answer) {
    EXPECT_EQ(toDouble(text), *answer);
  } else {
    EXPECT_THROW(toDouble(text), RuntimeError);
  }
}

void expectAll(const Case& c) {
  for (const TextView text : c.texts) {
    SCOPED_TRACE(toUtf8(text));
    {
      const ScopedLocale us("en_US");
      expect(text, c.us);
    }
    const ScopedLocale italian("it_IT");
    expect(text, c.italian);
  }
}

TEST(NumberText, EachLocaleReadsItsOwn) {
  for (const Case& c : kCases) expectAll(c);
  expectAll({{std::begin(kRefused), std::end(kRefused)}, kNone, kNone});
}

std::int32_t errorOf(TextView text) {
  try {
    toDouble(text);
  } catch (const RuntimeError& error) {
    return error.number();
  }
  return 0;
}

TEST(NumberText, TheRangeOfADoubleIsTheRangeOfTheTest) {
  const ScopedLocale us("en_US");
  Text power(401, u'0');  // 1E+400 written out
  power[0] = u'1';
  const struct {
    Text text;
    std::int32_t error;
  } cases[] = {
      {u"1.7976931348623157e308", 0},
      {u"1.7976931348623159e308", 6},
      {power, 6},
      {power + u"e-400", 0},
      {u"1e-400", 0},
      {u"0e99999999999999999999", 0},
      {u"1e99999999999999999999", 6},
      {u"1e-99999999999999999999", 0},
      {u"&H100000000", 6},
      {u"one", 13},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(toUtf8(c.text));
    EXPECT_EQ(errorOf(c.text), c.error);
    EXPECT_EQ(isNumeric(c.text), c.error == 0);
  }
}

TEST(NumberText, ReadsTheNearestDouble) {
  const ScopedLocale us("en_US");
  std::mt19937_64 random(1);
  for (int i = 0; i < 20000; ++i) {
    // Significant digits and exponents around every limit of the short cuts.
    std::string text = std::to_string(random() >> (random() % 64));
    if (random() % 2 == 0) text.insert(random() % (text.size() + 1), 1, '.');
    if (random() % 2 == 0) text += std::to_string(random());
    text.append("e").append(std::to_string(static_cast<int>(random() % 660) - 340));
    const double oracle = std::strtod(text.c_str(), nullptr);
    const Text wide = fromUtf8(text);
    SCOPED_TRACE(text);
    ASSERT_EQ(isNumeric(wide), std::isfinite(oracle));
    if (std::isfinite(oracle)) {
      ASSERT_EQ(toDouble(wide), oracle);
    }
  }
}

TEST(NumberText, ABlankGroupsDigitsWhereTheMarkIsANoBreakBlank) {
  Locale french = userLocale();
  french.decimal = u',';
  french.thousands = 0x202F;
  french.currency = Text(u"€");
  const struct {
    TextView text;
    bool number;
  } cases[] = {
      {u"1\u202F234,5\u00A0€", true},
      {u"1\u00A0234", true},
      {u"1 234", true},
      {u"1 e2", false},
      {u"1,5 2", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(toUtf8(c.text));
    EXPECT_EQ(isNumberText(c.text, french), c.number);
  }
  EXPECT_EQ(readDouble(u"1\u202F234,5\u00A0€", french), 1234.5);
}

}  // namespace
}  // namespace veltgeneral
