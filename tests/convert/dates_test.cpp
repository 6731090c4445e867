#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <random>
#include <vector>

#include "automation/calendar.h"
#include "automation/coerce.h"
#include "automation/locale.h"
#include "support/compiled_locales.h"
#include "veltgeneral/funzioni.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

// The rule itself, step by step: fields as 16-bit numbers, construction that carries, formatting.
// Years below 1000 are not written in four digits.
Date dayFrom(TextView text) {
  if (text[0] == u'0') throw RuntimeError(RunTime::invalidCall);
  return dateSerial(toInt16(text.substr(0, 4)), toInt16(text.substr(4, 2)),
                    toInt16(text.substr(6, 2)));
}
Date timeFrom(TextView text) {
  return timeSerial(toInt16(text.substr(0, 2)), toInt16(text.substr(2, 2)),
                    toInt16(text.substr(4, 2)));
}

bool comesBack(TextView text) try {
  if (text.size() == 6) return formatDate(timeFrom(text), u"HHMMSS") == text;
  if (text.size() == 8) return formatDate(dayFrom(text), u"YYYYMMDD") == text;
  if (text.size() != 14) return false;
  const Date both{dayFrom(text).days + timeFrom(text.substr(8)).days};
  return formatDate(both, u"YYYYMMDDHHNNSS") == text;
} catch (const RuntimeError&) {
  return false;
}

void check(TextView text) {
  static const Funzioni f;
  const bool back = comesBack(text);
  ASSERT_EQ(f.isDateYYYYMMDD(text), back && text.size() == 8) << toUtf8(text);
  ASSERT_EQ(f.isDateYYYYMMDDHH24MISS(text), back && text.size() == 14) << toUtf8(text);
  ASSERT_EQ(f.isTimeHH24MISS(text), back && text.size() == 6) << toUtf8(text);
  ASSERT_EQ(f.isDateYYYYMMDDefault(text), text == u"00000000") << toUtf8(text);
  ASSERT_EQ(f.isDateYYYYMMDDefaultSpaces(text), text == u"        ") << toUtf8(text);
  const bool digits = std::ranges::all_of(text, [](char16_t c) { return c >= u'0' && c <= u'9'; });
  const bool isYear = digits && text.size() == 4;
  Text year(text);
  ASSERT_EQ(f.isYYYYBisestile(year),
            isYear && std::chrono::year(std::stoi(toUtf8(text))).is_leap());
  ASSERT_EQ(year, text);
}

Text padded(int number, std::size_t size) {
  const std::string digits = std::to_string(number);
  return Text(size - digits.size(), u'0') + fromUtf8(digits);
}

TEST(FixedWidthText, IsJudgedAsTheRoundTripThroughTheCalendarJudges) {
  for (const int year : {0, 50, 999, 1000, 1899, 1900, 1999, 2000, 2023, 2024, 2100, 9999}) {
    for (int monthAndDay = 0; monthAndDay < 1400; monthAndDay += monthAndDay % 100 < 33 ? 1 : 67) {
      const Text day = padded(year * 10000 + monthAndDay, 8);
      check(day);
      check(day + u"000000");
      check(day + u"235959");
    }
  }
  for (const int hour : {0, 19, 23, 24, 99}) {
    for (int rest = 0; rest < 10000; ++rest) {
      check(padded(hour * 10000 + rest, 6));
      check(u"20240229" + padded(hour * 10000 + rest, 6));
    }
  }
  // Everything in every place; what is no digit spoils it, although a number may be read there.
  for (const TextView whole : {u"2024", u"20240229", u"235959", u"20240101235959"}) {
    for (std::size_t at = 0; at < whole.size(); ++at) {
      Text text(whole);
      for (int unit = 0; unit < 65536; ++unit) {
        text[at] = static_cast<char16_t>(unit);
        check(text);
      }
    }
  }
  // Several of those that numbers may have.
  std::mt19937 random(4);
  constexpr TextView kOdd = u" +-.,&HheEdD()$€\t０９\xA0O/:7";
  for (int i = 0; i < 300'000; ++i) {
    Text text = i % 2 == 0 ? u"20240229235959" : u"18991230000001";
    for (std::size_t n = 1 + random() % 3; n > 0; --n)
      text[random() % 14] = kOdd[random() % kOdd.size()];
    check(text);
    check(text.substr(0, 8));
    check(text.substr(8));
  }
  for (const TextView text :
       {u"", u"2024010", u"202401011", u"2024010123595", u"1e30&H01", u"202", u"20244", u"0000",
        u"1900", u"2000", u"0000000", u"00000000", u"000000000", u"       ", u"        "})
    check(text);
}

TEST(DayOfTheWeek, FollowsTheLocalesNames) {
  const std::pair<int, std::vector<TextView>> cases[] = {
      {1, {u"20240107", u"20240107rest", u"2024 1+7", u"2024010"}},  // its day 0 is 31 December
      {4, {u"20241301", u"00300101"}},
      {7, {u"20240113", u"00000101", u"2e3  1 1"}},
      {0, {u"2024&H&H", u"2024 1&", u"&H-1 1 1", u"99991232", u"01000100", u"abcdefgh", u""}}};
  const CompiledLocales compiled({"fr_FR"});
  for (const char* name : {"it_IT", "en_US", "fr_FR"}) {
    SCOPED_TRACE(name);
    const ScopedLocale locale(name);
    // French names its days with a point, so the table of abbreviations has none of them.
    const int known = *name == 'f' ? 0 : 1;
    const Funzioni f;
    for (const auto& [number, texts] : cases) {
      for (const TextView text : texts)
        EXPECT_EQ(f.getDayNumberFromYYYYMMDD(text), number * known) << toUtf8(text);
    }
    for (std::int32_t day = -800'000; day < 3'000'000; day += 1009) {
      const bool inCalendar = day > -657'434 && day <= 2'958'465;
      // 31 December 1899 was a Sunday.
      const std::int32_t number = inCalendar ? ((day - 1) % 7 + 7) % 7 + 1 : 0;
      ASSERT_EQ(f.getDayNumberFromDate({day + (day < 0 ? -0.75 : 0.75)}), number * known) << day;
    }
  }
}

}  // namespace
}  // namespace veltgeneral
