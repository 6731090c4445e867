#include "iso_date.h"

#include <charconv>
#include <chrono>
#include <cmath>

#include "number_text.h"

namespace veltgeneral::tool {
namespace {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year;
using std::chrono::year_month_day;

constexpr sys_days kDayZero = year(1899) / 12 / 30;
constexpr int kSecondsADay = 86400;
constexpr double kFirstDay = -657434;  // year 100
constexpr double kLastDay = 2958466;   // first day of year 10000

std::string padded(int value, std::size_t width) {
  const std::string digits = std::to_string(value);
  return std::string(width - std::min(width, digits.size()), '0') + digits;
}

std::string timeText(int seconds) {
  return padded(seconds / 3600, 2) + ':' + padded(seconds / 60 % 60, 2) + ':' +
         padded(seconds % 60, 2);
}

// Takes `width` digits and what follows them off the front; nothing where they are not there.
std::optional<int> takeField(std::string_view& text, std::size_t width, char mark) {
  int value = 0;
  if (text.size() < width) return std::nullopt;
  const auto [end, error] = std::from_chars(text.data(), text.data() + width, value);
  if (error != std::errc() || end != text.data() + width || text.front() == '-') {
    return std::nullopt;
  }
  text.remove_prefix(width);
  if (mark == '\0') return value;
  if (!text.starts_with(mark)) return std::nullopt;
  text.remove_prefix(1);
  return value;
}

std::optional<int> readDay(std::string_view& text) {
  const auto y = takeField(text, 4, '-');
  const auto m = y ? takeField(text, 2, '-') : y;
  const auto d = m ? takeField(text, 2, '\0') : m;
  if (!d || *y < 100) return std::nullopt;
  const year_month_day date = year(*y) / *m / *d;
  if (!date.ok()) return std::nullopt;
  return static_cast<int>((sys_days(date) - kDayZero).count());
}

std::optional<int> readTime(std::string_view text) {
  const auto hour = takeField(text, 2, ':');
  const auto minute = hour ? takeField(text, 2, '\0') : hour;
  std::optional<int> second = 0;
  if (minute && text.starts_with(':')) {
    text.remove_prefix(1);
    second = takeField(text, 2, '\0');
  }
  if (!minute || !second || !text.empty()) return std::nullopt;
  if (*hour > 23 || *minute > 59 || *second > 59) return std::nullopt;
  return *hour * 3600 + *minute * 60 + *second;
}

// The time of day counts forward in a negative date too.
Date joined(int day, int seconds) {
  const double time = static_cast<double>(seconds) / kSecondsADay;
  return {day < 0 ? day - time : day + time};
}

}  // namespace

std::string isoText(Date date) {
  if (!(date.days > kFirstDay - 1 && date.days < kLastDay)) return shortestText(date.days);
  const double whole = std::trunc(date.days);
  int day = static_cast<int>(whole);
  int seconds = static_cast<int>(std::lround(std::abs(date.days - whole) * kSecondsADay));
  if (seconds == kSecondsADay) {
    ++day;
    seconds = 0;
  }
  if (day == 0 && seconds != 0) return timeText(seconds);
  const year_month_day civil(kDayZero + days(day));
  const std::string text = padded(static_cast<int>(civil.year()), 4) + '-' +
                           padded(static_cast<int>(static_cast<unsigned>(civil.month())), 2) + '-' +
                           padded(static_cast<int>(static_cast<unsigned>(civil.day())), 2);
  return seconds == 0 ? text : text + 'T' + timeText(seconds);
}

std::optional<Date> readIso(std::string_view text) {
  if (const auto time = readTime(text)) return joined(0, *time);
  const auto day = readDay(text);
  if (!day || text.empty()) return day ? std::optional(joined(*day, 0)) : std::nullopt;
  if (text.front() != 'T' && text.front() != ' ') return std::nullopt;
  const auto time = readTime(text.substr(1));
  return time ? std::optional(joined(*day, *time)) : std::nullopt;
}

}  // namespace veltgeneral::tool
