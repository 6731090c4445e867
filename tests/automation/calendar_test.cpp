#include "automation/calendar.h"

#include <gtest/gtest.h>

#include <ctime>
#include <optional>

#include "automation/locale.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

constexpr std::int32_t kFirstDay = -657434;
constexpr std::int32_t kLastDay = 2958465;
constexpr std::int64_t kUnixEpoch = 25569;

TEST(Calendar, AgreesWithTheCLibraryBothWays) {
  for (std::int32_t day = kFirstDay; day <= kLastDay; day += 37) {
    const std::int32_t second = static_cast<std::int32_t>((day + std::int64_t{kLastDay}) % 86400);
    const std::time_t point = (day - kUnixEpoch) * 86400 + second;
    std::tm oracle{};
    ::gmtime_r(&point, &oracle);
    const CivilTime time = civilTime(dateOf(day, second));
    ASSERT_EQ(time.year, oracle.tm_year + 1900) << day;
    ASSERT_EQ(time.month, oracle.tm_mon + 1) << day;
    ASSERT_EQ(time.day, oracle.tm_mday) << day;
    ASSERT_EQ(time.weekday, oracle.tm_wday) << day;
    ASSERT_EQ(time.hour * 3600 + time.minute * 60 + time.second, second) << day;
    ASSERT_EQ(dayNumber(time.year, time.month, time.day), day);
  }
}

// The answer, or nothing for error 5.
template <class Construct>
std::optional<double> daysOr5(Construct construct) {
  try {
    return construct().days;
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), 5);
    return std::nullopt;
  }
}

TEST(Calendar, FieldsCarry) {
  const struct {
    std::int16_t year, month, day;
    std::optional<double> days;
  } cases[] = {
      {1899, 12, 30, 0},
      {2024, 2, 29, 45351},
      {2023, 2, 29, 44986},  // 1 March
      {2024, 13, 1, 45658},
      {2024, 0, 1, 45261},
      {2024, -11, 0, 44926},  // 31 December 2022
      {2024, 1, -30, 45261},
      {0, 1, 1, 36526},
      {29, 1, 1, 47119},
      {30, 1, 1, 10959},
      {99, 12, 31, 36525},
      {100, 1, 1, kFirstDay},
      {9999, 12, 31, kLastDay},
      {100, 1, 0, std::nullopt},
      {9999, 12, 32, std::nullopt},
      {10000, 0, 1, std::nullopt},
      {-1, 1, 1, std::nullopt},
      {9999, 32767, 32767, std::nullopt},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(daysOr5([&] { return dateSerial(c.year, c.month, c.day); }), c.days)
        << c.year << ' ' << c.month << ' ' << c.day;
  }
}

TEST(Calendar, TimesCarryIntoDays) {
  const struct {
    std::int16_t hour, minute, second;
    double days;
  } cases[] = {
      {0, 0, 0, 0},
      {12, 0, 0, .5},
      {24, 0, 0, 1},
      {0, 1440, 0, 1},
      {36, 0, 0, 1.5},
      {12, -15, 0, 42300 / 86400.0},
      {-12, 0, 0, -1.5},
      {-24, 0, 0, -1},
      {-1, 0, 0, -1 - 23 / 24.0},
      {0, 0, -1, -1 - 86399 / 86400.0},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(timeSerial(c.hour, c.minute, c.second).days, c.days)
        << c.hour << ' ' << c.minute << ' ' << c.second;
  }
}

TEST(Calendar, SecondsAreTheNearest) {
  const ScopedLocale italian("it_IT");
  const struct {
    double days;
    TextView text;
  } cases[] = {
      {-1.5, u"18991229120000"},
      {-.5, u"18991230120000"},
      {-1.9999999, u"18991230000000"},
      {45322.9999999, u"20240201000000"},
      {45322 + .4 / 86400, u"20240131000000"},
      {45322 + .6 / 86400, u"20240131000001"},
      {kLastDay + .99999, u"99991231235959"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(formatDate({c.days}, u"YYYYMMDDHHNNSS"), c.text);
  }
  for (const double outside : {kFirstDay - 1.0, kLastDay + 1.0, kLastDay + .9999999, 1e300}) {
    EXPECT_FALSE(daysOr5([&] { return civilTime({outside}), Date{}; })) << outside;
  }
}

TEST(Calendar, PatternsOfTheLibrary) {
  const Date date = dateOf(45294, 9 * 3600 + 5 * 60 + 7);  // Wednesday, 3 January 2024
  const struct {
    TextView pattern, italian, us;
  } cases[] = {
      {u"YYYYMMDD", u"20240103", u"20240103"},
      {u"HHMMSS", u"090507", u"090507"},
      {u"hhnnss", u"090507", u"090507"},
      {u"dd/mm/yyyy  hh:nn", u"03/01/2024  09:05", u"03/01/2024  09:05"},
      {u"d/m/yy h:mm", u"3/1/24 9:05", u"3/1/24 9:05"},
      {u"mm hh mm", u"01 09 05", u"01 09 05"},
      {u"h:n:s", u"9:5:7", u"9:5:7"},
      {u"ddd", u"mer", u"Wed"},
      {u"dddd, mmmm", u"mercoledì, gennaio", u"Wednesday, January"},
      {u"y", u"3", u"3"},
      {u"[q]", u"[q]", u"[q]"},
      {u"", u"", u""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(toUtf8(c.pattern));
    {
      const ScopedLocale italian("it_IT");
      EXPECT_EQ(formatDate(date, c.pattern), c.italian);
    }
    const ScopedLocale us("en_US");
    EXPECT_EQ(formatDate(date, c.pattern), c.us);
  }
}

}  // namespace
}  // namespace veltgeneral
