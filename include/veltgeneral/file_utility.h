// FileUtility: one call, one file.
//
// Text is UTF-16 in memory and one byte a character on disk, through the code page in force; no
// byte-order mark is written or expected. Paths take "\" or "/", with a drive letter or without.
// Members trap their failures and return them as an ErrInfo: a run-time number (53 no such file,
// 76 no such folder, 70 access denied, 61 disk full ...) with severity 1. Nothing they opened stays
// open, and in/out arguments keep what was stored in them before the failure.
#pragma once

#include <cstdint>

#include "veltgeneral/err_info.h"
#include "veltgeneral/export.h"
#include "veltgeneral/text.h"
#include "veltgeneral/text_array.h"
#include "veltgeneral/variant.h"

namespace veltgeneral {

// A date and time field by field, as callers know it from the platform, in its layout.
// UpdateFileTime takes these fields one by one; no member reads or fills the record.
struct SYSTEMTIME {
  std::int16_t wYear;
  std::int16_t wMonth;  // 1 to 12
  std::int16_t wDayOfWeek;
  std::int16_t wDay;
  std::int16_t wHour;
  std::int16_t wMinute;
  std::int16_t wSecond;
  std::int16_t wMilliseconds;
};

// The rules of a time zone, as callers know them from the platform, in its layout: minutes to be
// added to local time, names, and the days of change. No member reads or fills it.
struct TIME_ZONE_INFORMATION {
  std::int32_t Bias;
  char16_t StandardName[32];
  SYSTEMTIME StandardDate;
  std::int32_t StandardBias;
  char16_t DaylightName[32];
  SYSTEMTIME DaylightDate;
  std::int32_t DaylightBias;
};

static_assert(sizeof(SYSTEMTIME) == 16 && sizeof(TIME_ZONE_INFORMATION) == 172);

class VELTGENERAL_API FileUtility {
 public:
  // What UpdateFileTime takes from the hour that it is given, in hours, and adds to it: the whole
  // hours of these minutes.
  std::int16_t daylightoffset = 0;
  std::int16_t utcoffset = 0;

  // Counts the regular files, neither hidden nor system, that match `sDirectory`: a folder with its
  // separator, or a folder and a name with "*" and "?", matched without regard to case. What
  // matches nothing counts 0. More than 32,767 matches are error 6; `iNumFile` then keeps its
  // value.
  ErrInfo numFileInDir(TextView sDirectory, std::int16_t& iNumFile);

  // Replaces the content of `sFileName` by `sTextFile` plus CR LF, then gives the file exactly
  // `attributeFile`: a sum of read-only 1, hidden 2, system 4, archive 32, or 0. A read-only file
  // is replaced too. Nothing is rolled back: a failed write leaves a short file with the archive
  // attribute alone.
  //
  //   FileUtility().writeFile(u"out.txt", 0, u"ok");  // 6F 6B 0D 0A
  ErrInfo writeFile(TextView sFileName, std::int32_t attributeFile, TextView sTextFile);

  // The whole file as one text, line breaks included. Success is a result as newly created.
  ErrInfo readFile(TextView sFileName, Text& sTextFile);

  // The whole file as a variant that holds bytes. Success is a result as newly created.
  ErrInfo readBinaryFile(TextView sFileName, Variant& vntTextFile);

  // Gives the file this time, UTC once the two offsets are applied, as that of its last access and
  // change; and as that of its creation where the host can keep one. The numbers are any values
  // that 16-bit integers can be made of, the day of the week is not looked at, and nothing is
  // written back.
  //
  // An hour beyond 23 is 24 less, on the next day number; nothing else carries, and a time that is
  // then none (32 January, hour -1, a year before 1601) leaves the file as it was, without saying
  // so. Success is a cleared result. A file that cannot be opened for writing, a read-only one
  // even with all rights, is "Could not open file " and its path.
  ErrInfo UpdateFileTime(Variant& fname, Variant& fyear, Variant& fmonth, Variant& fdayofweek,
                         Variant& fday, Variant& fhour, Variant& fmin, Variant& fsec);

  // Builds semicolon-delimited text of the cells (1..lNumColumns, 1..lNumRows): a cell that is no
  // number, no date and not blank stands in double quotes, a quote inside is doubled, rows end with
  // CR LF, and a row of blank cells is left out. `sDelim` is accepted and not used. Success is a
  // cleared result. On failure `sStringFile` holds the rows before the failing one.
  ErrInfo getCsvStringFromArray(Text& sStringFile, TextArray& sArrayValue, std::int32_t lNumRows,
                                std::int32_t lNumColumns, TextView sDelim);

  // Writes what `getCsvStringFromArray` builds with `writeFile` and the archive attribute; the
  // result is that of `writeFile`, or of the building where that fails: no file is written then.
  // The file ends with two line breaks, or holds one alone when no row had data.
  ErrInfo writeCsvFileFromArray(TextView sFileName, TextArray& sArrayValue, std::int32_t lNumRows,
                                std::int32_t lNumColumns);

  // The lines of a file as the elements 1..n of `listRows`; a line ends with CR or CR LF. A file
  // without line gives the single element "" and `lNumRows` 0. Failures name the class "Utilita";
  // they leave `lNumRows` alone and in `listRows` the lines read so far.
  ErrInfo readAndLoadInArrayByCRLF(TextView sFileName, TextArray& listRows, std::int32_t& lNumRows);

  // Reads a semicolon-delimited file into the table (1..lNumRows, 1..lines). The argument names are
  // the published ones: `lNumRows` is the most fields a line may have, and `lNumColumns` becomes
  // the number of lines that are not blank. A blank line keeps its place; so does a line with too
  // many fields, whose error is returned if no line follows it. A file without line is error 9.
  ErrInfo getArrayFromCsvFile(TextView sFileName, TextArray& sArrayValue, std::int32_t lNumRows,
                              std::int32_t& lNumColumns);

  // Reads records of `iObjectLen` characters, each followed by CR LF (the last may lack it), from
  // record `lStartPosition` (1 is the first) on into the elements 1, 2, ... of `sOList`, each as
  // Funzioni's normStringOnlyAscii makes it. Lengths are 20, 25, 125, 150, 160, 207, 247, 400, 450,
  // 962 and 970. `iNumObject` is the number wanted and becomes that of the records there are from
  // the first on. Error 63 for a first record below 1, 9 for a list that is too short, 62 for a
  // file that loses records meanwhile; records stored before that stay.
  ErrInfo ooReadFile(TextView sFlLename, std::int16_t iObjectLen, std::int32_t lStartPosition,
                     std::int16_t& iNumObject, TextArray& sOList);
};

}  // namespace veltgeneral
