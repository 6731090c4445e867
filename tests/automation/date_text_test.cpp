// Every text is asked of the test and of the reading; days come from the C library's calendar.
#include "automation/date_text.h"

#include <gtest/gtest.h>

#include <ctime>
#include <optional>
#include <ranges>
#include <string_view>
#include <vector>

#include "automation/calendar.h"
#include "automation/coerce.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

double at(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
  std::tm fields{};
  fields.tm_year = year - 1900;
  fields.tm_mon = month - 1;
  fields.tm_mday = day;
  constexpr double kUnixEpoch = 25569;  // in days since 30 December 1899
  const double whole = static_cast<double>(::timegm(&fields)) / 86400 + kUnixEpoch;
  const double fraction = (hour * 3600 + minute * 60 + second) / 86400.0;
  return whole < 0 ? whole - fraction : whole + fraction;
}

double time(int hour, int minute, int second = 0) { return at(1899, 12, 30, hour, minute, second); }

struct Case {
  std::vector<TextView> texts;
  std::optional<double> us;
  std::optional<double> italian;
};

using namespace std::literals;

constexpr std::nullopt_t kNone = std::nullopt;
const double kThisYearJan2 = at(civilTime(now()).year, 1, 2);
const double kThisYearFeb1 = at(civilTime(now()).year, 2, 1);
const double kThisYearFeb13 = at(civilTime(now()).year, 2, 13);

const Case kCases[] = {
    // The locale's order, and the other where only that one fits.
    {{u"1/2/2020", u" 1-2-2020\r\n", u"1 2 2020", u"1 / 2 / 2020"}, at(2020, 1, 2), at(2020, 2, 1)},
    {{u"13/1/2020", u"1/13/2020"}, at(2020, 1, 13), at(2020, 1, 13)},
    {{u"31/12/2020"}, at(2020, 12, 31), at(2020, 12, 31)},
    {{u"2020-01-31"}, at(2020, 1, 31), at(2020, 1, 31)},
    {{u"2020/1/2"}, at(2020, 1, 2), at(2020, 1, 2)},
    {{u"99-12-31"}, at(1999, 12, 31), at(1999, 12, 31)},
    {{u"1/2/100"}, at(100, 1, 2), at(100, 2, 1)},
    // Two digits and the window.
    {{u"1/1/0"}, at(2000, 1, 1), at(2000, 1, 1)},
    {{u"1/1/29"}, at(2029, 1, 1), at(2029, 1, 1)},
    {{u"1/1/30"}, at(1930, 1, 1), at(1930, 1, 1)},
    {{u"1/1/99"}, at(1999, 1, 1), at(1999, 1, 1)},
    // Parts left out.
    {{u"1/2"}, kThisYearJan2, kThisYearFeb1},
    {{u"13/2", u"2/13"}, kThisYearFeb13, kThisYearFeb13},
    {{u"2020/3", u"3/2020"}, at(2020, 3, 1), at(2020, 3, 1)},
    // Month names, the locale's alone, in any case.
    {{u"March 5, 2020"}, at(2020, 3, 5), kNone},
    {{u"5 MAR 2020", u"5-mar-20", u"5mar2020", u"2020 mar 5"}, at(2020, 3, 5), at(2020, 3, 5)},
    {{u"marzo 2020"}, kNone, at(2020, 3, 1)},
    {{u"2 gennaio", u"2 gen"}, kNone, at(civilTime(now()).year, 1, 2)},
    // Out of range.
    {{u"29/2/2020"}, at(2020, 2, 29), at(2020, 2, 29)},
    // Times.
    {{u"12:30"}, time(12, 30), time(12, 30)},
    {{u"0:00", u"12 am"}, time(0, 0), time(0, 0)},
    {{u"23:59:59"}, time(23, 59, 59), time(23, 59, 59)},
    {{u"1.2"}, time(1, 2), time(1, 2)},
    {{u"1.2.3"}, time(1, 2, 3), time(1, 2, 3)},
    {{u"1:30 PM"}, time(13, 30), time(13, 30)},
    {{u"1:30am"}, time(1, 30), time(1, 30)},
    {{u"12p"}, time(12, 0), time(12, 0)},
    {{u"1 a"}, time(1, 0), time(1, 0)},
    // Both.
    {{u"1/2/2020 10:20:30"}, at(2020, 1, 2, 10, 20, 30), at(2020, 2, 1, 10, 20, 30)},
    {{u"2020-01-31 1 pm"}, at(2020, 1, 31, 13), at(2020, 1, 31, 13)},
    {{u"10:20 1/2/2020"}, at(2020, 1, 2, 10, 20), at(2020, 2, 1, 10, 20)},
    {{u"29/12/1899 12:00"}, at(1899, 12, 29, 12), at(1899, 12, 29, 12)},
};

// Apart by bars.
constexpr TextView kRefused =
    u"1/1/0050|Feb 30 2020|mar|mart 5|mar apr 5|Monday, March 5, 2020|30/2/2020|29/2/2021|"
    u"0/1/2020|32/1/2020|13/13/2020|2020-00-10|1.2.2020|13:00 AM|24:00|12:60|12:00:60|"
    u"10:20:30.5|10:20.5|12:|:12|am|2020-01-31T10:20:30|1/2/2020-10:20|1/2 10:20 2020|"
    u"10:20 11:30|1/2/a|| |12|20240131|1/|/1/2|1//2|-1/2|1,2,2020|1/2/3/4|1 2 3 4 5 6 7 8 9|"
    u"January|LATIN CAPITAL LETTER A|1/2\0"sv;

void expect(TextView text, const std::optional<double>& answer) {
  EXPECT_EQ(isDate(text), answer.has_value());
  if (answer) {
    EXPECT_EQ(toDate(Text(text)).days, *answer);
  } else {
    EXPECT_THROW(toDate(Text(text)), RuntimeError);
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

TEST(DateText, EachLocaleReadsItsOwn) {
  for (const Case& c : kCases) expectAll(c);
  for (const auto text : std::views::split(kRefused, u'|')) {
    expectAll({{TextView(text.begin(), text.end())}, kNone, kNone});
  }
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
