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
using test::Fields;

Fields splitFails(std::int32_t number) {
  return failure(number, "getValueFromCsvString", "Funzioni");
}
const Fields kTooMany =
    failure(eiABORTED, "Array di input sottodimensionato", "getValueFromCsvString", "Funzioni");

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

std::string written(TextArray table) {
  Text text = u"before";
  EXPECT_EQ(fields(FileUtility().getCsvStringFromArray(text, table, table.bounds(2).upper,
                                                       table.bounds(1).upper, u",")),
            cleared());
  return toUtf8(text);
}

TEST(DelimitedText, CellsAreQuotedUnlessNumbersDatesOrBlank) {
  const ScopedLocale italian("it_IT");
  EXPECT_EQ(written(tableOf({{u"1", u" 1,5 ", u"-1.234,5", u"1 2", u"12345678901234567890"},
                             {u"31/12/2020", u"10:30", u"2 gennaio 2020", u" ", u""},
                             {u"a;b", u"\t", u"12AB", u"1,5x", u"<control>"}})),
            "1; 1,5 ;-1.234,5;1 2;12345678901234567890\r\n31/12/2020;10:30;2 gennaio 2020; ;\r\n"
            "\"a;b\";\"\t\";\"12AB\";\"1,5x\";\"<control>\"\r\n");
  // A quote at every place.
  for (const std::size_t length : {1U, 3U, 4U, 19U}) {
    for (std::size_t at = 0; at < length; ++at) {
      Text cell(length, u'1');
      cell[at] = u'"';
      const std::string doubled = toUtf8(Text(cell).insert(at, 1, u'"'));
      EXPECT_EQ(written(tableOf({{u"7", cell}})), "7;\"" + doubled + "\"\r\n");
    }
  }
}

TEST(DelimitedText, LacksRowsOfBlanksAndEndsWithOneMoreLineBreakInFiles) {
  test::TemporaryFolder folder;
  FileUtility files;
  TextArray table =
      tableOf({{u"a", u"1", u"", u"x\"y"}, {u"", u"  ", u"", u""}, {u" ", u"è", u"", u""}});
  const Text whole = u"\"a\";1;;\"x\"\"y\"\r\n ;\"è\";;\r\n";
  struct Case {
    std::int32_t rows, columns;
    Text text;
    bool beyond = false;  // the table; the rows before the failing one stay, and so does a file
  };
  for (const Case& c : {Case{3, 4, whole}, Case{0, 4, u""}, Case{3, 0, u""}, Case{-1, -1, u""},
                        Case{4, 4, whole, true}, Case{1, 5, u"", true}}) {
    const Fields beyond = failure(9, "getCsvStringFromArray", "FileUtility");
    const Text path = fromUtf8(folder.put("t", "before"));
    Text text = u"before", read;
    EXPECT_EQ(fields(files.getCsvStringFromArray(text, table, c.rows, c.columns, u"")),
              c.beyond ? beyond : cleared());
    EXPECT_EQ(text, c.text);
    EXPECT_EQ(fields(files.writeCsvFileFromArray(path, table, c.rows, c.columns)),
              c.beyond ? beyond : test::done("writeFile", "FileUtility"));
    files.readFile(path, read);
    EXPECT_EQ(read, c.beyond ? Text(u"before") : text.append(u"\r\n"));
  }
  EXPECT_EQ(fields(files.writeCsvFileFromArray(folder.text("no/t"), table, 1, 1)),
            failure(76, "writeFile", "FileUtility"));
}

TEST(CsvLine, IsSplitAtSeparatorsOutsideQuotesOrRefused) {
  struct Case {
    TextArray array;
    Text line;
    Fields result;
    std::int32_t found;
    std::vector<Text> cells = {};  // that the array's elements from 1 on have afterwards
  };
  const Fields ok = cleared();
  const TextArray room({0, 5});
  const TextArray two = TextArray::of({u"one", u"two"});
  const Case cases[] = {{room, u"", ok, 1, {u""}},
                        {two, u"a;", ok, 2, {u"a", u""}},
                        {room, u"\"a;b\";c", ok, 2, {u"a;b", u"c"}},
                        {room, u" \"a\" ;b", ok, 2, {u" \"a\" ", u"b"}},
                        {two, u"\"\"", ok, 1, {u"", u"two"}},
                        {room, u"\"\"\"\"", ok, 1, {u"\""}},
                        {room, u"a\"\"b;x\"y;z\"", ok, 2, {u"a\"b", u"x\"y;z\""}},
                        {room, u"\"a;b;c", ok, 1, {u"\"a;b;c"}},
                        {room, u"\"\"\"x\"\"\"", ok, 1, {u"\"x\""}},
                        {room, u"\"a\"b\"", ok, 1, {u"a\"b"}},
                        {TextArray({1, 32767}), Text(32766, u';'), ok, 32767},
                        {two, u"a;b;c", kTooMany, 0, {u"one", u"two"}},
                        {TextArray({-3, 0}), u"a", kTooMany, 0},
                        {TextArray({-3, -1}), u"a", splitFails(9), -1},
                        {TextArray(), u"a", splitFails(9), -1},
                        {TextArray({2, 4}), u"a", splitFails(9), 0},
                        {TextArray({1, 2}, {1, 2}), u"a", splitFails(9), 0},
                        {TextArray({1, 32768}), u"a", splitFails(6), -1},
                        {two, Text(32768, u'x'), splitFails(6), 0, {u"one", u"two"}},
                        {two, u"new;\"", splitFails(5), 1, {u"new", u"two"}}};
  for (const Case& c : cases) {
    SCOPED_TRACE(toUtf8(c.line.substr(0, 20)));
    TextArray array = c.array;
    std::int32_t found = -1;
    EXPECT_EQ(fields(Funzioni().getValueFromCsvString(c.line, array, found)), c.result);
    EXPECT_EQ(found, c.found);
    for (std::int32_t i = 1; const Text& cell : c.cells) EXPECT_EQ(array.at(i++), cell);
  }
}

TEST(Lines, EndWithCrOrCrLf) {
  const Text great(17 << 20, u'g');  // longer than any buffer
  const Text middling(300000, u'c');
  struct Case {
    std::string bytes;
    std::vector<Text> lines;
  };
  const Case cases[] = {{"a\r\nb", {u"a", u"b"}},
                        {"a\r\n", {u"a"}},
                        {"a\rb\r", {u"a", u"b"}},
                        {"\r\n\r\n", {u"", u""}},
                        {"a\nb\r\n", {u"a\nb"}},
                        {"\r\r\n\n", {u"", u"", u"\n"}},
                        {"\n", {u"\n"}},
                        {"", {}},
                        {"a\r\n" + toUtf8(great) + "\r\nb\r" + toUtf8(middling) + "\r\n",
                         {u"a", great, u"b", middling}}};
  test::TemporaryFolder folder;
  const TextArray nothing = TextArray::of({u""});
  TextArray list;
  std::int32_t count = -1;
  for (const Case& c : cases) {
    const Text path = fromUtf8(folder.put("lines", c.bytes));
    EXPECT_EQ(fields(FileUtility().readAndLoadInArrayByCRLF(path, list, count)), cleared());
    EXPECT_EQ(count, static_cast<std::int32_t>(c.lines.size()));
    EXPECT_TRUE(list == (count == 0 ? nothing : TextArray::of(c.lines))) << c.bytes.substr(0, 20);
  }
  list = TextArray::of({u"mine", u"too"});
  count = 7;
  EXPECT_EQ(fields(FileUtility().readAndLoadInArrayByCRLF(folder.text("none"), list, count)),
            failure(53, "readAndLoadInArrayByCRLF", "Utilita"));
  EXPECT_EQ(count, 7);
  EXPECT_EQ(list, nothing);
}

TEST(DelimitedFile, KeepsThePlaceOfLines) {
  test::TemporaryFolder folder;
  const TextArray mine = TextArray::of({u"mine"});
  const Fields none = failure(9, "getArrayFromCsvFile", "FileUtility");
  struct Case {
    std::string bytes;
    Fields result;
    TextArray table;
    std::int32_t lines;
    std::int32_t width = 2;
    const char* name = "t";
  };
  const Case cases[] = {
      {"a;b\r\n\r\nc", cleared(), tableOf({{u"a", u"b"}, {u"", u""}, {u"c", u""}}), 2},
      // An error is kept only when no line follows.
      {"a;b;c\r\nd\r\n   \r\n", cleared(), tableOf({{u"", u""}, {u"d", u""}, {u"", u""}}), 2},
      {"d\r\na;b;c\r\n  ", kTooMany, tableOf({{u"d", u""}, {u"", u""}, {u"", u""}}), 2},
      {"a;\"\r\n", splitFails(5), tableOf({{u"", u""}}), 1},
      {"\";\"\r\n\"a\"\"\";\"b;\"", cleared(), tableOf({{u";", u""}, {u"a\"", u"b;"}}), 2},
      {"a\r\n" + std::string(32768, 'l'), splitFails(6), tableOf({{u"a", u""}, {u"", u""}}), 2},
      // Without lines, cells or a file: the caller's table stays.
      {"", none, mine, 0},
      {"a", none, mine, 7, 0},
      {"", none, mine, 0, 2, "no"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.bytes.substr(0, 40));
    folder.put("t", c.bytes);
    TextArray table = mine;
    std::int32_t lines = 7;
    EXPECT_EQ(fields(FileUtility().getArrayFromCsvFile(folder.text(c.name), table, c.width, lines)),
              c.result);
    EXPECT_EQ(table, c.table);
    EXPECT_EQ(lines, c.lines);
  }
}

// The members for one line and for whole files are built on other code; here a file is cut with the
// former and must be what the latter says.
TEST(DelimitedFile, AgreesWithTheLineMembersOnRandomFiles) {
  test::TemporaryFolder folder;
  std::mt19937 random(11);
  constexpr std::string_view kPieces[] = {"a",    ";",    "\"",   "\r",  "\n",
                                          "\r\n", " ",    ";;",   "1,5", "long word and more",
                                          "\xE8", "\"\"", "\";\""};
  for (int round = 0; round < 1500; ++round) {
    std::string bytes = "\r";
    const std::size_t pieces = random() % (round % 100 == 0 ? 60000 : 60);
    for (std::size_t i = 0; i < pieces; ++i) bytes += kPieces[random() % std::size(kPieces)];
    const Text path = fromUtf8(folder.put("f", bytes));
    const auto width = static_cast<std::int32_t>(1 + random() % 5);
    TextArray list, table;
    std::int32_t count = 0, filled = 0, lines = 0, found = 0;
    FileUtility().readAndLoadInArrayByCRLF(path, list, count);
    TextArray expected({1, width}, {1, count});
    Fields last = cleared();
    for (std::int32_t row = 1; row <= count; ++row) {
      if (list.at(row).find_first_not_of(u' ') == TextView::npos) continue;
      ++filled;
      TextArray cells({1, width});
      last = fields(Funzioni().getValueFromCsvString(list.at(row), cells, found));
      for (std::int32_t f = 1; last == cleared() && f <= found; ++f)
        expected.set(f, row, cells.at(f));
    }
    ASSERT_EQ(fields(FileUtility().getArrayFromCsvFile(path, table, width, lines)), last);
    ASSERT_EQ(lines, filled);
    ASSERT_TRUE(table == expected) << round;
  }
}

}  // namespace
}  // namespace veltgeneral
