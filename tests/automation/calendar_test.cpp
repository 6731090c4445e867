#include "automation/calendar.h"

#include <gtest/gtest.h>

#include <ctime>
#include <tuple>

#include "support/answer.h"

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
    ASSERT_EQ(std::tuple(time.year, time.month, time.day, time.weekday),
              std::tuple(oracle.tm_year + 1900, oracle.tm_mon + 1, oracle.tm_mday, oracle.tm_wday));
    ASSERT_EQ(time.hour * 3600 + time.minute * 60 + time.second, second) << day;
    ASSERT_EQ(dayNumber(time.year, time.month, time.day), day);
  }
}

TEST(Calendar, FieldsCarry) {
  const std::tuple<std::int16_t, std::int16_t, std::int16_t, const char*> cases[] = {
      // 1 March and 31 December 2022, years of two digits, the ends of the calendar.
      {2023, 2, 29, "44986"}, {2024, -11, 0, "44926"},   {29, 1, 1, "47119"},
      {30, 1, 1, "10959"},    {100, 1, 1, "-657434"},    {9999, 12, 31, "2958465"},
      {100, 1, 0, "error 5"}, {9999, 12, 32, "error 5"}, {10000, 0, 1, "error 5"},
      {-1, 1, 1, "error 5"}};
  for (const auto& [year, month, day, days] : cases)
    EXPECT_EQ(answerOf([&] { return dateSerial(year, month, day).days; }), days);
  const std::tuple<std::int16_t, std::int16_t, std::int16_t, double> times[] = {
      {36, 0, 0, 1.5},
      {12, -15, 0, 42300 / 86400.0},
      {-12, 0, 0, -1.5},
      {0, 0, -1, -1 - 86399 / 86400.0}};
  for (const auto& [hour, minute, second, days] : times)
    EXPECT_EQ(timeSerial(hour, minute, second).days, days) << hour << ' ' << minute;
}

TEST(Calendar, SecondsAreTheNearest) {
  const std::pair<double, const char*> cases[] = {{-1.5, "18991229120000"},
                                                  {-1.9999999, "18991230000000"},
                                                  {45322 + .4 / 86400, "20240131000000"},
                                                  {45322 + .6 / 86400, "20240131000001"},
                                                  {kLastDay + .99999, "99991231235959"},
                                                  {kLastDay + .9999999, "error 5"},
                                                  {kFirstDay - 1.0, "error 5"},
                                                  {1e300, "error 5"}};
  for (const auto& [days, text] : cases)
    EXPECT_EQ(answerOf([&] { return formatDate({days}, u"YYYYMMDDHHNNSS"); }), text) << days;
}

TEST(Calendar, PatternsOfTheLibrary) {
  const std::pair<TextView, TextView> cases[] = {{u"dd/mm/yyyy  hh:nn", u"03/01/2024  09:05"},
                                                 {u"d/m/yy h:mm", u"3/1/24 9:05"},
                                                 {u"mm hh mm", u"01 09 05"},
                                                 {u"h:n:s", u"9:5:7"},
                                                 {u"y [q]", u"3 [q]"},
                                                 {u"", u""}};
  for (const auto& [pattern, text] : cases)
    EXPECT_EQ(formatDate(dateOf(45294, 9 * 3600 + 5 * 60 + 7), pattern), text);
}

}  // namespace
}  // namespace veltgeneral
