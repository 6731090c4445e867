// Dates and times written in digits at fixed positions.
//
// A text passes where calendar construction from its fields, which carries, and formatting give it
// back unchanged. What comes back is digits, each field within its range; so a text of digits whose
// fields are within theirs is all that can pass, and no calendar is built to tell.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/digit_fields.h"
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

// Year in two halves, month, day; the last days of a month are for a closer look.
inline constexpr auto kDay = platform::fieldRanges({10, 0, 1, 1}, {99, 99, 12, 31});
// Hour, minute, minute again, second; day, hour, minute, second.
inline constexpr auto kTime = platform::fieldRanges({0, 0, 0, 0}, {23, 59, 59, 59});
inline constexpr auto kDayAndTime = platform::fieldRanges({1, 0, 0, 0}, {31, 23, 59, 59});

inline constexpr unsigned kLongMonths = 0b1'0101'1010'1010;  // bit n: month n has 31 days

// Of a text whose fields are within kDay.
constexpr bool monthHasDay(const char16_t* text) noexcept {
  if (text[6] < u'3' && !(text[6] == u'2' && text[7] == u'9')) return true;
  const FourDigits monthAndDay(text + 4);
  const unsigned month = monthAndDay.first();
  const unsigned day = monthAndDay.second();
  if (month == 2) return day == 29 && isLeapYear(FourDigits(text).all());
  return day - 1 < 30 + (kLongMonths >> month & 1);
}

inline constexpr TextView kDayZero = u"18991230";
inline constexpr TextView kMidnight = u"000000";

// Of a text whose fields are within kDay and kDayAndTime: midnight alone before day zero, where a
// time would have to count backwards.
inline bool calendarHas(const char16_t* text) noexcept {
  return monthHasDay(text) &&
         (text[0] >= u'2' || TextView(text, 8) >= kDayZero || TextView(text + 8, 6) == kMidnight);
}

}  // namespace fixed_date

// YYYYMMDD, years of four digits.
inline bool isFixedDay(TextView text) noexcept {
  return text.size() == 8 && platform::fieldsWithin(text.data(), fixed_date::kDay) &&
         fixed_date::monthHasDay(text.data());
}

// HHMMSS.
inline bool isFixedTime(TextView text) noexcept {
  return text.size() == 6 &&
         platform::fieldsWithin(text.data(), text.data() + 2, fixed_date::kTime);
}

// YYYYMMDDHHNNSS.
inline bool isFixedStamp(TextView text) noexcept {
  return text.size() == 14 &&
         platform::fieldsWithin(text.data(), fixed_date::kDay, text.data() + 6,
                                fixed_date::kDayAndTime) &&
         fixed_date::calendarHas(text.data());
}

}  // namespace veltgeneral
