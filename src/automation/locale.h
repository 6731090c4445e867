// The user's locale: how numbers and dates look in text.
//
// Chosen once from the environment (VELTGENERAL_LOCALE, else LC_ALL, LC_NUMERIC/LC_TIME, LANG).
// Italian and US English are built in; others come from the C library, whose process-wide locale is
// never changed. A name that nothing knows is US English.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "veltgeneral/text.h"

namespace veltgeneral {

enum class DateOrder : std::uint8_t { dayMonthYear, monthDayYear, yearMonthDay };

struct Locale {
  Text name;  // "it_IT"
  char16_t decimal = u'.';
  char16_t thousands = u',';  // 0: none
  Text currency;              // "€", "$"
  DateOrder order = DateOrder::monthDayYear;
  char16_t dateSeparator = u'/';
  char16_t timeSeparator = u':';
  bool twoDigitDay = false;    // in the short date: "01" or "1"
  bool twoDigitMonth = false;  // likewise
  std::array<Text, 12> months;
  std::array<Text, 12> shortMonths;
  std::array<Text, 7> days;       // Sunday first
  std::array<Text, 7> shortDays;  // Sunday first
  Text am;
  Text pm;
};

// The calling thread's locale: that of an enclosing ScopedLocale, else the user's. Lives for good.
const Locale& userLocale();

// Gives the calling thread another locale until the end of the scope.
class ScopedLocale {
 public:
  explicit ScopedLocale(std::string_view name);
  ~ScopedLocale();
  ScopedLocale(const ScopedLocale&) = delete;
  ScopedLocale& operator=(const ScopedLocale&) = delete;

 private:
  const Locale* before_;
};

}  // namespace veltgeneral
