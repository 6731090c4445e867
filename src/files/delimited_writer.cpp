// FileUtility's members that turn tables into delimited text.
//
// Rows are written one behind the other into a buffer that stays in the cache, and leave it many at
// a time: for a text, or through the code page for a file.
#include <algorithm>
#include <cstring>
#include <vector>

#include "automation/date_text.h"
#include "automation/number_text.h"
#include "automation/text_array_cells.h"
#include "files/csv_line.h"
#include "files/file_result.h"
#include "files/text_file.h"
#include "platform/memory.h"
#include "veltgeneral/file_utility.h"

namespace veltgeneral {
namespace {

constexpr std::int32_t kArchive = 32;

// Text as it grows: room is made once a cell, and its characters go there unchecked.
class GrowingText {
 public:
  std::size_t size() const noexcept { return end_; }
  TextView view() const noexcept { return {units_.data(), end_}; }
  // Forgets what lies behind `size`.
  void cut(std::size_t size) noexcept { end_ = size; }

  // Room for `units` characters from `end` on, which is where what has been written ends.
  char16_t* room(char16_t* end, std::size_t units) {
    end_ = static_cast<std::size_t>(end - units_.data());
    if (units_.size() - end_ < units) units_.resize(2 * (end_ + units));
    return units_.data() + end_;
  }
  char16_t* room(std::size_t units) { return room(units_.data() + end_, units); }
  void close(const char16_t* end) noexcept { end_ = static_cast<std::size_t>(end - units_.data()); }

 private:
  std::vector<char16_t> units_ = std::vector<char16_t>(16 << 10);
  std::size_t end_ = 0;
};

bool isBlank(TextView cell) {
  return cell[0] == u' ' && cell.find_first_not_of(u' ') == TextView::npos;
}

// Copies kStep units; the answer has a bit set where one of them is a quote: the classic test for a
// zero in a word.
constexpr std::size_t kStep = 4;
std::uint64_t copyStep(const char16_t* from, char16_t* out) {
  constexpr std::uint64_t kOnes = 0x0001'0001'0001'0001;
  std::uint64_t word = 0;
  std::memcpy(&word, from, sizeof word);
  std::memcpy(out, &word, sizeof word);
  word ^= kOnes * static_cast<std::uint64_t>(kQuote);
  return (word - kOnes) & ~word & kOnes << 15;
}

// Whether a quote is in what it copied.
bool copyCell(char16_t* out, TextView cell) {
  std::uint64_t quotes = 0;
  if (cell.size() < kStep) {
    for (const char16_t c : cell) {
      *out++ = c;
      quotes |= c == kQuote ? 1u : 0u;
    }
    return quotes != 0;
  }
  // The last step begins where its units end with the cell.
  const std::size_t last = cell.size() - kStep;
  for (std::size_t at = 0; at < last; at += kStep) quotes |= copyStep(cell.data() + at, out + at);
  return (quotes | copyStep(cell.data() + last, out + last)) != 0;
}

// In quotes, every quote doubled.
char16_t* writeQuoted(char16_t* out, TextView cell) {
  *out++ = kQuote;
  if (copyCell(out, cell)) {
    for (const char16_t c : cell) {
      *out++ = c;
      if (c == kQuote) *out++ = c;
    }
  } else {
    out += cell.size();
  }
  *out++ = kQuote;
  return out;
}

// The rows (1..columns) of a table as delimited text.
class TableText {
 public:
  using Cell = TextArrayCells::Cell;

  TableText(TextArray& table, std::int32_t columns)
      : table_(table), cells_(table), columns_(columns) {}

  // How many of the first `rows` rows the table has.
  std::int64_t rowsThere(std::int32_t rows) const {
    if (rows <= 0 || columns_ <= 0) return 0;
    if (table_.dimensions() != 2) return 0;
    const Bounds fields = table_.bounds(1);
    const Bounds lines = table_.bounds(2);
    if (fields.lower > 1 || fields.upper < columns_ || lines.lower > 1) return 0;
    return std::clamp<std::int64_t>(lines.upper, 0, rows);
  }

  // Calls `take(text)` with the text of the first `rows` rows, which are there, in pieces.
  template <class Take>
  void write(std::int64_t rows, Take&& take) {
    for (std::int64_t row = 1; row <= rows; ++row) {
      append(static_cast<std::int32_t>(row));
      if (text_.size() < kPiece && row < rows) continue;
      take(text_.view());
      text_.cut(0);
    }
  }

 private:
  static constexpr std::size_t kPiece = 8 << 10;

  // Nothing for a row whose cells are all blank.
  void append(std::int32_t row) {
    const std::size_t before = text_.size();
    // Separators and the line break always have their room.
    const std::size_t around = width() + 1;
    char16_t* end = text_.room(around);
    bool hasData = false;
    for (const Cell place : cells_.all().subspan(cells_.position(1, row), width())) {
      const TextView cell = cells_.view(place);
      if (!cell.empty()) {
        end = text_.room(end, 2 * cell.size() + 2 + around);
        const bool blank = isBlank(cell);
        hasData |= !blank;
        if (blank || isPlain(cell)) {
          copyCell(end, cell);
          end += cell.size();
        } else {
          end = writeQuoted(end, cell);
        }
      }
      *end++ = kSeparator;
    }
    if (!hasData) return text_.cut(before);
    // In the place of the last separator.
    *(end - 1) = u'\r';
    *end++ = u'\n';
    text_.close(end);
  }

  // Whether the cell goes out as it is; a quote in it makes it neither number nor date.
  bool isPlain(TextView cell) const {
    return isNumberText(cell, locale_) || isDateText(cell, locale_);
  }

  std::size_t width() const noexcept { return static_cast<std::size_t>(columns_); }

  const TextArray& table_;
  TextArrayCells cells_;
  std::int32_t columns_;
  const Locale& locale_ = userLocale();
  GrowingText text_;
};

// Room for a table whose cells are all quoted and hold no quote.
void prepare(Text& out, const TextArray& table) {
  constexpr std::size_t kAroundCell = 3;
  out.reserve(table.characters() + kAroundCell * table.size());
  platform::preferHugePages(out.data(), out.capacity() * sizeof(char16_t));
}

constexpr TextView kTextLocation = u"getCsvStringFromArray";

bool isWhole(std::int64_t rowsThere, std::int32_t rows, std::int32_t columns) {
  return columns <= 0 || rowsThere >= rows;
}

}  // namespace

ErrInfo FileUtility::getCsvStringFromArray(Text& sStringFile, TextArray& sArrayValue,
                                           std::int32_t lNumRows, std::int32_t lNumColumns,
                                           TextView /*sDelim*/) {
  return trapped(kTextLocation, kFileUtility, [&] {
    sStringFile.clear();
    TableText text(sArrayValue, lNumColumns);
    const std::int64_t rows = text.rowsThere(lNumRows);
    if (rows > 0) prepare(sStringFile, sArrayValue);
    text.write(rows, [&](TextView piece) { sStringFile.append(piece); });
    if (!isWhole(rows, lNumRows, lNumColumns)) throw RuntimeError(RunTime::subscriptOutOfRange);
    return clearedResult();
  });
}

ErrInfo FileUtility::writeCsvFileFromArray(TextView sFileName, TextArray& sArrayValue,
                                           std::int32_t lNumRows, std::int32_t lNumColumns) {
  return trapped(u"writeCsvFileFromArray", kFileUtility, [&] {
    TableText text(sArrayValue, lNumColumns);
    const std::int64_t rows = text.rowsThere(lNumRows);
    if (!isWhole(rows, lNumRows, lNumColumns)) {
      // As the text's own member says it, and no file is touched.
      return failureOf(RuntimeError(RunTime::subscriptOutOfRange), kTextLocation, kFileUtility);
    }
    return replaceFile(sFileName, kArchive, [&](TextFile& file) {
      text.write(rows, [&](TextView piece) { file.write(piece); });
    });
  });
}

}  // namespace veltgeneral
