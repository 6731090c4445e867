#include <gtest/gtest.h>

#include <random>

#include "automation/locale.h"
#include "support/results.h"
#include "support/temporary_folder.h"
#include "veltgeneral/file_utility.h"
#include "veltgeneral/funzioni.h"

namespace veltgeneral {
namespace {

using test::cleared;
using test::failure;
using test::fields;
constexpr std::int32_t kAborted = -2147220904;

TextArray tableOf(std::initializer_list<std::initializer_list<TextView>> rows) {
  TextArray table({1, static_cast<std::int32_t>(rows.begin()->size())},
                  {1, static_cast<std::int32_t>(rows.size())});
  std::int32_t r = 0;
  for (const auto& row : rows) {
    ++r;
    std::int32_t c = 0;
    for (const TextView cell : row) table.set(++c, r, cell);
  }
  return table;
}

TEST(DelimitedText, CellsAreQuotedUnlessNumbersDatesOrBlank) {
  const ScopedLocale italian("it_IT");
  struct Case {
    TextView cell;
    TextView written;
  };
  const Case cases[] = {
      {u"a", u"\"a\""},
      {u"1", u"1"},
      {u" 1,5 ", u" 1,5 "},
      {u"-1.234,5", u"-1.234,5"},
      {u"31/12/2020", u"31/12/2020"},
      {u"10:30", u"10:30"},
      {u"x\"y", u"\"x\"\"y\""},
      {u"\"", u"\"\"\"\""},
      {u"a;b", u"\"a;b\""},
      {u"1\"", u"\"1\"\"\""},
      {u"\t", u"\"\t\""},
      {u"2 gennaio 2020", u"2 gennaio 2020"},
  };
  for (const Case& c : cases) {
    TextArray table = tableOf({{c.cell}});
    Text text;
    EXPECT_EQ(fields(FileUtility().getCsvStringFromArray(text, table, 1, 1, u",")), cleared());
    EXPECT_EQ(toUtf8(text), toUtf8(Text(c.written) + u"\r\n"));
  }
}

TEST(DelimitedText, RowsOfBlanksAreLeftOut) {
  TextArray table =
      tableOf({{u"a", u"1", u"", u"x\"y"}, {u"", u"  ", u"", u""}, {u" ", u"b", u"", u""}});
  Text text = u"before";
  EXPECT_EQ(fields(FileUtility().getCsvStringFromArray(text, table, 3, 4, u",")), cleared());
  EXPECT_EQ(toUtf8(text), "\"a\";1;;\"x\"\"y\"\r\n ;\"b\";;\r\n");
  for (const auto& [rows, columns] : {std::pair(0, 4), std::pair(3, 0), std::pair(-1, -1)}) {
    text = u"before";
    EXPECT_TRUE(FileUtility().getCsvStringFromArray(text, table, rows, columns, u"").isSuccess());
    EXPECT_EQ(text, u"");
  }
  // Beyond the table: the rows before the failing one stay.
  EXPECT_EQ(fields(FileUtility().getCsvStringFromArray(text, table, 4, 4, u";")),
            failure(9, "Subscript out of range", "getCsvStringFromArray", "FileUtility"));
  EXPECT_EQ(toUtf8(text), "\"a\";1;;\"x\"\"y\"\r\n ;\"b\";;\r\n");
  TextArray list = TextArray::of({u"a"});
  EXPECT_EQ(FileUtility().getCsvStringFromArray(text, list, 1, 1, u";").numberInfo(), 9);
}

TEST(DelimitedText, FilesEndWithOneMoreLineBreak) {
  test::TemporaryFolder folder;
  TextArray table = tableOf({{u"1", u"è"}});
  EXPECT_EQ(fields(FileUtility().writeCsvFileFromArray(folder.text("t"), table, 1, 2)),
            std::tuple(0, "Operazione eseguita correttamente", 3, "writeFile", "FileUtility",
                       "VELTGENERAL", ""));
  EXPECT_EQ(folder.get("t"), "1;\"\xE8\"\r\n\r\n");
  FileUtility().writeCsvFileFromArray(folder.text("t"), table, 0, 2);
  EXPECT_EQ(folder.get("t"), "\r\n");
  EXPECT_EQ(fields(FileUtility().writeCsvFileFromArray(folder.text("no/t"), table, 1, 2)),
            failure(76, "Path not found", "writeFile", "FileUtility"));
  EXPECT_EQ(FileUtility().writeCsvFileFromArray(folder.text("t"), table, 2, 2).locationInfo(),
            u"getCsvStringFromArray");
}

TEST(CsvLine, SplitsAtSeparatorsOutsideQuotes) {
  struct Case {
    TextView line;
    std::vector<TextView> fields;
  };
  const Case cases[] = {
      {u"", {u""}},
      {u"a;b;", {u"a", u"b", u""}},
      {u"\"a;b\";c", {u"a;b", u"c"}},
      {u" \"a\" ;b", {u" \"a\" ", u"b"}},
      {u"\"\"", {u""}},
      {u"\"\"\"\"", {u"\""}},
      {u"a\"\"b;x\"y;z\"", {u"a\"b", u"x\"y;z\""}},
      {u"\"a;b;c", {u"\"a;b;c"}},
      {u"\"\"\"x\"\"\"", {u"\"x\""}},
      {u"\"a\"b\"", {u"a\"b"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(toUtf8(c.line));
    TextArray list({0, 5});
    list.set(0, u"zero");
    std::int32_t found = -1;
    EXPECT_EQ(fields(Funzioni().getValueFromCsvString(c.line, list, found)), cleared());
    ASSERT_EQ(found, static_cast<std::int32_t>(c.fields.size()));
    for (std::int32_t i = 0; i < found; ++i) {
      EXPECT_EQ(list.at(i + 1), c.fields[static_cast<std::size_t>(i)]);
    }
    EXPECT_EQ(list.at(0), u"zero");
  }
}

TEST(CsvLine, Refusals) {
  const auto tooMany =
      failure(kAborted, "Array di input sottodimensionato", "getValueFromCsvString", "Funzioni");
  const auto subscript = failure(9, "Subscript out of range", "getValueFromCsvString", "Funzioni");
  const auto overflow = failure(6, "Overflow", "getValueFromCsvString", "Funzioni");
  const auto invalid =
      failure(5, "Invalid procedure call or argument", "getValueFromCsvString", "Funzioni");
  struct Case {
    TextArray array;
    Text line;
    decltype(fields(ErrInfo())) result;
    std::int32_t found;
    Text first;  // of the array afterwards, where it has an element 1
  };
  const TextArray two = TextArray::of({u"one", u"two"});
  const Case cases[] = {
      {two, u"a;b;c", tooMany, 0, u"one"},
      {TextArray({-3, 0}), u"a", tooMany, 0, u""},
      {TextArray({-3, -1}), u"a", subscript, -1, u""},
      {TextArray(), u"a", subscript, -1, u""},
      {TextArray({2, 4}), u"a", subscript, 0, u""},
      {TextArray({1, 2}, {1, 2}), u"a", subscript, 0, u""},
      {TextArray({1, 32768}), u"a", overflow, -1, u""},
      {two, Text(32768, u'x'), overflow, 0, u"one"},
      {two, u"new;\"", invalid, 1, u"new"},
  };
  for (const Case& c : cases) {
    TextArray array = c.array;
    std::int32_t found = -1;
    EXPECT_EQ(fields(Funzioni().getValueFromCsvString(c.line, array, found)), c.result);
    EXPECT_EQ(found, c.found) << toUtf8(c.line.substr(0, 20));
    if (!c.first.empty()) {
      EXPECT_EQ(array.at(1), c.first);
    }
  }
  TextArray wide({1, 32767});
  std::int32_t found = 0;
  EXPECT_TRUE(Funzioni().getValueFromCsvString(Text(32766, u';'), wide, found).isSuccess());
  EXPECT_EQ(found, 32767);
}

TEST(Lines, EndWithCrOrCrLf) {
  struct Case {
    std::string_view bytes;
    std::vector<TextView> lines;
  };
  const Case cases[] = {
      {"a\r\nb", {u"a", u"b"}}, {"a\r\n", {u"a"}},       {"a\rb\r", {u"a", u"b"}},
      {"\r\n\r\n", {u"", u""}}, {"a\nb\r\n", {u"a\nb"}}, {"\r\r\n\n", {u"", u"", u"\n"}},
      {"\n", {u"\n"}},
  };
  test::TemporaryFolder folder;
  for (const Case& c : cases) {
    folder.put("lines", c.bytes);
    TextArray list;
    std::int32_t count = -1;
    EXPECT_EQ(fields(FileUtility().readAndLoadInArrayByCRLF(folder.text("lines"), list, count)),
              cleared());
    TextArray expected({1, static_cast<std::int32_t>(c.lines.size())});
    for (std::size_t i = 0; i < c.lines.size(); ++i) {
      expected.set(static_cast<std::int32_t>(i + 1), c.lines[i]);
    }
    EXPECT_EQ(list, expected) << c.bytes;
    EXPECT_EQ(count, static_cast<std::int32_t>(c.lines.size()));
  }
  TextArray list;
  std::int32_t count = 7;
  folder.put("lines", "");
  EXPECT_TRUE(
      FileUtility().readAndLoadInArrayByCRLF(folder.text("lines"), list, count).isSuccess());
  EXPECT_EQ(count, 0);
  EXPECT_EQ(list, TextArray::of({u""}));
  count = 7;
  EXPECT_EQ(fields(FileUtility().readAndLoadInArrayByCRLF(folder.text("none"), list, count)),
            failure(53, "File not found", "readAndLoadInArrayByCRLF", "Utilita"));
  EXPECT_EQ(count, 7);
  EXPECT_EQ(list, TextArray::of({u""}));
}

TEST(Lines, LongerThanAnyBuffer) {
  test::TemporaryFolder folder;
  const std::string great(17 << 20, 'g');
  folder.put("lines", "a\r\n" + great + "\r\nb\r" + std::string(300000, 'c') + "\r\n");
  TextArray list;
  std::int32_t count = 0;
  FileUtility().readAndLoadInArrayByCRLF(folder.text("lines"), list, count);
  ASSERT_EQ(count, 4);
  EXPECT_EQ(list.at(1), u"a");
  EXPECT_TRUE(list.at(2) == Text(17 << 20, u'g'));
  EXPECT_EQ(list.at(3), u"b");
  EXPECT_TRUE(list.at(4) == Text(300000, u'c'));
}

TEST(DelimitedFile, KeepsThePlaceOfLines) {
  test::TemporaryFolder folder;
  FileUtility files;
  TextArray table;
  std::int32_t lines = -1;
  folder.put("t", "a;b\r\n\r\nc");
  EXPECT_EQ(fields(files.getArrayFromCsvFile(folder.text("t"), table, 2, lines)), cleared());
  EXPECT_EQ(table, tableOf({{u"a", u"b"}, {u"", u""}, {u"c", u""}}));
  EXPECT_EQ(lines, 2);

  const auto tooMany =
      failure(kAborted, "Array di input sottodimensionato", "getValueFromCsvString", "Funzioni");
  struct Case {
    std::string bytes;
    decltype(fields(ErrInfo())) result;
    TextArray table;
    std::int32_t lines;
  };
  const Case cases[] = {
      // An error is kept only when no line follows.
      {"a;b;c\r\nd\r\n   \r\n", cleared(), tableOf({{u"", u""}, {u"d", u""}, {u"", u""}}), 2},
      {"d\r\na;b;c\r\n  ", tooMany, tableOf({{u"d", u""}, {u"", u""}, {u"", u""}}), 2},
      {"a;\"\r\n", cleared(), tableOf({{u"a", u"\""}}), 1},
      {"\";\"\r\n\"a\"\"\";\"b;\"\r\n", cleared(), tableOf({{u";", u""}, {u"a\"", u"b;"}}), 2},
      {"a;x\"\"\"y\r\n" + std::string(32768, 'l'),
       failure(6, "Overflow", "getValueFromCsvString", "Funzioni"),
       tableOf({{u"a", u"x\"\"y"}, {u"", u""}}), 2},
  };
  for (const Case& c : cases) {
    folder.put("t", c.bytes);
    const auto result = fields(files.getArrayFromCsvFile(folder.text("t"), table, 2, lines));
    if (c.bytes == "a;\"\r\n") {
      EXPECT_EQ(std::get<0>(result), 5);  // a field that is one quote
      EXPECT_EQ(table, tableOf({{u"", u""}}));
      continue;
    }
    EXPECT_EQ(result, c.result) << c.bytes.substr(0, 40);
    EXPECT_EQ(table, c.table) << c.bytes.substr(0, 40);
    EXPECT_EQ(lines, c.lines);
  }
}

TEST(DelimitedFile, WithoutLinesIsError9AndLeavesTheTable) {
  test::TemporaryFolder folder;
  folder.put("empty", "");
  const TextArray mine = TextArray::of({u"mine"});
  struct Case {
    Text path;
    std::int32_t width;
    std::int32_t lines;
  };
  for (const Case& c : {Case{folder.text("empty"), 2, 0}, Case{folder.text("none"), 2, 0},
                        Case{folder.text("empty"), 0, 7}}) {
    TextArray table = mine;
    std::int32_t lines = 7;
    EXPECT_EQ(fields(FileUtility().getArrayFromCsvFile(c.path, table, c.width, lines)),
              failure(9, "Subscript out of range", "getArrayFromCsvFile", "FileUtility"));
    EXPECT_EQ(table, mine);
    EXPECT_EQ(lines, c.lines);
  }
}

// The members for one line and for whole files are built on other code; here a file is cut with the
// former and must be what the latter says.
TEST(DelimitedFile, AgreesWithTheLineMembersOnRandomFiles) {
  test::TemporaryFolder folder;
  FileUtility files;
  std::mt19937 random(11);
  constexpr std::string_view kPieces[] = {"a",    ";",    "\"",   "\r",  "\n",
                                          "\r\n", " ",    ";;",   "1,5", "long word and more",
                                          "\xE8", "\"\"", "\";\""};
  for (int round = 0; round < 1500; ++round) {
    std::string bytes;
    const std::size_t pieces = random() % (round % 100 == 0 ? 60000 : 60);
    for (std::size_t i = 0; i < pieces; ++i) bytes += kPieces[random() % std::size(kPieces)];
    if (bytes.empty()) continue;
    folder.put("f", bytes);
    TextArray list;
    std::int32_t count = 0;
    files.readAndLoadInArrayByCRLF(folder.text("f"), list, count);
    const auto width = static_cast<std::int32_t>(1 + random() % 5);
    TextArray expected({1, width}, {1, count});
    ErrInfo last;
    last.clear();
    std::int32_t filled = 0;
    for (std::int32_t row = 1; row <= count; ++row) {
      if (list.at(row).find_first_not_of(u' ') == TextView::npos) continue;
      ++filled;
      TextArray cells({1, width});
      std::int32_t found = 0;
      last = Funzioni().getValueFromCsvString(list.at(row), cells, found);
      for (std::int32_t f = 1; last.isSuccess() && f <= found; ++f)
        expected.set(f, row, cells.at(f));
    }
    TextArray table;
    std::int32_t lines = 0;
    const ErrInfo result = files.getArrayFromCsvFile(folder.text("f"), table, width, lines);
    ASSERT_EQ(fields(result), fields(last));
    ASSERT_EQ(lines, filled);
    ASSERT_TRUE(table == expected) << round;
  }
}

}  // namespace
}  // namespace veltgeneral
