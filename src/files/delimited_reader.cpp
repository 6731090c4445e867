// FileUtility's members that read lines and tables.
//
// A table is read in one pass: each batch of lines is widened once into the array's own memory, and
// the cells are views cut out of it.
#include <algorithm>
#include <limits>
#include <utility>

#include "automation/code_page.h"
#include "automation/coerce.h"
#include "automation/text_array_builder.h"
#include "automation/text_limit.h"
#include "files/csv_line.h"
#include "files/file_result.h"
#include "files/line_reader.h"
#include "platform/paths.h"
#include "veltgeneral/file_utility.h"
#include "veltgeneral/funzioni.h"

namespace veltgeneral {
namespace {

// The published class of failures of the line reader.
constexpr TextView kLineClass = u"Utilita";

platform::FileHandle open(TextView fileName) {
  return platform::FileHandle::openForReading(platform::hostPath(fileName));
}

// Gives each line of a file its place in an array's memory, as text.
class LineLoader {
 public:
  LineLoader(TextView fileName, char one, char two, std::size_t cellsPerRow)
      : reader_(open(fileName), one, two), builder_(cellsPerRow) {}

  // Calls `each(line, text)` for every line of the file; `text` is its characters, which may be
  // changed in place and live as long as the array.
  template <class Each>
  void forEachLine(Each&& each) {
    while (reader_.next()) {
      const auto bytes = reader_.bytes();
      if (builder_.rows() == 0) builder_.reserve(std::min(reader_.size(), kGreatestReserve));
      // A batch this long holds a line too long to share a piece with others.
      const bool apart = bytes.size() > TextArrayBuilder::kGreatestShared;
      char16_t* const batch = apart ? nullptr : widened(bytes);
      reader_.forEachLine([&](const Line& line) {
        const std::size_t length = line.end - line.begin;
        char16_t* const text =
            apart ? widened(bytes.subspan(line.begin, length)) : batch + line.begin;
        each(line, std::span(text, length));
        bytesTaken_ += length;
      });
    }
  }

  // The cells of one more row. Rows to come are likely to be as long as those before.
  std::span<TextArrayBuilder::Cell> addRow() {
    return builder_.addRow([this] {
      const auto rows = static_cast<double>(builder_.rows());
      const auto taken = static_cast<double>(bytesTaken_) + 2 * rows;
      const double expected = 1.1 * rows * static_cast<double>(reader_.size()) / (taken + 1);
      return kFirstRows + static_cast<std::size_t>(expected);
    });
  }

  TextArrayBuilder& builder() noexcept { return builder_; }
  const LineReader& reader() const noexcept { return reader_; }

 private:
  // Offsets within one piece of the array's memory end there.
  static constexpr std::uint64_t kGreatestReserve = std::uint64_t{1} << 28;
  static constexpr std::size_t kFirstRows = 64;

  char16_t* widened(std::span<const std::uint8_t> bytes) {
    char16_t* const text = builder_.claim(bytes.size());
    systemCodePage().widen(bytes, text);
    return text;
  }

  LineReader reader_;
  TextArrayBuilder builder_;
  std::uint64_t bytesTaken_ = 0;
};

// How the split of one line ended: 0 or a run-time or domain number.
using Outcome = std::int32_t;

// Cuts the line into the cells of its row; leaves them empty when the line cannot be cut.
Outcome fillRow(TextArrayBuilder& builder, std::span<const std::uint8_t> bytes, const Line& line,
                std::span<char16_t> text, std::span<TextArrayBuilder::Cell> row) {
  constexpr auto kMostFields = static_cast<std::size_t>(std::numeric_limits<std::int16_t>::max());
  if (row.size() > kMostFields || text.size() > kGreatestCounted) {
    return static_cast<Outcome>(RunTime::overflow);
  }
  if (!line.hasFlag) {
    // No quote: every mark separates, and the pieces between them are the cells.
    if (line.marks.size() >= row.size()) return eiABORTED;
    builder.cut(row, text.data(), line.begin, line.end, line.marks);
    return 0;
  }
  std::size_t field = 0;
  Outcome outcome = 0;
  try {
    const bool fits = splitLine(
        line.begin, line.end, line.marks, row.size(),
        [&](std::size_t at) { return bytes[at] == static_cast<std::uint8_t>(kQuote); },
        [&](std::size_t begin, std::size_t end, bool quoted) {
          std::span<char16_t> cell = text.subspan(begin - line.begin, end - begin);
          if (quoted) cell = unquote(cell);
          row[field++] = builder.cellFor(cell.data(), cell.size());
        });
    if (!fits) outcome = eiABORTED;
  } catch (const RuntimeError& error) {
    outcome = error.number();
  }
  if (outcome != 0) std::ranges::fill(row, TextArrayBuilder::Cell{0});
  return outcome;
}

bool isBlank(std::span<const char16_t> text) {
  if (!text.empty() && text.front() != u' ') return false;
  return trim(TextView(text.data(), text.size())).empty();
}

ErrInfo resultOfSplit(Outcome outcome) {
  constexpr TextView kLocation = u"getValueFromCsvString";
  if (outcome == 0) return clearedResult();
  const TextView description = outcome == eiABORTED ? kTooManyFields : standardMessage(outcome);
  return resultOf(outcome, description, eiERRORTYPE, kLocation, u"Funzioni");
}

// The lines of a file as cells; what was read before a failure stays in `builder`.
void loadLines(LineLoader& loader) {
  loader.forEachLine([&](const Line& /*line*/, std::span<const char16_t> text) {
    loader.addRow()[0] = loader.builder().cellFor(text.data(), text.size());
  });
}

struct Loaded {
  TextArray table;
  std::int32_t linesWithText = 0;
  Outcome lastSplit = 0;
};

Loaded loadTable(TextView fileName, std::size_t width) {
  Loaded loaded;
  try {
    LineLoader loader(fileName, kSeparator, kQuote, width);
    loader.forEachLine([&](const Line& line, std::span<char16_t> text) {
      const auto row = loader.addRow();
      if (isBlank(text)) return;
      ++loaded.linesWithText;
      loaded.lastSplit = fillRow(loader.builder(), loader.reader().bytes(), line, text, row);
    });
    loaded.table = loader.builder().takeTable();
  } catch (const RuntimeError&) {
    // A file that cannot be read has no lines, and a table of no lines has no bounds: that is the
    // error that callers know, whatever kept the lines away.
    throw RuntimeError(RunTime::subscriptOutOfRange);
  }
  return loaded;
}

}  // namespace

ErrInfo FileUtility::readAndLoadInArrayByCRLF(TextView sFileName, TextArray& listRows,
                                              std::int32_t& lNumRows) {
  return trapped(u"readAndLoadInArrayByCRLF", kLineClass, [&] {
    // The name may be a view into the list.
    const Text fileName(sFileName);
    listRows = TextArray(Bounds{1, 1});
    LineLoader loader(fileName, '\r', '\r', 1);
    try {
      loadLines(loader);
    } catch (...) {
      if (loader.builder().rows() > 0) listRows = loader.builder().takeList();
      throw;
    }
    const auto count = static_cast<std::int32_t>(loader.builder().rows());
    if (count > 0) listRows = loader.builder().takeList();
    lNumRows = count;
    return clearedResult();
  });
}

ErrInfo FileUtility::getArrayFromCsvFile(TextView sFileName, TextArray& sArrayValue,
                                         std::int32_t lNumRows, std::int32_t& lNumColumns) {
  return trapped(u"getArrayFromCsvFile", kFileUtility, [&] {
    const Funzioni created;  // whose making every caller sees in the decimal separator
    if (lNumRows < 1) throw RuntimeError(RunTime::subscriptOutOfRange);
    lNumColumns = 0;
    Loaded loaded = loadTable(sFileName, static_cast<std::size_t>(lNumRows));
    sArrayValue = std::move(loaded.table);
    lNumColumns = loaded.linesWithText;
    return resultOfSplit(loaded.lastSplit);
  });
}

}  // namespace veltgeneral
