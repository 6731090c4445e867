// The user's locale: how numbers and dates look in text.
//
// Chosen once from the environment: VELTGENERAL_LOCALE, else LC_ALL, else LC_NUMERIC for numbers
// and LC_TIME for dates, else LANG; a variable without text counts as unset. Italian and US English
// are built in; others come from the C library, whose process-wide locale is never changed. "C",
// "POSIX" and a name that nothing knows are US English.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "veltgeneral/export.h"
#include "veltgeneral/text.h"

namespace veltgeneral {

enum class DateOrder : std::uint8_t { dayMonthYear, monthDayYear, yearMonthDay };

struct Locale {
  Text name;  // "it_IT"; "de_DE/it_IT" where numbers and dates come from different ones
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
  bool twoDigitHour = true;       // in times: "09:05:00" or "9:05:00"
  bool twelveHours = false;       // in times, followed by `am` or `pm`
  Text am;                        // may be empty
  Text pm;
  // Derived from the months, to tell other words at their second or third letter: which letter
  // follows which at the beginning of a name. Indices are the place of the first of the two (0, 1)
  // and its slot (case_fold.h), the bit is the slot of the other.
  std::array<std::array<std::uint32_t, 32>, 2> monthLetters{};
};

// The calling thread's locale: that of an enclosing ScopedLocale, else the user's. Lives for good.
VELTGENERAL_API const Locale& userLocale();

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
