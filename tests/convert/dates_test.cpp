#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <random>
#include <span>

#include "automation/calendar.h"
#include "automation/coerce.h"
#include "automation/locale.h"
#include "veltgeneral/funzioni.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

constexpr TextView kDays[] = {u"20240229", u"20000229", u"10000101", u"99991231"};
constexpr TextView kStamps[] = {u"20240101235959", u"99991231235959", u"18991229000000",
                                u"18991230000001"};
constexpr TextView kTimes[] = {u"000000", u"235959"};
constexpr TextView kNone[] = {
    // A unit past its range carries, so the text does not come back.
    u"20230229", u"19000229", u"20241301", u"20240100", u"20240001", u"20240101240000",
    u"20240101126000", u"240000", u"126000", u"120060",
    // Years of other than four digits; a time cannot be told from a negative day number.
    u"00500101", u"09991231", u"18991229000001",
    // Fields that are numbers, and do not come back.
    u"2024 1 1", u"2024+1+1", u"2024010&", u"1e30&H01", u"２０２４０１０１",
    // Wrong shape.
    u"", u"2024O101", u"2024010", u"202401011", TextView(u"2024010\0", 8), TextView(u"00000\0", 6)};

TEST(FixedWidthText, DaysStampsAndTimes) {
  const Funzioni f;
  const auto check = [&](std::span<const TextView> texts, bool day, bool stamp, bool time) {
    for (const TextView text : texts) {
      SCOPED_TRACE(toUtf8(text));
      EXPECT_EQ(f.isDateYYYYMMDD(text), day);
      EXPECT_EQ(f.isDateYYYYMMDDHH24MISS(text), stamp);
      EXPECT_EQ(f.isTimeHH24MISS(text), time);
    }
  };
  check(kDays, true, false, false);
  check(kStamps, false, true, false);
  check(kTimes, false, false, true);
  check(kNone, false, false, false);
}

// The rule itself, step by step: fields as 16-bit numbers, construction that carries, formatting.
// Years below 1000 are not written in four digits.
Date dayFrom(TextView text) {
  return dateSerial(toInt16(text.substr(0, 4)), toInt16(text.substr(4, 2)),
                    toInt16(text.substr(6, 2)));
}
Date timeFrom(TextView text) {
  return timeSerial(toInt16(text.substr(0, 2)), toInt16(text.substr(2, 2)),
                    toInt16(text.substr(4, 2)));
}

std::optional<bool> comesBack(TextView text) {
  try {
    switch (text.size()) {
      case 6:
        return formatDate(timeFrom(text), u"HHMMSS") == text;
      case 8:
        return text[0] != u'0' && formatDate(dayFrom(text), u"YYYYMMDD") == text;
      default:
        return text[0] != u'0' && formatDate({dayFrom(text).days + timeFrom(text.substr(8)).days},
                                             u"YYYYMMDDHHNNSS") == text;
    }
  } catch (const RuntimeError&) {
    return std::nullopt;
  }
}

// Texts near the truth: days around every boundary, with a few characters exchanged.
class Generator {
 public:
  explicit Generator(std::uint32_t seed) : random_(seed) {}

  Text next(std::size_t size) {
    Text text(14, u'0');
    static constexpr std::int32_t kYears[] = {0,    29,   30,   99,   100, 999,
                                              1000, 1899, 1900, 2000, 9999};
    put(text, 0, 4, below(2) ? kYears[below(std::size(kYears))] : below(10000));
    put(text, 4, 2, below(15));
    put(text, 6, 2, below(34));
    if (below(4) != 0) {
      put(text, 8, 2, below(26));
      put(text, 10, 2, below(62));
      put(text, 12, 2, below(62));
    }
    for (auto odd = below(8) == 0 ? 1 + below(3) : 0; odd > 0; --odd) {
      static constexpr TextView kOdd = u" +-.,&HheEdD()$€\t０９\xA0O/:7";
      text[static_cast<std::size_t>(below(14))] =
          below(20) == 0 ? u'\0' : kOdd[static_cast<std::size_t>(below(kOdd.size()))];
    }
    return size == 6 ? text.substr(8) : text.substr(0, size);
  }

 private:
  std::int32_t below(std::size_t limit) { return static_cast<std::int32_t>(random_() % limit); }
  static void put(Text& text, std::size_t at, std::size_t count, std::int32_t value) {
    for (; count > 0; value /= 10) {
      text[at + --count] = static_cast<char16_t>(u'0' + value % 10);
    }
  }
  std::mt19937 random_;
};

TEST(FixedWidthText, IsJudgedAsTheRoundTripThroughTheCalendarJudges) {
  const Funzioni f;
  Generator generate(4);
  std::size_t accepted = 0;
  const auto compare = [&](std::size_t size, const auto& member) {
    for (int i = 0; i < 700'000; ++i) {
      const Text text = generate.next(size);
      const bool expected = comesBack(text).value_or(false);
      accepted += expected ? 1 : 0;
      ASSERT_EQ(member(text), expected) << toUtf8(text);
    }
  };
  compare(8, [&](const Text& text) { return f.isDateYYYYMMDD(text); });
  compare(14, [&](const Text& text) { return f.isDateYYYYMMDDHH24MISS(text); });
  compare(6, [&](const Text& text) { return f.isTimeHH24MISS(text); });
  EXPECT_GT(accepted, 500'000u);
}

TEST(DayOfTheWeek, IsThatOfTheConstructedDate) {
  const ScopedLocale italian("it_IT");
  const Funzioni f;
  static constexpr TextView kNames[] = {u"",    u"dom", u"lun", u"mar",
                                        u"mer", u"gio", u"ven", u"sab"};
  Generator generate(5);
  for (int i = 0; i < 500'000; ++i) {
    const Text text = generate.next(8);
    Text name;
    try {
      name = formatDate(dayFrom(text), u"ddd");
    } catch (const RuntimeError&) {
    }
    const std::int16_t number = f.getDayNumberFromYYYYMMDD(text);
    ASSERT_EQ(kNames[static_cast<std::size_t>(number)], name) << toUtf8(text);
  }
}

TEST(FixedWidthText, TextsForNoDateAndLeapYears) {
  const Funzioni f;
  for (const TextView text :
       {u"00000000", u"        ", u"0000000", u"       ", u"000000000", u"", u"2024", u"2000",
        u"0000", u"9996", u"1900", u"2023", u"20a4", u"202", u"20244", u"+024", u"２０２４"}) {
    SCOPED_TRACE(toUtf8(text));
    EXPECT_EQ(f.isDateYYYYMMDDefault(text), text == u"00000000");
    EXPECT_EQ(f.isDateYYYYMMDDefaultSpaces(text), text == u"        ");
    Text year(text);
    const bool leap = text == u"2024" || text == u"2000" || text == u"0000" || text == u"9996";
    EXPECT_EQ(f.isYYYYBisestile(year), leap);
    EXPECT_EQ(year, text);
  }
}

struct DayNumber {
  TextView text;
  std::int16_t number;
};

constexpr DayNumber kDayNumbers[] = {
    {u"20240107", 1}, {u"20240108", 2}, {u"20240113", 7}, {u"20240107rest", 1},
    {u"2024010", 1},  // day 0 is 31 December 2023
    {u"20241301", 4}, {u"00000101", 7}, {u"00300101", 4}, {u"2024 1+7", 1},
    {u"2e3  1 1", 7}, {u"2024&H&H", 0}, {u"2024 1&", 0},  {u"&H-1 1 1", 0},
    {u"99991232", 0}, {u"01000100", 0}, {u"abcdefgh", 0}, {u"", 0},
    {u"202401", 0},
};

TEST(DayOfTheWeek, FollowsTheLocalesNames) {
  const Funzioni f;
  for (const char* name : {"it_IT", "en_US"}) {
    const ScopedLocale locale(name);
    for (const DayNumber& c : kDayNumbers) {
      EXPECT_EQ(f.getDayNumberFromYYYYMMDD(c.text), c.number) << name << ' ' << toUtf8(c.text);
    }
    for (std::int32_t day = -800'000; day < 3'000'000; day += 1009) {
      const Date date{day + (day < 0 ? -0.75 : 0.75)};
      const bool inCalendar = day > -657'434 && day <= 2'958'465;
      // 31 December 1899 was a Sunday.
      const std::int32_t number = inCalendar ? ((day - 1) % 7 + 7) % 7 + 1 : 0;
      ASSERT_EQ(f.getDayNumberFromDate(date), number) << name << ' ' << day;
    }
  }
}

}  // namespace
}  // namespace veltgeneral
