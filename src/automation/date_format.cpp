// Texts of dates: by pattern, and in the locale's own short forms.
#include <array>

#include "automation/calendar.h"
#include "automation/case_fold.h"
#include "automation/locale.h"

namespace veltgeneral {
namespace {

void appendNumber(Text& out, std::int32_t value, std::size_t width) {
  std::array<char16_t, 10> room;
  std::size_t count = 0;
  do {
    room[count++] = static_cast<char16_t>(u'0' + value % 10);
    value /= 10;
  } while (value != 0);
  while (count < width) room[count++] = u'0';
  while (count > 0) out.push_back(room[--count]);
}

std::int32_t dayOfYear(const CivilTime& time) {
  return *dayNumber(time.year, time.month, time.day) - *dayNumber(time.year, 1, 1) + 1;
}

class PatternWriter {
 public:
  PatternWriter(const CivilTime& time, const Locale& locale) : time_(time), locale_(locale) {}

  Text write(TextView pattern) {
    for (std::size_t i = 0; i < pattern.size();) {
      const char16_t letter = toUpper(pattern[i]);
      const std::size_t most = longestRun(letter);
      std::size_t run = 1;
      while (run < most && i + run < pattern.size() && toUpper(pattern[i + run]) == letter) ++run;
      if (most == 0) {
        separatorOrLiteral(pattern[i]);
      } else {
        field(letter, run);
        afterHour_ = letter == u'H';
      }
      i += run;
    }
    return std::move(out_);
  }

 private:
  // 0 for what is no field.
  static std::size_t longestRun(char16_t letter) {
    if (letter == u'Y' || letter == u'M' || letter == u'D') return 4;
    return letter == u'H' || letter == u'N' || letter == u'S' ? 2 : 0;
  }

  void separatorOrLiteral(char16_t c) {
    if (c == u'/') {
      out_.push_back(locale_.dateSeparator);
    } else {
      out_.push_back(c == u':' ? locale_.timeSeparator : c);
    }
  }

  void field(char16_t letter, std::size_t run) {
    switch (letter) {
      case u'Y':
        return year(run);
      case u'M':
        return afterHour_ && run <= 2 ? appendNumber(out_, time_.minute, run) : month(run);
      case u'D':
        return day(run);
      case u'H':
        return appendNumber(out_, time_.hour, run);
      case u'N':
        return appendNumber(out_, time_.minute, run);
      default:
        return appendNumber(out_, time_.second, run);
    }
  }

  void year(std::size_t run) {
    if (run == 1) return appendNumber(out_, dayOfYear(time_), 1);
    if (run == 2) return appendNumber(out_, time_.year % 100, 2);
    appendNumber(out_, time_.year, 4);
  }

  void month(std::size_t run) {
    const auto index = static_cast<std::size_t>(time_.month - 1);
    if (run <= 2) return appendNumber(out_, time_.month, run);
    out_ += run == 3 ? locale_.shortMonths[index] : locale_.months[index];
  }

  void day(std::size_t run) {
    const auto index = static_cast<std::size_t>(time_.weekday);
    if (run <= 2) return appendNumber(out_, time_.day, run);
    out_ += run == 3 ? locale_.shortDays[index] : locale_.days[index];
  }

  const CivilTime& time_;
  const Locale& locale_;
  Text out_;
  bool afterHour_ = false;
};

void appendShortDate(Text& out, const CivilTime& time, const Locale& locale) {
  const auto day = [&] { appendNumber(out, time.day, locale.twoDigitDay ? 2 : 1); };
  const auto month = [&] { appendNumber(out, time.month, locale.twoDigitMonth ? 2 : 1); };
  const auto year = [&] { appendNumber(out, time.year, 4); };
  const auto mark = [&] { out.push_back(locale.dateSeparator); };
  switch (locale.order) {
    case DateOrder::dayMonthYear:
      return day(), mark(), month(), mark(), year();
    case DateOrder::monthDayYear:
      return month(), mark(), day(), mark(), year();
    case DateOrder::yearMonthDay:
      return year(), mark(), month(), mark(), day();
  }
}

void appendTime(Text& out, const CivilTime& time, const Locale& locale) {
  const std::int32_t shown = locale.twelveHours ? (time.hour + 11) % 12 + 1 : time.hour;
  appendNumber(out, shown, locale.twoDigitHour ? 2 : 1);
  out.push_back(locale.timeSeparator);
  appendNumber(out, time.minute, 2);
  out.push_back(locale.timeSeparator);
  appendNumber(out, time.second, 2);
  if (!locale.twelveHours) return;
  out.push_back(u' ');
  out += time.hour < 12 ? locale.am : locale.pm;
}

}  // namespace

Text formatDate(Date date, TextView pattern) {
  const CivilTime time = civilTime(date);
  return PatternWriter(time, userLocale()).write(pattern);
}

Text formatShortDate(Date date) {
  Text text;
  appendShortDate(text, civilTime(date), userLocale());
  return text;
}

Text formatGeneralDate(Date date) {
  const CivilTime time = civilTime(date);
  const Locale& locale = userLocale();
  const bool hasDay = time.year != 1899 || time.month != 12 || time.day != 30;
  const bool hasTime = time.hour != 0 || time.minute != 0 || time.second != 0;
  Text text;
  if (hasDay) appendShortDate(text, time, locale);
  if (hasDay && hasTime) text.push_back(u' ');
  if (hasTime || !hasDay) appendTime(text, time, locale);
  return text;
}

}  // namespace veltgeneral
