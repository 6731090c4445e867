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

#include "automation/locale.h"
#include "veltgeneral/text.h"
#include "veltgeneral/variant.h"

namespace veltgeneral {

// True exactly where readDate succeeds. A text that cannot be a date is mostly told by its first
// characters.
bool isDateText(TextView text, const Locale& locale);

// Throws RuntimeError 13 for a text that is no date.
Date readDate(TextView text, const Locale& locale);

}  // namespace veltgeneral
