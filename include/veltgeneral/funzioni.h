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

// The database that a literal is written for. Any other value is accepted as an engine that nothing
// is known of.
enum typeDataBaseEngine : std::int32_t {
  dbengineORACLE = 1,
  dbengineMSACCESS = 2,
  dbengineSQLSERVER = 3,
};

class VELTGENERAL_API Funzioni {
 public:
  Funzioni();

  // Cuts one semicolon-delimited line into the elements 1, 2, ... of `sArrayValue`, whose upper
  // bound is the most fields that the line may have (Array di input sottodimensionato, and nothing
  // stored, where it has more). ";" inside quotes does not separate; a field loses the quotes
  // around it, then a doubled quote becomes one; blanks stay. At most 32,767 characters (error 6).
  // Success is a cleared result.
  ErrInfo getValueFromCsvString(TextView sStringValue, TextArray& sArrayValue,
                                std::int32_t& lNumFieldFound);

  // Sorts the elements `Low` to `High` of a list in place by their characters from `iByteStart`
  // (1 is the first) on, at most `iByteLen` of them; by code unit, a shorter key before a longer
  // one that it begins. `bIgnoreUcase` true compares them as they are, false in upper case. Not
  // stable. The pivots come from the process's pseudo-random numbers, and the host's pending events
  // are processed once a pass (host_events.h); the hook must not change the array. Success is a
  // result as newly created; after a failure, elements already exchanged stay so.
  ErrInfo quickSortArray(TextArray& SortArray, std::int32_t Low, std::int32_t High,
                         std::int16_t iByteStart, std::int16_t iByteLen, bool bIgnoreUcase);

  // Whether the text is a day that the calendar has, in exactly 8 digits, years 1000 to 9999.
  bool isDateYYYYMMDD(TextView sDate) const;
  // Whether the text is such a day with a time, in exactly 14 digits. A time other than midnight
  // before 30 December 1899 is refused: the sum of a negative day number and a time does not come
  // back as it went in.
  bool isDateYYYYMMDDHH24MISS(TextView sDate) const;
  // Whether the text is a time of day, in exactly 6 digits.
  bool isTimeHH24MISS(TextView sTime) const;

  // Whether the text is "00000000", which stands for no date.
  bool isDateYYYYMMDDefault(TextView sDate) const;
  // Whether the text is eight blanks, which stand for no date too.
  bool isDateYYYYMMDDefaultSpaces(TextView sDate) const;

  // Whether the text is four digits that are a leap year of the Gregorian calendar, "0000"
  // included. `sAnno` is not changed.
  bool isYYYYBisestile(Text& sAnno) const;

  // The day of the week, 1 for Sunday to 7 for Saturday: as the table of Italian and English
  // abbreviations has it, so 0 in a locale that names its days otherwise. Months and days beyond
  // their range carry, years below 100 are of the 20th and 21st century, and a field is any text
  // that is a number. 0 also where a field is none, or the day is outside the years 100 to 9999.
  std::int16_t getDayNumberFromYYYYMMDD(TextView sDateYYYYMMDD) const;
  // The same of a date.
  std::int16_t getDayNumberFromDate(Date sDate) const;

  // "20240131235959" as "2024-01-31T23:59:59" (ISO 8601); the empty text for what
  // isDateYYYYMMDDHH24MISS refuses.
  Text getDate2Xml(TextView sDate) const;
  // getDate2Xml backwards: a text of 14 digits, or empty where they are no date. Separators are not
  // looked at; what is missing at the end, or no number, counts as zeros.
  Variant getDateFromXml(TextView sDate) const;

  // 1 for a number equal to true (-1), else 0; the text "True" is no number.
  std::int16_t getBool2Xml(const Variant& vntBool) const;
  // Whether the value is a number equal to 1.
  bool getBoolFromXml(const Variant& vntBool) const;

  // A duration in tenths of a minute as "PT1H30M0S" (ISO 8601), hours beyond 24 included; seconds
  // may have a fraction, and an amount below zero stands in the seconds alone. "PT0H0M0S" for what
  // is no number. Throws RuntimeError 6 for more seconds than a double counts.
  Text getDur2Xml(const Variant& vntDur) const;
  // getDur2Xml backwards, for whole seconds. Behind the first two characters,
  // whatever they are, only digits and the letters H, M and S count, so "PT7.5S" is 75 seconds.
  // Throws RuntimeError 13 for a letter without digits, 6 for more than a double counts, and as a
  // conversion to text does.
  double getDurFromXml(const Variant& vntDur) const;
  // An amount of work in thousandths of a minute, written as getDur2Xml writes durations.
  Text getWork2Xml(const Variant& vntBool) const;
  // getWork2Xml backwards, by the rules of getDurFromXml.
  double getWorkFromXml(const Variant& vntWork) const;

  // A single or double as a text with "." for the comma, a decimal as a 16-bit integer, any other
  // number as a 32-bit integer, halves to even; the empty text for what is no number. Throws
  // RuntimeError 6 for an integer that does not fit.
  Variant getNumber2Xml(const Variant& vntValue) const;
  // The number in a text that has "," or "." as its decimal separator, whatever the locale; 0 for
  // what is no number. Throws RuntimeError 13 for a text with both, a boolean and the empty value.
  double getNumberFromXml(const Variant& vntValue) const;

  // Literals for SQL. What is no value is written as the engine writes that: '' or Null. For an
  // engine that is unknown they answer with an empty value (or 0).

  // A text of 14 digits as the engine's date and time. The third engine reads the day in the user's
  // short form.
  Variant getDataForDB(typeDataBaseEngine lEngine, const Variant& sDateYYYYMMDDHHMMSS) const;
  // What a boolean (-1 or 0) is multiplied by for the engine.
  std::int16_t getBoolForDB(typeDataBaseEngine lEngine) const;
  // The number multiplied by getBoolForDB's answer: for the second engine as it is, negated for the
  // others. `vntBool` is not changed. Throws RuntimeError 6 beyond 16 bits.
  Variant getBoolForDBx(typeDataBaseEngine lEngine, Variant& vntBool) const;
  // As getNumber2Xml. A single or double becomes that text in `vntValue` too.
  Variant getNumberForDB(typeDataBaseEngine lEngine, Variant& vntValue) const;

  // Normalisers. Each rewrites a text character by character, drops the blanks at the end, and
  // answers with a single blank where nothing is left. `sStringaOut` may be the variable that
  // `sStringa` is.
  //
  // Success is severity 3, this member as location and the module name as class. A text longer than
  // 32,767 characters is error 6, which is logged and leaves `sStringaOut` alone.

  // For a literal in SQL: ' is doubled; `, CR and LF become blanks.
  ErrInfo normStringForDb(TextView sStringa, Text& sStringaOut) const;
  // CR and LF become blanks.
  ErrInfo normStringNoCRLF(TextView sStringa, Text& sStringaOut) const;
  // By the code in the system's code page: 0 to 7, 11, 12, 14 to 31, 127 to 144 and 147 to 159
  // become blanks. A character that the page does not have stays.
  ErrInfo normStringOnlyAscii(TextView sStringa, Text& sStringaOut) const;
  // ' is doubled.
  ErrInfo normStringOnlyApice(TextView sStringa, Text& sStringaOut) const;
  // For text in XML: & < > become entities, è é à ù ò ì their letter and `, and ' becomes `. The
  // double quote stays.
  ErrInfo normStringForXML(TextView sStringa, Text& sStringaOut) const;
  // normStringOnlyApice for any value that has a text; empty and null become null, and the result
  // is then a new one.
  ErrInfo normStringOnlyApiceWithNull(const Variant& vntStringa, Variant& vntStringaOut) const;

  // Shifts each character by 10 codes up in the system's code page; one that the page does not have
  // counts as "?". No protection of anything. A code beyond 255 is error 5, which is logged and
  // leaves the output alone.
  ErrInfo simpleEncrypt(TextView sToEncrypt, Text& sEncrypted) const;
  // The same downwards: simpleEncrypt backwards. A code below 0 is error 5.
  ErrInfo simpleDecrypt(TextView sToDecrypt, Text& sDecrypted) const;

  // Has the PDF generator (VELTGENERAL_PDF_LIBRARY, else our own) write the document that a command
  // file describes. Success is a cleared result. What the generator refuses is eiABORTED with its
  // message; a generator that is not there or not whole is error 53, 48 or 453. All are logged.
  ErrInfo createPdfFile(TextView sCommandFile, TextView sPdfFile) const;
  // As createPdfFile, in memory: `vntPdfStream` becomes the document, a text with one character of
  // the code page for each byte. The work files "cmd.7055" and "pdf.7055" (four digits drawn from
  // the process's pseudo-random numbers) stay in a temporary folder that only the user can reach. A
  // work file that cannot be written or read gives the result of writeFile or readBinaryFile;
  // success is that of readBinaryFile. Any failure leaves `vntPdfStream` alone.
  ErrInfo createPdfStream(const Variant& vntCommandStream, Variant& vntPdfStream) const;

  // Where Windows and its system files would lie on this host, without a slash at the end. Success
  // is a cleared result; eiABORTED where there is no such folder or its path is longer than 255
  // characters. `sSystemDir` is asked first, and keeps its new value where the other then fails.
  ErrInfo getWinAndSistemDir(Text& sWinDir, Text& sSystemDir) const;
};

}  // namespace veltgeneral
