// Calendar dates, proleptic Gregorian, years 100 to 9999.
#pragma once

#include <cstdint>
#include <optional>

#include "veltgeneral/text.h"
#include "veltgeneral/variant.h"

namespace veltgeneral {

struct CivilTime {
  std::int32_t year = 1899;
  std::int32_t month = 12;  // 1 to 12
  std::int32_t day = 30;    // 1 to 31
  std::int32_t hour = 0;
  std::int32_t minute = 0;
  std::int32_t second = 0;
  std::int32_t weekday = 6;  // 0 Sunday to 6 Saturday
};

// To the nearest second. Throws RuntimeError 5 outside the years 100 to 9999.
CivilTime civilTime(Date date);

// Every field carries into the next larger one; years 0 to 29 are 2000 to 2029, 30 to 99 are 1930
// to 1999. Throws RuntimeError 5 when the day lies outside the years 100 to 9999.
Date dateSerial(std::int16_t year, std::int16_t month, std::int16_t day);

// Carries into days: 24 hours are 1.0. A negative total keeps its time of day counted forward: an
// hour before midnight of day zero is 23:00 of day -1. Every argument has an answer.
Date timeSerial(std::int16_t hour, std::int16_t minute, std::int16_t second);

// Days since 30 December 1899. Nothing where the calendar has no such day, or outside the years 100
// to 9999.
std::optional<std::int32_t> dayNumber(std::int32_t year, std::int32_t month, std::int32_t day);

// `seconds` (0 to 86399) into day `day`, which may be negative.
Date dateOf(std::int32_t day, std::int32_t seconds);

// Years as people shorten them: 0 to 29 are 2000 to 2029, 30 to 99 are 1930 to 1999.
constexpr std::int32_t widenedYear(std::int32_t year) {
  if (year < 0 || year > 99) return year;
  return year < 30 ? year + 2000 : year + 1900;
}

// Local time, whole seconds.
Date now();

// By the library's patterns, letters in either case: d, dd, m, mm day and month, ddd, dddd, mmm,
// mmmm the locale's names, yy, yyyy the year and y the day of the year, h, hh, n, nn, s, ss the
// time on a clock of 24 hours; m and mm right after an hour are minutes. "/" and ":" are the
// locale's separators, all else is literal. Throws as civilTime does; so do the next two.
Text formatDate(Date date, TextView pattern);
// The locale's order with a four-digit year.
Text formatShortDate(Date date);
// The short date unless the day is day zero, and the time unless it is midnight; the time alone of
// midnight on day zero.
Text formatGeneralDate(Date date);

}  // namespace veltgeneral
