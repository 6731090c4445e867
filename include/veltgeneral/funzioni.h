// Funzioni: checks and conversions of values.
//
// Fixed-width digit texts are the form in which applications exchange dates and times: "YYYYMMDD",
// "YYYYMMDDHHNNSS", "HHMMSS". What a text means as a number follows the user's locale.
//
// The predicates never fail. The codecs for XML and databases trap nothing: a value that cannot be
// converted is a RuntimeError. Members that return an ErrInfo report and log their failures.
//
// Creating an object records the user's decimal separator for all objects of the thread.
#pragma once

#include <cstdint>

#include "veltgeneral/err_info.h"
#include "veltgeneral/export.h"
#include "veltgeneral/text.h"
#include "veltgeneral/text_array.h"
#include "veltgeneral/variant.h"

namespace veltgeneral {

class VELTGENERAL_API Funzioni {
 public:
  Funzioni();

  // Cuts one semicolon-delimited line into the elements 1, 2, ... of `sArrayValue`, whose upper
  // bound is the most fields that the line may have (Array di input sottodimensionato, and nothing
  // stored, where it has more). ";" inside quotes does not separate; a field loses the quotes around
  // it, then a doubled quote becomes one; blanks stay. At most 32,767 characters (error 6). Success
  // is a cleared result.
  ErrInfo getValueFromCsvString(TextView sStringValue, TextArray& sArrayValue,
                                std::int32_t& lNumFieldFound);

  // Days and times that the calendar has, written in exactly 8, 14 and 6 digits, years 1000 to
  // 9999. A time other than midnight before 30 December 1899 is refused: the sum of a negative day
  // number and a time does not come back as it went in.
  bool isDateYYYYMMDD(TextView sDate) const;
  bool isDateYYYYMMDDHH24MISS(TextView sDate) const;
  bool isTimeHH24MISS(TextView sTime) const;

  // The two texts that stand for no date: "00000000", and eight blanks.
  bool isDateYYYYMMDDefault(TextView sDate) const;
  bool isDateYYYYMMDDefaultSpaces(TextView sDate) const;

  // Four digits that are a leap year of the Gregorian calendar, "0000" included. `sAnno` is not
  // changed.
  bool isYYYYBisestile(Text& sAnno) const;

  // The day of the week, 1 for Sunday to 7 for Saturday: as the table of Italian and English
  // abbreviations has it, so 0 in a locale that names its days otherwise. Months and days beyond
  // their range carry, years below 100 are of the 20th and 21st century, and a field is any text
  // that is a number. 0 also where a field is none, or the day is outside the years 100 to 9999.
  std::int16_t getDayNumberFromYYYYMMDD(TextView sDateYYYYMMDD) const;
  std::int16_t getDayNumberFromDate(Date sDate) const;
};

}  // namespace veltgeneral
