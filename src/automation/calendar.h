// Calendar dates, proleptic Gregorian, years 100 to 9999.
#pragma once

#include <cstdint>

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

// Carries into days: 24 hours are 1.0. A negative total keeps its time of day counted forward.
// Throws RuntimeError 5 or 6 where automation does.
Date timeSerial(std::int16_t hour, std::int16_t minute, std::int16_t second);

// Local time, whole seconds.
Date now();

// By the library's patterns: runs of y, m, d, h, n, s (and "m" after "h" is minutes), "ddd" the
// locale's abbreviated weekday, "/" and ":" the locale's separators, all else literal. Letters
// match in either case.
Text formatDate(Date date, TextView pattern);
// The locale's order with a four-digit year.
Text formatShortDate(Date date);

}  // namespace veltgeneral
