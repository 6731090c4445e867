// Dates and times written in digits at fixed positions.
//
// A text passes where calendar construction from its fields, which carries, and formatting give it
// back unchanged. What comes back is digits, each field within its range; so a text of digits whose
// fields are within theirs is all that can pass, and no calendar is built to tell.
#pragma once

#include <cstddef>
#include <cstdint>

#include "veltgeneral/text.h"

namespace veltgeneral {

constexpr bool isDigit(char16_t c) noexcept { return static_cast<char16_t>(c - u'0') <= 9; }

// Four characters looked at together, the first in the lowest 16 bits.
class FourDigits {
 public:
  explicit constexpr FourDigits(const char16_t* text) noexcept
      : lanes_((std::uint64_t{text[0]} | std::uint64_t{text[1]} << 16 |
                std::uint64_t{text[2]} << 32 | std::uint64_t{text[3]} << 48) ^
               kZeros) {}

  // 0 where all four are digits. A lane above 9 reaches its top bit, or had it from the start;
  // carries only come out of such lanes.
  constexpr std::uint64_t others() const noexcept { return ((lanes_ + kToTop) | lanes_) & kTop; }

  // The rest is for digits alone.
  constexpr unsigned first() const noexcept { return static_cast<unsigned>(pairs() & 0x7F); }
  constexpr unsigned second() const noexcept { return static_cast<unsigned>(pairs() >> 32 & 0x7F); }
  constexpr bool beginsWithZero() const noexcept { return (lanes_ & 0xF) == 0; }
  constexpr unsigned all() const noexcept { return first() * 100 + second(); }

 private:
  static constexpr std::uint64_t kZeros = 0x0030'0030'0030'0030;
  static constexpr std::uint64_t kToTop = 0x7FF6'7FF6'7FF6'7FF6;
  static constexpr std::uint64_t kTop = 0x8000'8000'8000'8000;

  // Lanes 0 and 2: ten times the digit there plus the one after it.
  constexpr std::uint64_t pairs() const noexcept { return lanes_ * 10 + (lanes_ >> 16); }

  std::uint64_t lanes_;
};

constexpr bool isLeapYear(unsigned year) noexcept {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

namespace fixed_date {

inline constexpr unsigned kDaysOfAnyMonth = 28;
inline constexpr unsigned kLongMonths = 0b1'0101'1010'1010;  // bit n: month n has 31 days

// Of digits.
constexpr bool dayInRange(FourDigits year, FourDigits monthAndDay) noexcept {
  const unsigned month = monthAndDay.first();
  const unsigned day = monthAndDay.second();
  if (year.beginsWithZero() || month - 1 > 11) return false;
  if (day - 1 < kDaysOfAnyMonth) return true;
  if (month == 2) return day == 29 && isLeapYear(year.all());
  return day - 1 < 30 + (kLongMonths >> month & 1);
}

constexpr bool timeInRange(FourDigits hourAndMinute, FourDigits minuteAndSecond) noexcept {
  return hourAndMinute.first() < 24 && hourAndMinute.second() < 60 && minuteAndSecond.second() < 60;
}

}  // namespace fixed_date

// YYYYMMDD, years of four digits.
inline bool isFixedDay(TextView text) noexcept {
  if (text.size() != 8) return false;
  const FourDigits year(&text[0]);
  const FourDigits monthAndDay(&text[4]);
  return (year.others() | monthAndDay.others()) == 0 && fixed_date::dayInRange(year, monthAndDay);
}

// HHMMSS.
inline bool isFixedTime(TextView text) noexcept {
  if (text.size() != 6) return false;
  const FourDigits hourAndMinute(&text[0]);
  const FourDigits minuteAndSecond(&text[2]);
  return (hourAndMinute.others() | minuteAndSecond.others()) == 0 &&
         fixed_date::timeInRange(hourAndMinute, minuteAndSecond);
}

// YYYYMMDDHHNNSS; midnight alone before day zero, where a time would have to count backwards.
inline bool isFixedStamp(TextView text) noexcept {
  if (text.size() != 14) return false;
  const FourDigits year(&text[0]);
  const FourDigits monthAndDay(&text[4]);
  const FourDigits hourAndMinute(&text[8]);
  const FourDigits minuteAndSecond(&text[10]);
  const std::uint64_t others =
      year.others() | monthAndDay.others() | hourAndMinute.others() | minuteAndSecond.others();
  if (others != 0 || !fixed_date::timeInRange(hourAndMinute, minuteAndSecond) ||
      !fixed_date::dayInRange(year, monthAndDay)) {
    return false;
  }
  return year.all() > 1899 || text.compare(0, 8, u"18991230") >= 0 || text.substr(8) == u"000000";
}

}  // namespace veltgeneral
