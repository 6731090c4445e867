// FileUtility's members that turn tables into delimited text.
#include <algorithm>
#include <vector>

#include "automation/coerce.h"
#include "files/csv_line.h"
#include "files/file_result.h"
#include "platform/memory.h"
#include "veltgeneral/file_utility.h"

namespace veltgeneral {
namespace {

constexpr TextView kRowEnd = u"\r\n";
constexpr std::int32_t kArchive = 32;

// The text of one row as it grows: room is made once a cell, and its characters go there unchecked.
class RowText {
 public:
  void clear() noexcept { end_ = 0; }
  TextView view() const noexcept { return {units_.data(), end_}; }

  // Room for at least `units` characters at the end; `close` says where they really end.
  char16_t* open(std::size_t units) {
    if (units_.size() - end_ < units) units_.resize(2 * (end_ + units));
    return units_.data() + end_;
  }
  void close(const char16_t* end) noexcept { end_ = static_cast<std::size_t>(end - units_.data()); }

 private:
  std::vector<char16_t> units_ = std::vector<char16_t>(512);
  std::size_t end_ = 0;
};

// Whether the cell goes out as it is; a quote in it makes it neither number nor date.
bool isPlain(TextView cell) { return isNumeric(cell) || isDate(cell); }

// In quotes, every quote doubled.
char16_t* writeQuoted(char16_t* out, TextView cell) {
  *out++ = kQuote;
  for (const char16_t c : cell) {
    *out++ = c;
    if (c == kQuote) *out++ = c;
  }
  *out++ = kQuote;
  return out;
}

// Appends the row unless all its cells are blank; nothing when a cell is not there.
void appendRow(Text& out, RowText& text, const TextArray& table, std::int32_t row,
               std::int32_t columns) {
  bool hasData = false;
  text.clear();
  for (std::int32_t column = 1; column <= columns; ++column) {
    const TextView cell = table.at(column, row);
    char16_t* end = text.open(2 * cell.size() + 3);
    if (!cell.empty()) {
      const bool blank = cell.find_first_not_of(u' ') == TextView::npos;
      hasData |= !blank;
      end = blank || isPlain(cell) ? std::ranges::copy(cell, end).out : writeQuoted(end, cell);
    }
    if (column < columns) *end++ = kSeparator;
    text.close(end);
  }
  if (hasData) out.append(text.view()).append(kRowEnd);
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
    RowText text;
    // Wider than the row number, which may be the greatest there is.
    for (std::int64_t row = 1; row <= lNumRows && lNumColumns > 0; ++row) {
      appendRow(sStringFile, text, sArrayValue, static_cast<std::int32_t>(row), lNumColumns);
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
