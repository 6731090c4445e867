// Texts read as numbers and as dates. Every row asks the test and the reading, in two locales, so
// it also proves what must be refused.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <random>
#include <ranges>
#include <vector>

#include "automation/calendar.h"
#include "automation/locale.h"
#include "support/answer.h"

namespace veltgeneral {
namespace {

using namespace std::literals;

constexpr const char* kNo = "error 13";

struct Row {
  TextView texts;  // apart by bars
  std::string us;
  std::string italian = us;
};

void expectRows(const std::vector<Row>& rows, bool (*test)(TextView),
                const std::function<Variant(TextView)>& read) {
  for (const Row& row : rows) {
    for (const auto part : std::views::split(row.texts, u'|')) {
      const TextView text(part.begin(), part.end());
      for (const char* name : {"en_US", "it_IT"}) {
        const ScopedLocale locale(name);
        const std::string& expected = *name == 'e' ? row.us : row.italian;
        EXPECT_EQ(test(text), !expected.starts_with("error")) << toUtf8(text) << " in " << name;
        EXPECT_EQ(answerOf([&] { return read(text); }), expected) << toUtf8(text) << " in " << name;
      }
    }
  }
}

TEST(NumberText, EachLocaleReadsItsOwn) {
  const Text power = u"1" + Text(400, u'0');
  const std::vector<Row> rows = {
      {u"0|1e-400|0e99999999999999999999|1e-99999999999999999999", "0"},
      {u"\t 1 \r\n|1.|1,|+ 1", "1"},
      {u",5", kNo, ".5"},
      {u"1,5", "15", "1.5"},
      {u"1..2", kNo, "12"},
      {u"1,234.5", "1234.5", kNo},
      {u"1.234,5", kNo, "1234.5"},
      {u"1,2,e1", "120", kNo},
      // One sign, before or after; parentheses are one too. Literals wrap at 16 and at 32 bits.
      {u"-1|- 1|1-|1 -|(1)|( 1 ) |&HFFFF| &HFFFFFFFF |&o177777", "-1"},
      {u"&H7FFF", "32767"},
      {u"&O17", "15"},
      // The locale's own currency sign, once.
      {u"$1", "1", kNo},
      {u"-$ 1|$-1|($1)", "-1", kNo},
      {u"1 €", kNo, "1"},
      // Exponents, and the range of a double.
      {u"1e2|1D2", "100"},
      {u"1.7976931348623157e308", "1.79769313486232E+308", "error 6"},
      {u"1.7976931348623159e308|1e99999999999999999999|&H100000000|&H10000000000000001", "error 6"},
      {power, "error 6"},
      // No digit, or something else beside them.
      {u"--1|-1-|(-1)|-(1)|(1|1)|()|€1€|€|1e|1e+|1 e2|1e 2|1e2.0|e2|&O8|&h|&HG|-&H1|&|0x1A|| "
       u"|-|.|,|"
       u"-.|1 2|12a|True|1/2|\uFF11|1\0"sv,
       kNo},
  };
  expectRows(rows, &isNumeric, [](TextView text) { return shortNumber(toDouble(text)); });
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
    ASSERT_EQ(isNumeric(wide), std::isfinite(oracle)) << text;
    ASSERT_EQ(std::isfinite(oracle) ? toDouble(wide) : oracle, oracle) << text;
  }
}

// A date without a time, a time alone, or both.
Text stampOf(TextView text) {
  const Date date = toDate(Text(text));
  const double day = std::trunc(date.days);
  if (day == 0) return formatDate(date, u"hh:nn:ss");
  return formatDate(date, day == date.days ? u"yyyy-mm-dd" : u"yyyy-mm-dd hh:nn:ss");
}

TEST(DateText, EachLocaleReadsItsOwn) {
  const std::string thisYear = std::to_string(civilTime(now()).year);
  const std::vector<Row> rows = {
      // The locale's order, and the other where only that one fits.
      {u"1/2/2020| 1-2-2020\r\n|1 2 2020|1 / 2 / 2020", "2020-01-02", "2020-02-01"},
      {u"13/1/2020|1/13/2020", "2020-01-13"},
      {u"2020-01-31|2020/1/31", "2020-01-31"},
      {u"1/2/100", "0100-01-02", "0100-02-01"},
      // Two digits and the window.
      {u"1/1/29", "2029-01-01"},
      {u"1/1/30", "1930-01-01"},
      {u"99-12-31", "1999-12-31"},
      // Parts left out.
      {u"1/2", thisYear + "-01-02", thisYear + "-02-01"},
      {u"13/2|2/13", thisYear + "-02-13"},
      {u"2020/3|3/2020", "2020-03-01"},
      // Month names, the locale's alone, in any case.
      {u"March 5, 2020", "2020-03-05", kNo},
      {u"5 MAR 2020|5-mar-20|5mar2020|2020 mar 5", "2020-03-05"},
      {u"marzo 2020", kNo, "2020-03-01"},
      {u"2 gennaio|2 gen", kNo, thisYear + "-01-02"},
      // Times, and both.
      {u"12:30|12.30|12:30p", "12:30:00"},
      {u"1 PM|1:00 p|13.00.00", "13:00:00"},
      {u"0:00|12 am", "00:00:00"},
      {u"2020-01-31 1 pm", "2020-01-31 13:00:00"},
      {u"10:20 1/2/2020", "2020-01-02 10:20:00", "2020-02-01 10:20:00"},
      {u"29/12/1899 12:00", "1899-12-29 12:00:00"},
      {u"1/1/0050|Feb 30 2020|mar|mart 5|mar apr 5|Monday, March 5, 2020|30/2/2020|29/2/2021|"
       u"0/1/2020|32/1/2020|13/13/2020|2020-00-10|1.2.2020|13:00 AM|24:00|12:60|12:00:60|"
       u"10:20:30.5|10:20.5|12:|:12|am|2020-01-31T10:20:30|1/2/2020-10:20|1/2 10:20 2020|"
       u"10:20 11:30|1/2/a|| |12|20240131|1/|/1/2|1//2|-1/2|1,2,2020|1/2/3/4|1 2 3 4 5 6 7 8 9|"
       u"January|LATIN CAPITAL LETTER A|1/2\0"sv,
       kNo},
  };
  expectRows(rows, &isDate, stampOf);
}

TEST(DateText, WhatTheLibraryWritesItReads) {
  for (const char* name : {"en_US", "it_IT"}) {
    const ScopedLocale locale(name);
    for (std::int32_t day = -657434; day <= 2958465; day += 9973) {
      const Date date = dateOf(day, (day & 0xFFFF) + 60);
      ASSERT_EQ(toDate(toText(date)).days, date.days) << name << ' ' << day;
    }
  }
}

}  // namespace
}  // namespace veltgeneral
