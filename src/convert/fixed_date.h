// Dates and times written in digits at fixed positions.
//
// A text passes where calendar construction from its fields, which carries, and formatting give it
// back unchanged. What comes back is digits, each field within its range; so a text of digits whose
// fields are within theirs is all that can pass, and no calendar is built to tell.
#pragma once

#include <cstddef>

#include "veltgeneral/text.h"

namespace veltgeneral {

constexpr bool isDigit(char16_t c) noexcept { return static_cast<char16_t>(c - u'0') <= 9; }

// Looks at every character, without a branch for each.
template <std::size_t Count>
constexpr bool allDigits(const char16_t* text) noexcept {
  unsigned others = 0;
  for (std::size_t i = 0; i < Count; ++i) others |= static_cast<unsigned>(!isDigit(text[i]));
  return others == 0;
}

// Of characters that are digits.
constexpr int twoDigits(const char16_t* text) noexcept {
  return text[0] * 10 + text[1] - u'0' * 11;
}
constexpr int fourDigits(const char16_t* text) noexcept {
  return twoDigits(text) * 100 + twoDigits(text + 2);
}

constexpr bool isLeapYear(int year) noexcept {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

bool isFixedDay(TextView text) noexcept;    // YYYYMMDD
bool isFixedTime(TextView text) noexcept;   // HHMMSS
bool isFixedStamp(TextView text) noexcept;  // YYYYMMDDHHNNSS

}  // namespace veltgeneral
