// Numbers in text: one grammar, for the test and for every reading.
//
// Blanks (spaces, tabs, line ends) may stand around everything. One sign stands before or after the
// digits, blanks between allowed; parentheses are a sign too. The locale's currency sign may stand
// once, before or after. Thousands marks are ignored between the first digit and the decimal mark,
// whatever the grouping. An exponent is E or D in either case with its own sign and no blank. "&H"
// and "&O" literals take no sign and wrap: up to FFFF as 16 bits, up to FFFFFFFF as 32 bits.
#pragma once

#include <cstdint>

#include "automation/locale.h"
#include "veltgeneral/text.h"
#include "veltgeneral/variant.h"

namespace veltgeneral {

// Whether a number's text can begin with `c`: what tells nearly every word from one.
inline bool canBeginNumber(char16_t c, const Locale& locale) {
  constexpr auto kMarks = [] {
    std::uint64_t set = 0;
    for (const char16_t mark : TextView(u"0123456789 \t\r\n+-(&.,")) set |= 1ull << mark;
    return set;
  }();
  if (c < 64 && (kMarks >> c & 1) != 0) return true;
  return c == locale.decimal || c == locale.currency.c_str()[0] || c == 0x00A0 || c == 0x202F;
}

// Whether a text that begins as a number can is one to its end.
bool isNumberToItsEnd(TextView text, const Locale& locale);

// True exactly where readDouble succeeds.
inline bool isNumberText(TextView text, const Locale& locale) {
  return !text.empty() && canBeginNumber(text[0], locale) && isNumberToItsEnd(text, locale);
}

// The nearest double. Throws RuntimeError 13 for a text that is no number, 6 for one beyond the
// range of a double (or a literal beyond 32 bits).
double readDouble(TextView text, const Locale& locale);

// Every digit as written, halves to even where 28 decimals or 96 bits do not hold them. Throws
// RuntimeError 13 or 6 likewise.
Decimal readDecimal(TextView text, const Locale& locale);

}  // namespace veltgeneral
