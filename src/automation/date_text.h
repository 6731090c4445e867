// Dates in text: one grammar, for the test and for the reading.
//
// A date, a time, or both in either order with a blank between; blanks (spaces, tabs, line ends)
// may stand around everything and around every mark.
//
// Dates: numbers apart by "/", "-", blanks or the locale's date mark. Day and month stand in the
// locale's order, or in the other where only that one fits; a first number of three digits or more,
// or one beyond 31 that nothing else suits, is the year. Month names of the locale, full or
// abbreviated, in any case, may replace the month's number, a comma may follow the day. Without a
// year it is the current one; a year and a month alone are the first of that month. Years have up
// to four digits, and those of one or two are widened (0 to 29 are 2000 to 2029, else 1930 to
// 1999).
//
// Times: hours, minutes and perhaps seconds apart by one and the same mark (":", the locale's time
// mark, or "." where that is no date mark), 00:00:00 to 23:59:59; AM, PM, A, P or the locale's
// words may follow, and then the hour may stand alone. A time alone is of day zero.
#pragma once

#include "automation/case_fold.h"
#include "automation/locale.h"
#include "veltgeneral/text.h"
#include "veltgeneral/variant.h"

namespace veltgeneral {

// Whether a date's text can begin as `text` does. A text that begins with a letter begins with a
// month: what tells nearly every word from a date.
inline bool canBeginDate(TextView text, const Locale& locale) {
  if (text.size() < 2) return false;
  const unsigned first = letterSlot(text[0]);
  return first == kNoLetterSlot || (locale.monthLetters[0][first] >> letterSlot(text[1]) & 1) != 0;
}

// Whether a text that begins as a date can is one to its end.
bool isDateToItsEnd(TextView text, const Locale& locale);

// True exactly where readDate succeeds.
inline bool isDateText(TextView text, const Locale& locale) {
  return canBeginDate(text, locale) && isDateToItsEnd(text, locale);
}

// Throws RuntimeError 13 for a text that is no date.
Date readDate(TextView text, const Locale& locale);

}  // namespace veltgeneral
