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

class VELTGENERAL_API FileUtility {
 public:
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

  // Builds semicolon-delimited text of the cells (1..lNumColumns, 1..lNumRows): a cell that is no
  // number, no date and not blank stands in double quotes, a quote inside is doubled, rows end with
  // CR LF, and a row of blank cells is left out. `sDelim` is accepted and not used. Success is a
  // cleared result. On failure `sStringFile` holds the rows before the failing one.
  ErrInfo getCsvStringFromArray(Text& sStringFile, TextArray& sArrayValue, std::int32_t lNumRows,
                                std::int32_t lNumColumns, TextView sDelim);

  // Writes that text with `writeFile` and the archive attribute; the result is that of `writeFile`.
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
};

}  // namespace veltgeneral
