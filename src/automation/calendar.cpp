#include "automation/calendar.h"

#include <chrono>
#include <cmath>

#include "platform/clock.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

namespace chrono = std::chrono;

constexpr chrono::sys_days kDayZero{chrono::year(1899) / chrono::December / 30};
constexpr std::int32_t kSecondsPerDay = 86400;
constexpr std::int32_t kFirstYear = 100;
constexpr std::int32_t kLastYear = 9999;
constexpr std::int32_t kFirstDay = -657434;  // 1 January 100
constexpr std::int32_t kLastDay = 2958465;   // 31 December 9999

std::int32_t checkedDay(std::int64_t day) {
  if (day < kFirstDay || day > kLastDay) throw RuntimeError(RunTime::invalidCall);
  return static_cast<std::int32_t>(day);
}

// Towards the smaller number, so that the rest is never negative.
constexpr std::int32_t floorDivide(std::int32_t value, std::int32_t by) {
  return value / by - (value % by < 0 ? 1 : 0);
}

}  // namespace

CivilTime civilTime(Date date) {
  const double whole = std::trunc(date.days);
  if (!(whole >= kFirstDay && whole <= kLastDay)) throw RuntimeError(RunTime::invalidCall);
  auto day = static_cast<std::int32_t>(whole);
  auto seconds =
      static_cast<std::int32_t>(std::round(std::abs(date.days - whole) * kSecondsPerDay));
  if (seconds == kSecondsPerDay) {
    day = checkedDay(day + 1);
    seconds = 0;
  }
  const chrono::sys_days point = kDayZero + chrono::days(day);
  const chrono::year_month_day civil(point);
  CivilTime time;
  time.year = static_cast<int>(civil.year());
  time.month = static_cast<std::int32_t>(static_cast<unsigned>(civil.month()));
  time.day = static_cast<std::int32_t>(static_cast<unsigned>(civil.day()));
  time.hour = seconds / 3600;
  time.minute = seconds / 60 % 60;
  time.second = seconds % 60;
  time.weekday = static_cast<std::int32_t>(chrono::weekday(point).c_encoding());
  return time;
}

std::optional<std::int32_t> dayNumber(std::int32_t year, std::int32_t month, std::int32_t day) {
  if (year < kFirstYear || year > kLastYear || month < 1 || day < 1) return std::nullopt;
  const chrono::year_month_day civil(chrono::year(year),
                                     chrono::month(static_cast<unsigned>(month)),
                                     chrono::day(static_cast<unsigned>(day)));
  if (!civil.ok()) return std::nullopt;
  return static_cast<std::int32_t>((chrono::sys_days(civil) - kDayZero).count());
}

Date dateOf(std::int32_t day, std::int32_t seconds) {
  const double fraction = static_cast<double>(seconds) / kSecondsPerDay;
  return {day < 0 ? day - fraction : day + fraction};
}

Date dateSerial(std::int16_t year, std::int16_t month, std::int16_t day) {
  if (year < 0 || year > kLastYear) throw RuntimeError(RunTime::invalidCall);
  const std::int32_t months = widenedYear(year) * 12 + month - 1;
  const std::int32_t monthYear = floorDivide(months, 12);
  const auto monthOfYear = static_cast<unsigned>(months - monthYear * 12 + 1);
  const chrono::sys_days first(chrono::year(monthYear) / chrono::month(monthOfYear) / 1);
  return {static_cast<double>(checkedDay((first - kDayZero).count() + day - 1))};
}

Date timeSerial(std::int16_t hour, std::int16_t minute, std::int16_t second) {
  const std::int32_t total = hour * 3600 + minute * 60 + second;
  const std::int32_t day = floorDivide(total, kSecondsPerDay);
  return dateOf(day, total - day * kSecondsPerDay);
}

Date now() {
  const platform::LocalTime time = platform::localTime();
  const auto day = dayNumber(time.year, time.month, time.day);
  if (!day) throw RuntimeError(RunTime::overflow);
  return dateOf(*day, time.hour * 3600 + time.minute * 60 + std::min(time.second, 59));
}

}  // namespace veltgeneral
