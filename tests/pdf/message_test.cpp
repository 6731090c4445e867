// What the generator says of a command that it does not understand.
#include "pdf/generator.h"

namespace veltgeneral::pdf {
namespace {

struct Case {
  std::string_view commands;
  std::string_view message;
};

constexpr Case kBad[] = {
    {"tetx 1 2 \"a\"", R"(line 1: expected a command, found "tetx")"},
    {"# fine\r\n\r\n  newpages", R"(line 3: expected a command, found "newpages")"},
    {"text 1 2", "line 1: expected a quoted text, found the end of the line"},
    {"text 1 \"a\"", R"(line 1: expected a place in cm from -100 to 100, found "a")"},
    {"text 1,5 2 \"a\"", R"(line 1: expected a place in cm from -100 to 100, found "1,5")"},
    {"text 1e1 2 \"a\"", R"(line 1: expected a place in cm from -100 to 100, found "1e1")"},
    {"text nan 2 \"a\"", R"(line 1: expected a place in cm from -100 to 100, found "nan")"},
    {"text 101 2 \"a\"", R"(line 1: expected a place in cm from -100 to 100, found "101")"},
    {"\nTEXT 5 6 \"right\" RIGHT # no comment",
     R"(line 2: expected left, centre or right, found "#")"},
    {"text 1 2 \"a\" middle", R"(line 1: expected left, centre or right, found "middle")"},
    {"text 1 2 \"a", R"(line 1: expected a closing ", found the end of the line)"},
    {"text 1 2 \"a\"b", R"(line 1: expected a blank after the closing ", found another character)"},
    {"text 1 2 \"C:\\dir\"",
     R"(line 1: expected \\, \", \{ or \n, found a backslash before something else)"},
    {"text 1 2 \"a\\",
     R"(line 1: expected \\, \", \{ or \n, found a backslash before something else)"},
    {"line 1 1 2 2 dashed", R"(line 1: expected thick or a colour, found "dashed")"},
    {"box 1 1 1 1 round", R"(line 1: expected fill, thick, noline or a colour, found "round")"},
    {"paragraph \"a\" upto 5",
     R"(line 1: expected left, centre, right, justify, from or to, found "upto")"},
    {"table 2 center wide",
     "line 1: expected a column width, grid, rules, plain, thick, from or a colour, found "
     "\"wide\""},
    {"table 2\nrow \"a\" italic",
     R"(line 2: expected a quoted cell, bold or fill, found "italic")"},
    {"title \"a\" \"b\"", R"(line 1: expected the end of the line, found "b")"},
    {"page a4", R"(line 1: expected portrait or landscape, found "a4")"},
    {"margins 1 2 3", "line 1: expected a margin in cm from 0 to 10, found the end of the line"},
    {"font \"Arial\" big", R"(line 1: expected a font size in points from 1 to 500, found "big")"},
    {"font \"\" 10", "line 1: expected a font name, found an empty text"},
    {"font \"Arial\" 10 heavy", R"(line 1: expected bold, italic or a colour, found "heavy")"},
    {"box 1 1 0 1", R"(line 1: expected a width in cm from 0.01 to 100, found "0")"},
    {"box 1 1 1 1 fill #12345",
     R"(line 1: expected a colour such as red or #C00000, found "#12345")"},
    {"box 1 1 1 1 fill #12345G",
     R"(line 1: expected a colour such as red or #C00000, found "#12345G")"},
    {"line 1 1 2 2 thick",
     "line 1: expected a thickness in points from 0.05 to 100, found the end of the line"},
    {"paragraph \"a\" from 5 to 5.4",
     "line 1: expected a paragraph at least 0.5 cm wide, found a narrower one"},
    {"row \"a\"", "line 1: expected table before its rows, found row"},
    {"table 18", "line 1: expected columns that end before the right margin, found wider ones"},
    {"table 2 2\nrow \"a\"", "line 2: expected 2 cells, found 1"},
    {"table 2\nrow \"a\"\nhead \"b\"", "line 3: expected head rows first, found one after rows"},
    {"table 2\ntext 1 1 \"a\"", "line 2: expected head, row, font or end, found text"},
    {"header\nparagraph \"a\"",
     "line 2: expected font, text, line, box, image or end, found paragraph"},
    {"end", "line 1: expected a command, found end without header, footer or table"},
    {"space 1\nfooter\ntext 1 1 \"a\"\n",
     "line 2: expected end before the end of the file, found none"},
    {"image \"none.png\" 1 1 2",
     "line 1: expected a PNG or JPEG picture, found none.png: No such file or directory"},
    {"image \"a.txt\" 1 1 2",
     "line 1: expected a PNG or JPEG picture, found a.txt: neither a PNG nor a JPEG picture"},
    // A block's fault is told where it is written, not where it is drawn.
    {"header\nimage \"none.png\" 1 1 2\nend\nspace 1",
     "line 2: expected a PNG or JPEG picture, found none.png: No such file or directory"},
    // Messages are in the code page; what was found is cut short.
    {"p\xE8rch\xE9", "line 1: expected a command, found \"p\xE8rch\xE9\""},
    {"abcdefghijklmnopqrstuvwxyz",
     R"(line 1: expected a command, found "abcdefghijklmnopqrstuvwx...")"},
};

TEST(Message, NamesTheLineAndWhatWasExpected) {
  const Generator generator;
  std::string lines;
  for (int i = 0; i < 61; ++i) lines += "\\n";
  EXPECT_EQ(generator.run("table 2\nhead \"" + lines + "\"\nrow \"b\"\nend").message,
            "line 3: expected room for a line of the row below the head, found none");
  for (const Case& c : kBad) {
    SCOPED_TRACE(c.commands);
    const Result result = generator.run(c.commands);
    EXPECT_EQ(result.number, 1);
    EXPECT_EQ(result.message, c.message);
    EXPECT_EQ(generator.folder.fileCount(), 1u) << "something was left behind";
  }
}

TEST(Message, FilesThatCannotServe) {
  const Generator generator;
  const std::string good = generator.folder.put("good.txt", "text 1 1 \"a\"");
  const std::string longName(200, 'x');
  struct FileCase {
    std::string commandFile, pdfFile;
    int number;
    std::string message;
  };
  const FileCase cases[] = {
      {generator.folder / "none", generator.folder / "a.pdf", 2,
       "the command file cannot be read: No such file or directory: none"},
      {generator.folder / "", generator.folder / "a.pdf", 2,
       "the command file cannot be read: Not a regular file: "},
      {good, generator.folder / "none/a.pdf", 3,
       "the PDF file cannot be written: No such file or directory: a.pdf"},
      {good, "/dev/full", 3, "the PDF file cannot be written: Not a regular file: full"},
      // Cut at 150 characters; the reason comes first.
      {generator.folder / longName, generator.folder / "a.pdf", 2,
       ("the command file cannot be read: No such file or directory: " + longName).substr(0, 150)},
  };
  for (const FileCase& c : cases) {
    const Result result = Generator::runFiles(c.commandFile, c.pdfFile);
    EXPECT_EQ(result.number, c.number);
    EXPECT_EQ(result.message + " ", c.message.substr(0, c.message.find_last_not_of(' ') + 1) + " ");
    EXPECT_EQ(generator.folder.fileCount(), 1u);
  }
}

TEST(Message, ANameIsMissing) {
  std::string message(150, '#');
  for (const auto& [commands, pdf] :
       {std::pair<const char*, const char*>{"a.txt", nullptr}, {nullptr, "a.pdf"}}) {
    EXPECT_EQ(Generator::entry()(commands, pdf, message.data()), 4);
    EXPECT_TRUE(message.starts_with("a file name is missing  "));
  }
  EXPECT_EQ(Generator::entry()("a.txt", "a.pdf", nullptr), 4);
}

TEST(Message, OnlyASingleByteCodePageServes) {
  const Generator generator;
  struct PageCase {
    const char* name;
    std::string message;
  };
  const PageCase cases[] = {
      {"NONE", "the code page NONE is not known here"},
      {"UTF-8", "the code page UTF-8 has characters of more than one byte"},
      {"EBCDIC-US", "the code page EBCDIC-US does not extend ASCII"},
  };
  for (const PageCase& c : cases) {
    ::setenv("VELTGENERAL_CODEPAGE", c.name, 1);
    const Result result = generator.run("text 1 1 \"a\"");
    ::unsetenv("VELTGENERAL_CODEPAGE");
    EXPECT_EQ(result.number, 4);
    EXPECT_EQ(result.message, c.message);
  }
}

}  // namespace
}  // namespace veltgeneral::pdf
