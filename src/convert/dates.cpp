// The checks of fixed-width dates and times, and days of the week.
#include <algorithm>
#include <array>

#include "automation/calendar.h"
#include "automation/case_fold.h"
#include "automation/coerce.h"
#include "automation/locale.h"
#include "convert/fixed_date.h"
#include "veltgeneral/funzioni.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

struct DayName {
  TextView name;
  std::int16_t number;
};

constexpr DayName kDayNames[] = {
    {u"lun", 2}, {u"mon", 2}, {u"mar", 3}, {u"tue", 3}, {u"mer", 4}, {u"wed", 4}, {u"gio", 5},
    {u"thu", 5}, {u"ven", 6}, {u"fri", 6}, {u"sab", 7}, {u"sat", 7}, {u"dom", 1}, {u"sun", 1},
};

// By weekday, Sunday first.
using WeekNumbers = std::array<std::int16_t, 7>;

std::int16_t numberOf(TextView name) {
  const auto* const found = std::ranges::find_if(
      kDayNames, [&](const DayName& row) { return equalsName(name, row.name); });
  return found == std::end(kDayNames) ? std::int16_t{0} : found->number;
}

// The locale's names looked up once, until the thread has another locale.
const WeekNumbers& weekNumbers() {
  thread_local const Locale* locale = nullptr;
  thread_local WeekNumbers numbers{};
  if (const Locale& present = userLocale(); locale != &present) {
    std::ranges::transform(present.shortDays, numbers.begin(), numberOf);
    locale = &present;
  }
  return numbers;
}

// Day 0 was a Saturday.
std::size_t weekdayOf(std::int32_t day) { return static_cast<std::size_t>((day % 7 + 13) % 7); }

std::int16_t field(TextView text, std::size_t at, std::size_t count) {
  return toInt16(text.substr(std::min(at, text.size()), count));
}

Date dateOf(TextView text) {
  if (text.size() >= 8) {
    const FourDigits year(&text[0]);
    const FourDigits monthAndDay(&text[4]);
    if ((year.others() | monthAndDay.others()) == 0) {
      return dateSerial(static_cast<std::int16_t>(year.all()),
                        static_cast<std::int16_t>(monthAndDay.first()),
                        static_cast<std::int16_t>(monthAndDay.second()));
    }
  }
  return dateSerial(field(text, 0, 4), field(text, 4, 2), field(text, 6, 2));
}

}  // namespace

bool Funzioni::isDateYYYYMMDD(TextView sDate) const { return isFixedDay(sDate); }
bool Funzioni::isDateYYYYMMDDHH24MISS(TextView sDate) const { return isFixedStamp(sDate); }
bool Funzioni::isTimeHH24MISS(TextView sTime) const { return isFixedTime(sTime); }

bool Funzioni::isDateYYYYMMDDefault(TextView sDate) const { return sDate == u"00000000"; }
bool Funzioni::isDateYYYYMMDDefaultSpaces(TextView sDate) const { return sDate == u"        "; }

bool Funzioni::isYYYYBisestile(Text& sAnno) const {
  if (sAnno.size() != 4) return false;
  const FourDigits year(sAnno.data());
  return year.others() == 0 && isLeapYear(year.all());
}

std::int16_t Funzioni::getDayNumberFromYYYYMMDD(TextView sDateYYYYMMDD) const {
  try {
    const Date date = dateOf(sDateYYYYMMDD);
    return weekNumbers()[weekdayOf(static_cast<std::int32_t>(date.days))];
  } catch (const RuntimeError&) {
    return 0;
  }
}

std::int16_t Funzioni::getDayNumberFromDate(Date sDate) const {
  try {
    return weekNumbers()[static_cast<std::size_t>(civilTime(sDate).weekday)];
  } catch (const RuntimeError&) {
    return 0;
  }
}

}  // namespace veltgeneral
