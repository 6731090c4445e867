#include "automation/coerce.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <random>

#include "automation/locale.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

// What a conversion answers, as a text that a table can hold: the value, or "error N".
template <class Convert>
std::string answer(Convert convert) {
  try {
    return toUtf8(toText(Variant(convert())));
  } catch (const RuntimeError& error) {
    return "error " + std::to_string(error.number());
  }
}

struct Row {
  Variant value;
  std::string_view int16, int32, real, currency, decimal, boolean, text;
};

const Row kRows[] = {
    // value                 int16      int32      double     currency   decimal    boolean  text
    {Empty{}, "0", "0", "0", "0", "0", "False", ""},
    {Null{}, "error 94", "error 94", "error 94", "error 94", "error 94", "error 94", "error 94"},
    {Missing{}, "error 13", "error 13", "error 13", "error 13", "error 13", "error 13", "error 13"},
    {Bytes{1}, "error 13", "error 13", "error 13", "error 13", "error 13", "error 13", "error 13"},
    {ObjectRef{}, "error 13", "error 13", "error 13", "error 13", "error 13", "error 13",
     "error 13"},
    {TextArray{}, "error 13", "error 13", "error 13", "error 13", "error 13", "error 13",
     "error 13"},
    {true, "-1", "-1", "-1", "-1", "-1", "True", "True"},
    {false, "0", "0", "0", "0", "0", "False", "False"},
    {std::int16_t{-7}, "-7", "-7", "-7", "-7", "-7", "True", "-7"},
    {std::int32_t{40000}, "error 6", "40000", "40000", "40000", "40000", "True", "40000"},
    // Halves to even, at the edges of 16 and 32 bits too.
    {.5, "0", "0", "0.5", "0.5", "0.5", "True", "0.5"},
    {1.5, "2", "2", "1.5", "1.5", "1.5", "True", "1.5"},
    {-2.5, "-2", "-2", "-2.5", "-2.5", "-2.5", "True", "-2.5"},
    {.49999999999999994, "0", "0", "0.5", "0.5", "0.5", "True", "0.5"},
    {32767.4, "32767", "32767", "32767.4", "32767.4", "32767.4", "True", "32767.4"},
    {32767.5, "error 6", "32768", "32767.5", "32767.5", "32767.5", "True", "32767.5"},
    {-32768.5, "-32768", "-32768", "-32768.5", "-32768.5", "-32768.5", "True", "-32768.5"},
    {-32768.6, "error 6", "-32769", "-32768.6", "-32768.6", "-32768.6", "True", "-32768.6"},
    {2147483647.5, "error 6", "error 6", "2147483647.5", "2147483647.5", "2147483647.5", "True",
     "2147483647.5"},
    {-2147483648.5, "error 6", "-2147483648", "-2147483648.5", "-2147483648.5", "-2147483648.5",
     "True", "-2147483648.5"},
    // Four decimals, halves to even.
    {.00005, "0", "0", "5E-05", "0", "0.00005", "True", "5E-05"},
    {.03125, "0", "0", "0.03125", "0.0312", "0.03125", "True", "0.03125"},
    {.09375, "0", "0", "0.09375", "0.0938", "0.09375", "True", "0.09375"},
    {1e15, "error 6", "error 6", "1E+15", "error 6", "1000000000000000", "True", "1E+15"},
    {1e29, "error 6", "error 6", "1E+29", "error 6", "error 6", "True", "1E+29"},
    {std::nan(""), "error 6", "error 6", "1.#QNAN", "error 6", "error 6", "True", "1.#QNAN"},
    {-HUGE_VAL, "error 6", "error 6", "-1.#INF", "error 6", "error 6", "True", "-1.#INF"},
    {.1F, "0", "0", "0.100000001490116", "0.1", "0.1", "True", "0.1"},
    {Currency{25000}, "2", "2", "2.5", "2.5", "2.5", "True", "2.5"},
    {Currency{-5}, "0", "0", "-0.0005", "-0.0005", "-0.0005", "True", "-0.0005"},
    {Currency{std::numeric_limits<std::int64_t>::min()}, "error 6", "error 6", "-922337203685478",
     "-922337203685477.5808", "-922337203685477.5808", "True", "-922337203685477.5808"},
    {Decimal{35, 0, 0, 1, true}, "-4", "-4", "-3.5", "-3.5", "-3.5", "True", "-3.5"},
    // Just above a half, which no double can tell from it.
    {Decimal{0xB1880001, 0xB5E3AF16, 0x2, 20, false}, "1", "1", "0.5", "0.5",
     "0.50000000000000000001", "True", "0.50000000000000000001"},
    {Decimal{~0u, ~0u, ~0u, 28, false}, "8", "8", "7.92281625142643", "7.9228",
     "7.9228162514264337593543950335", "True", "7.9228162514264337593543950335"},
    {Decimal{~0u, ~0u, ~0u, 0, false}, "error 6", "error 6", "7.92281625142643E+28", "error 6",
     "79228162514264337593543950335", "True", "79228162514264337593543950335"},
    {Date{1.5}, "2", "2", "1.5", "1.5", "1.5", "True", "12/31/1899 12:00:00 PM"},
    {Date{0}, "0", "0", "0", "0", "0", "False", "12:00:00 AM"},
    // Texts: numbers exactly as written, booleans only as booleans.
    {Text(u" 2.5 "), "2", "2", "2.5", "2.5", "2.5", "True", " 2.5 "},
    {Text(u"0.0"), "0", "0", "0", "0", "0", "False", "0.0"},
    {Text(u"1.00005"), "1", "1", "1.00005", "1", "1.00005", "True", "1.00005"},
    {Text(u"1.00015"), "1", "1", "1.00015", "1.0002", "1.00015", "True", "1.00015"},
    {Text(u"922337203685477.5807"), "error 6", "error 6", "922337203685478", "922337203685477.5807",
     "922337203685477.5807", "True", "922337203685477.5807"},
    {Text(u"922337203685477.58075"), "error 6", "error 6", "922337203685478", "error 6",
     "922337203685477.58075", "True", "922337203685477.58075"},
    {Text(u"79228162514264337593543950335.4"), "error 6", "error 6", "7.92281625142643E+28",
     "error 6", "79228162514264337593543950335", "True", "79228162514264337593543950335.4"},
    {Text(u"79228162514264337593543950335.5"), "error 6", "error 6", "7.92281625142643E+28",
     "error 6", "error 6", "True", "79228162514264337593543950335.5"},
    {Text(u"5e-29"), "0", "0", "5E-29", "0", "0", "True", "5e-29"},
    {Text(u"1.5e-28"), "0", "0", "1.5E-28", "0", "0.0000000000000000000000000002", "True",
     "1.5e-28"},
    {Text(u"&HFFFF"), "-1", "-1", "-1", "-1", "-1", "True", "&HFFFF"},
    {Text(u"TRUE"), "error 13", "error 13", "error 13", "error 13", "error 13", "True", "TRUE"},
    {Text(u"false"), "error 13", "error 13", "error 13", "error 13", "error 13", "False", "false"},
    {Text(), "error 13", "error 13", "error 13", "error 13", "error 13", "error 13", ""},
    {Text(u"1/2/2020"), "error 13", "error 13", "error 13", "error 13", "error 13", "error 13",
     "1/2/2020"},
};

TEST(Coerce, EveryKindAsEveryOther) {
  const ScopedLocale us("en_US");
  for (const Row& row : kRows) {
    const Variant& v = row.value;
    SCOPED_TRACE("kind " + std::to_string(v.index()) + " " + std::string(row.text));
    EXPECT_EQ(answer([&] { return toInt16(v); }), row.int16);
    EXPECT_EQ(answer([&] { return toInt32(v); }), row.int32);
    EXPECT_EQ(answer([&] { return toDouble(v); }), row.real);
    EXPECT_EQ(answer([&] { return toCurrency(v); }), row.currency);
    EXPECT_EQ(answer([&] { return toDecimal(v); }), row.decimal);
    EXPECT_EQ(answer([&] { return toBoolean(v); }), row.boolean);
    EXPECT_EQ(answer([&] { return toText(v); }), row.text);
  }
}

TEST(Coerce, SinglesAndDatesHaveRanges) {
  const ScopedLocale us("en_US");
  const struct {
    Variant value;
    std::string_view single, date;
  } cases[] = {
      {1e39, "error 6", "error 6"},
      {3.4028235677973366e38, "error 6", "error 6"},
      {3.4028235e38, "3.402823E+38", "error 6"},
      {1e-50, "0", "12:00:00 AM"},
      {.1, "0.1", "2:24:00 AM"},
      {-657434.0, "-657434", "1/1/100"},
      {-657435.0, "-657435", "error 6"},
      {2958465.5, "2958466", "12/31/9999 12:00:00 PM"},
      {2958466.0, "2958466", "error 6"},
      {true, "-1", "12/29/1899"},
      {Empty{}, "0", "12:00:00 AM"},
      {Null{}, "error 94", "error 94"},
      {Text(u"36526"), "36526", "error 13"},
      {Text(u"1/1/2000"), "error 13", "1/1/2000"},
      {Date{36526}, "36526", "1/1/2000"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.date);
    EXPECT_EQ(answer([&] { return toSingle(c.value); }), c.single);
    EXPECT_EQ(answer([&] {
                // Years below 1000 have four digits as a text.
                const Date date = toDate(c.value);
                return date.days == -657434 ? Variant(Text(u"1/1/100")) : Variant(date);
              }),
              c.date);
  }
}

TEST(Coerce, NumericAndDateByKind) {
  const ScopedLocale us("en_US");
  const struct {
    Variant value;
    bool numeric, date;
  } cases[] = {
      {Empty{}, true, false},
      {Missing{}, false, false},
      {Null{}, false, false},
      {std::int16_t{1}, true, false},
      {1.5F, true, false},
      {Currency{1}, true, false},
      {Decimal{}, true, false},
      {true, true, false},
      {Date{1}, false, true},
      {Text(u"12"), true, false},
      {Text(u"1/2/2020"), false, true},
      {Text(u"1.2"), true, true},
      {Bytes{}, false, false},
      {TextArray{}, false, false},
      {ObjectRef{}, false, false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(isNumeric(c.value), c.numeric) << c.value.index();
    EXPECT_EQ(isDate(c.value), c.date) << c.value.index();
  }
}

std::string printed(const char* format, double value) {
  char room[64];
  std::snprintf(room, sizeof room, format, value);
  return room;
}

TEST(NumberFormat, DigitsAreTheCLibrarysInTheLocalesMarks) {
  const ScopedLocale italian("it_IT");
  std::mt19937_64 random(2);
  for (int i = 0; i < 20000; ++i) {
    const double scale = std::pow(10, static_cast<int>(random() % 50) - 25);
    const double value = static_cast<double>(static_cast<std::int64_t>(random())) / 1e18 * scale;
    std::string expected = printed("%.15G", value);
    std::ranges::replace(expected, '.', ',');
    ASSERT_EQ(toUtf8(toText(value)), expected);
    const auto single = static_cast<float>(value);
    expected = printed("%.7G", single);
    std::ranges::replace(expected, '.', ',');
    ASSERT_EQ(toUtf8(toText(single)), expected);
  }
}

TEST(NumberFormat, LongAndShortForms) {
  const ScopedLocale italian("it_IT");
  const struct {
    double value;
    TextView text, brief;
  } cases[] = {
      {0, u"0", u"0"},
      {-0.0, u"0", u"0"},
      {.1 + .2, u"0,3", u".3"},
      {-.5, u"-0,5", u"-.5"},
      {10.25, u"10,25", u"10.25"},
      {123456789012345, u"123456789012345", u"123456789012345"},
      {999999999999999.9, u"1E+15", u"1E+15"},
      {.0001, u"0,0001", u".0001"},
      {.00001, u"1E-05", u"1E-05"},
      {1e100, u"1E+100", u"1E+100"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(toText(c.value), c.text);
    EXPECT_EQ(shortNumber(c.value), c.brief);
  }
  EXPECT_EQ(toText(1e7F), u"1E+07");
  EXPECT_EQ(toText(std::int32_t{-2147483647 - 1}), u"-2147483648");
}

TEST(Trim, TakesBlanksAndNothingElse) {
  EXPECT_EQ(trim(u"  a b\t "), u"a b\t");
  EXPECT_EQ(trim(u"   "), u"");
  EXPECT_EQ(trim(u"\u00A0"), u"\u00A0");
  EXPECT_EQ(trimRight(u" a "), u" a");
}

}  // namespace
}  // namespace veltgeneral
