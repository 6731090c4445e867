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
using Fields = decltype(fields(ErrInfo()));

Fields splitFails(std::int32_t number, const char* message) {
  return failure(number, message, "getValueFromCsvString", "Funzioni");
}
const Fields kTooMany = splitFails(-2147220904, "Array di input sottodimensionato");
const Fields kOverflow = splitFails(6, "Overflow");
const Fields kInvalid = splitFails(5, "Invalid procedure call or argument");

Fields subscript(const char* member, const char* className) {
  return failure(9, "Subscript out of range", member, className);
}

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

Text written(TextArray table) {
  Text text = u"before";
  EXPECT_EQ(fields(FileUtility().getCsvStringFromArray(text, table, table.bounds(2).upper,
                                                       table.bounds(1).upper, u",")),
            cleared());
  return text;
}

TEST(DelimitedText, CellsAreQuotedUnlessNumbersDatesOrBlank) {
  const ScopedLocale italian("it_IT");
  EXPECT_EQ(toUtf8(written(tableOf({{u"1", u" 1,5 ", u"-1.234,5", u"1 2", u"12345678901234567890"},
                                    {u"31/12/2020", u"10:30", u"2 gennaio 2020", u" ", u""}}))),
            "1; 1,5 ;-1.234,5;1 2;12345678901234567890\r\n31/12/2020;10:30;2 gennaio 2020; ;\r\n");
  EXPECT_EQ(toUtf8(written(tableOf({{u"a", u"a;b", u"\t", u"12AB", u"1,5x", u"<control>"}}))),
            "\"a\";\"a;b\";\"\t\";\"12AB\";\"1,5x\";\"<control>\"\r\n");
  // A quote at every place of short cells of every length.
  for (std::size_t length = 1; length < 20; ++length) {
    for (std::size_t at = 0; at < length; ++at) {
      Text cell(length, u'1');
      cell[at] = u'"';
      const Text doubled = Text(cell).insert(at, 1, u'"');
      EXPECT_EQ(toUtf8(written(tableOf({{u"7", cell}}))), "7;\"" + toUtf8(doubled) + "\"\r\n");
    }
  }
}

TEST(DelimitedText, RowsOfBlanksAreLeftOut) {
  TextArray table =
      tableOf({{u"a", u"1", u"", u"x\"y"}, {u"", u"  ", u"", u""}, {u" ", u"b", u"", u""}});
  const Text whole = u"\"a\";1;;\"x\"\"y\"\r\n ;\"b\";;\r\n";
  EXPECT_EQ(written(table), whole);
  FileUtility files;
  Text text;
  for (const auto& [rows, columns] : {std::pair(0, 4), std::pair(3, 0), std::pair(-1, -1)}) {
    text = u"before";
    EXPECT_EQ(fields(files.getCsvStringFromArray(text, table, rows, columns, u"")), cleared());
    EXPECT_EQ(text, u"");
  }
  // Beyond the table: the rows before the failing one stay.
  EXPECT_EQ(fields(files.getCsvStringFromArray(text, table, 4, 4, u";")),
            subscript("getCsvStringFromArray", "FileUtility"));
  EXPECT_EQ(text, whole);
  TextArray list = TextArray::of({u"a"});
  EXPECT_EQ(files.getCsvStringFromArray(text, list, 1, 1, u";").numberInfo(), 9);
}

TEST(DelimitedText, FilesEndWithOneMoreLineBreak) {
  test::TemporaryFolder folder;
  TextArray table = tableOf({{u"1", u"è"}});
  struct Case {
    const char* name;
    std::int32_t rows;
    Fields result;
    const char* bytes;
  };
  const Fields done{
      0, "Operazione eseguita correttamente", 3, "writeFile", "FileUtility", "VELTGENERAL", ""};
  const Case cases[] = {
      {"t", 1, done, "1;\"\xE8\"\r\n\r\n"},
      {"t", 0, done, "\r\n"},
      {"no/t", 1, failure(76, "Path not found", "writeFile", "FileUtility"), ""},
      {"t", 2, subscript("getCsvStringFromArray", "FileUtility"), "\r\n"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(fields(FileUtility().writeCsvFileFromArray(folder.text(c.name), table, c.rows, 2)),
              c.result);
    EXPECT_EQ(folder.get(c.name), c.bytes);
  }
}

TEST(CsvLine, SplitsAtSeparatorsOutsideQuotes) {
  const std::pair<TextView, std::vector<Text>> cases[] = {
      {u"", {u""}},
      {u"a;b;", {u"a", u"b", u""}},
      {u"\"a;b\";c", {u"a;b", u"c"}},
      {u" \"a\" ;b", {u" \"a\" ", u"b"}},
      {u"\"\"", {u""}},
      {u"\"\"\"\"", {u"\""}},
      {u"a\"\"b;x\"y;z\"", {u"a\"b", u"x\"y;z\""}},
      {u"\"a;b;c", {u"\"a;b;c"}},
      {u"\"\"\"x\"\"\"", {u"\"x\""}},
      {u"\"a\"b\"", {u"a\"b"}}};
  for (const auto& [line, cells] : cases) {
    TextArray list({0, 5});
    std::int32_t found = -1;
    EXPECT_EQ(fields(Funzioni().getValueFromCsvString(line, list, found)), cleared());
    EXPECT_EQ(found, static_cast<std::int32_t>(cells.size()));
    TextArray expected({0, 5});
    for (std::int32_t i = 1; const Text& cell : cells) expected.set(i++, cell);
    EXPECT_EQ(list, expected) << toUtf8(line);
  }
}

TEST(CsvLine, Refusals) {
  struct Case {
    TextArray array;
    Text line;
    Fields result;
    std::int32_t found;
    Text first = {};  // of the array afterwards, where it has an element 1
  };
  const TextArray two = TextArray::of({u"one", u"two"});
  const Fields outside = subscript("getValueFromCsvString", "Funzioni");
  const Case cases[] = {{two, u"a;b;c", kTooMany, 0, u"one"},
                        {TextArray({-3, 0}), u"a", kTooMany, 0},
                        {TextArray({-3, -1}), u"a", outside, -1},
                        {TextArray(), u"a", outside, -1},
                        {TextArray({2, 4}), u"a", outside, 0},
                        {TextArray({1, 2}, {1, 2}), u"a", outside, 0},
                        {TextArray({1, 32768}), u"a", kOverflow, -1},
                        {two, Text(32768, u'x'), kOverflow, 0, u"one"},
                        {two, u"new;\"", kInvalid, 1, u"new"},
                        {TextArray({1, 32767}), Text(32766, u';'), cleared(), 32767}};
  for (const Case& c : cases) {
    TextArray array = c.array;
    std::int32_t found = -1;
    EXPECT_EQ(fields(Funzioni().getValueFromCsvString(c.line, array, found)), c.result);
    EXPECT_EQ(found, c.found) << toUtf8(c.line.substr(0, 20));
    EXPECT_TRUE(c.first.empty() || array.at(1) == c.first);
  }
}

TEST(Lines, EndWithCrOrCrLf) {
  const Text great(17 << 20, u'g');  // longer than any buffer
  const Text middling(300000, u'c');
  struct Case {
    std::string bytes;
    std::vector<TextView> lines;
  };
  const Case cases[] = {{"a\r\nb", {u"a", u"b"}},
                        {"a\r\n", {u"a"}},
                        {"a\rb\r", {u"a", u"b"}},
                        {"\r\n\r\n", {u"", u""}},
                        {"a\nb\r\n", {u"a\nb"}},
                        {"\r\r\n\n", {u"", u"", u"\n"}},
                        {"\n", {u"\n"}},
                        {"a\r\n" + toUtf8(great) + "\r\nb\r" + toUtf8(middling) + "\r\n",
                         {u"a", great, u"b", middling}}};
  test::TemporaryFolder folder;
  const auto read = [&](const char* name, TextArray& list, std::int32_t& count) {
    return fields(FileUtility().readAndLoadInArrayByCRLF(folder.text(name), list, count));
  };
  TextArray list;
  std::int32_t count = -1;
  for (const Case& c : cases) {
    folder.put("lines", c.bytes);
    EXPECT_EQ(read("lines", list, count), cleared());
    EXPECT_EQ(count, static_cast<std::int32_t>(c.lines.size()));
    EXPECT_TRUE(list == TextArray::of(std::vector<Text>(c.lines.begin(), c.lines.end())))
        << c.bytes.substr(0, 20);
  }
  folder.put("empty", "");
  EXPECT_EQ(read("empty", list, count), cleared());
  EXPECT_EQ(count, 0);
  EXPECT_EQ(list, TextArray::of({u""}));
  list = TextArray::of({u"mine", u"too"});
  count = 7;
  EXPECT_EQ(read("none", list, count),
            failure(53, "File not found", "readAndLoadInArrayByCRLF", "Utilita"));
  EXPECT_EQ(count, 7);
  EXPECT_EQ(list, TextArray::of({u""}));
}

TEST(DelimitedFile, KeepsThePlaceOfLines) {
  test::TemporaryFolder folder;
  const TextArray mine = TextArray::of({u"mine"});
  const Fields none = subscript("getArrayFromCsvFile", "FileUtility");
  struct Case {
    std::string bytes;
    Fields result;
    TextArray table;
    std::int32_t lines;
    std::int32_t width = 2;
  };
  const Case cases[] = {
      {"a;b\r\n\r\nc", cleared(), tableOf({{u"a", u"b"}, {u"", u""}, {u"c", u""}}), 2},
      // An error is kept only when no line follows.
      {"a;b;c\r\nd\r\n   \r\n", cleared(), tableOf({{u"", u""}, {u"d", u""}, {u"", u""}}), 2},
      {"d\r\na;b;c\r\n  ", kTooMany, tableOf({{u"d", u""}, {u"", u""}, {u"", u""}}), 2},
      {"a;\"\r\n", kInvalid, tableOf({{u"", u""}}), 1},
      {"\";\"\r\n\"a\"\"\";\"b;\"", cleared(), tableOf({{u";", u""}, {u"a\"", u"b;"}}), 2},
      {"a\r\n" + std::string(32768, 'l'), kOverflow, tableOf({{u"a", u""}, {u"", u""}}), 2},
      // Without lines or cells: the caller's table stays.
      {"", none, mine, 0},
      {"a", none, mine, 7, 0}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.bytes.substr(0, 40));
    folder.put("t", c.bytes);
    TextArray table = mine;
    std::int32_t lines = 7;
    EXPECT_EQ(fields(FileUtility().getArrayFromCsvFile(folder.text("t"), table, c.width, lines)),
              c.result);
    EXPECT_EQ(table, c.table);
    EXPECT_EQ(lines, c.lines);
  }
  TextArray table = mine;
  std::int32_t lines = 7;
  EXPECT_EQ(fields(FileUtility().getArrayFromCsvFile(folder.text("no"), table, 2, lines)), none);
  EXPECT_TRUE(table == mine && lines == 0);
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
