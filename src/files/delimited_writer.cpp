// FileUtility's members that turn tables into delimited text.
#include <algorithm>

#include "automation/coerce.h"
#include "files/csv_line.h"
#include "files/file_result.h"
#include "platform/memory.h"
#include "veltgeneral/file_utility.h"

namespace veltgeneral {
namespace {

constexpr TextView kRowEnd = u"\r\n";
constexpr std::int32_t kArchive = 32;

// The cell with every quote doubled, itself in quotes.
void appendQuoted(Text& out, TextView cell) {
  out.push_back(kQuote);
  for (std::size_t quote = cell.find(kQuote); quote != TextView::npos; quote = cell.find(kQuote)) {
    out.append(cell.substr(0, quote + 1)).push_back(kQuote);
    cell.remove_prefix(quote + 1);
  }
  out.append(cell);
  out.push_back(kQuote);
}

// Whether the cell goes out as it is; a quote in it makes it neither number nor date.
bool isPlain(TextView cell) { return isNumeric(cell) || isDate(cell); }

// Appends the row unless all its cells are blank.
void appendRow(Text& out, const TextArray& table, std::int32_t row, std::int32_t columns) {
  const std::size_t before = out.size();
  bool hasData = false;
  try {
    for (std::int32_t column = 1; column <= columns; ++column) {
      const TextView cell = table.at(column, row);
      if (trim(cell).empty()) {
        out.append(cell);
      } else {
        hasData = true;
        if (isPlain(cell)) {
          out.append(cell);
        } else {
          appendQuoted(out, cell);
        }
      }
      if (column < columns) out.push_back(kSeparator);
    }
  } catch (...) {
    out.resize(before);
    throw;
  }
  if (hasData) {
    out.append(kRowEnd);
  } else {
    out.resize(before);
  }
}

// Room for a table whose cells are all quoted and hold no quote.
void prepare(Text& out, const TextArray& table) {
  constexpr std::size_t kAroundCell = 3;
  out.reserve(table.characters() + kAroundCell * table.size());
  platform::preferHugePages(out.data(), out.capacity() * sizeof(char16_t));
}

}  // namespace

ErrInfo FileUtility::getCsvStringFromArray(Text& sStringFile, TextArray& sArrayValue,
                                           std::int32_t lNumRows, std::int32_t lNumColumns,
                                           TextView /*sDelim*/) {
  return trapped(u"getCsvStringFromArray", kFileUtility, [&] {
    sStringFile.clear();
    if (lNumRows > 0 && lNumColumns > 0) prepare(sStringFile, sArrayValue);
    // Wider than the row number, which may be the greatest there is.
    for (std::int64_t row = 1; row <= lNumRows && lNumColumns > 0; ++row) {
      appendRow(sStringFile, sArrayValue, static_cast<std::int32_t>(row), lNumColumns);
    }
    return clearedResult();
  });
}

ErrInfo FileUtility::writeCsvFileFromArray(TextView sFileName, TextArray& sArrayValue,
                                           std::int32_t lNumRows, std::int32_t lNumColumns) {
  return trapped(u"writeCsvFileFromArray", kFileUtility, [&] {
    Text text;
    ErrInfo result = getCsvStringFromArray(text, sArrayValue, lNumRows, lNumColumns, u";");
    if (result.isSuccess()) result = writeFile(sFileName, kArchive, text);
    return result;
  });
}

}  // namespace veltgeneral
