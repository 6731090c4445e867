// What the generator says of commands and files that cannot serve.
#include <tuple>

#include "pdf/generator.h"

namespace veltgeneral::pdf {
namespace {

TEST(Message, NamesTheLineAndWhatWasExpected) {
  constexpr const char* kPlace = "a place in cm from -100 to 100";
  constexpr const char* kColour = "a colour such as red or #C00000";
  constexpr const char* kEscape = R"(\\, \", \{ or \n)";
  constexpr const char* kPicture = "a PNG or JPEG picture";
  constexpr const char* kLineEnd = "the end of the line";
  constexpr const char* kNoPicture = "none.png: No such file or directory";
  // Commands, the line at fault, what was expected there and what was found.
  const std::tuple<std::string, int, const char*, const char*> cases[] = {
      {"tetx 1 2", 1, "a command", R"("tetx")"},
      {"# fine\r\n\r\n  newpages", 3, "a command", R"("newpages")"},
      {"text 1 2", 1, "a quoted text", kLineEnd},
      {R"(text 1 "a")", 1, kPlace, R"("a")"},
      {R"(text 1e1 2 "a")", 1, kPlace, R"("1e1")"},
      {R"(text nan 2 "a")", 1, kPlace, R"("nan")"},
      {R"(text 101 2 "a")", 1, kPlace, R"("101")"},
      {"\nTEXT 5 6 \"a\" RIGHT # no comment", 2, "left, centre or right", R"("#")"},
      {R"(text 1 2 "a)", 1, "a closing \"", kLineEnd},
      {R"(text 1 2 "a"b)", 1, "a blank after the closing \"", "another character"},
      {R"(text 1 2 "C:\dir")", 1, kEscape, "a backslash before something else"},
      {R"(text 1 2 "a\)", 1, kEscape, "a backslash before something else"},
      {"line 1 1 2 2 dashed", 1, "thick or a colour", R"("dashed")"},
      {"line 1 1 2 2 thick", 1, "a thickness in points from 0.05 to 100", kLineEnd},
      {"box 1 1 1 1 round", 1, "fill, thick, noline or a colour", R"("round")"},
      {"box 1 1 1 1 fill #12345", 1, kColour, R"("#12345")"},
      {"box 1 1 1 1 fill #12345G", 1, kColour, R"("#12345G")"},
      {R"(paragraph "a" up)", 1, "left, centre, right, justify, from or to", R"("up")"},
      {R"(paragraph "a" from 5 to 5.4)", 1, "a paragraph at least 0.5 cm wide", "a narrower one"},
      {R"(title "a" "b")", 1, kLineEnd, R"("b")"},
      {"page a4", 1, "portrait or landscape", R"("a4")"},
      {"margins 1 2 3", 1, "a margin in cm from 0 to 10", kLineEnd},
      {R"(font "" 10)", 1, "a font name", "an empty text"},
      {R"(font "Arial" 10 heavy)", 1, "bold, italic or a colour", R"("heavy")"},
      {"table 2 center wide", 1, "a column width, grid, rules, plain, thick, from or a colour",
       R"("wide")"},
      {"table 18", 1, "columns that end before the right margin", "wider ones"},
      {"table 2\nrow \"a\" italic", 2, "a quoted cell, bold or fill", R"("italic")"},
      {"table 2 2\nrow \"a\"", 2, "2 cells", "1"},
      {"table 2\nrow \"a\"\nhead \"b\"", 3, "head rows first", "one after rows"},
      {"table 2\ntext 1 1 \"a\"", 2, "head, row, font or end", "text"},
      {"table 2\nhead \"" + std::string(500, 'W') + "\"\nrow \"b\"\nend", 3,
       "room for a line of the row below the head", "none"},
      {R"(row "a")", 1, "table before its rows", "row"},
      {"header\nparagraph \"a\"", 2, "font, text, line, box, image or end", "paragraph"},
      {"end", 1, "a command", "end without header, footer or table"},
      {"space 1\nfooter\ntext 1 1 \"a\"\n", 2, "end before the end of the file", "none"},
      {R"(image "none.png" 1 1 2)", 1, kPicture, kNoPicture},
      {R"(image "a.txt" 1 1 2)", 1, kPicture, "a.txt: neither a PNG nor a JPEG picture"},
      // A block's fault is told where it is written, not where it is drawn.
      {"header\nimage \"none.png\" 1 1 2\nend\nspace 1", 2, kPicture, kNoPicture},
      // Messages are in the code page; what was found is cut short.
      {"p\xE8rch\xE9", 1, "a command", "\"p\xE8rch\xE9\""},
      {"abcdefghijklmnopqrstuvwxyz", 1, "a command", R"("abcdefghijklmnopqrstuvwx...")"},
  };
  const Generator generator;
  for (const auto& [commands, line, expected, found] : cases) {
    SCOPED_TRACE(commands);
    const Result result = generator.run(commands);
    EXPECT_EQ(result.number, 1);
    EXPECT_EQ(result.message,
              "line " + std::to_string(line) + ": expected " + expected + ", found " + found);
    EXPECT_EQ(generator.folder.fileCount(), 1u) << "something was left behind";
  }
}

TEST(Message, FilesThatCannotServe) {
  const Generator generator;
  generator.folder.put("good", "text 1 1 \"a\"");
  const std::string x(200, 'x');
  // The command file, the document, the code page, and what is answered.
  const std::tuple<const char*, const char*, const char*, int, std::string> cases[] = {
      {"none", "a.pdf", "", 2, "the command file cannot be read: No such file or directory: none"},
      {"", "a.pdf", "", 2, "the command file cannot be read: Not a regular file:"},
      // Cut at 150 characters; the reason comes first.
      {x.c_str(), "a.pdf", "", 2,
       ("the command file cannot be read: No such file or directory: " + x).substr(0, 150)},
      {"good", "none/a.pdf", "", 3,
       "the PDF file cannot be written: No such file or directory: a.pdf"},
      {"good", "/dev/full", "", 3, "the PDF file cannot be written: Not a regular file: full"},
      {"good", "a.pdf", "NONE", 4, "the code page NONE is not known here"},
      {"good", "a.pdf", "UTF-8", 4, "the code page UTF-8 has characters of more than one byte"},
      {"good", "a.pdf", "EBCDIC-US", 4, "the code page EBCDIC-US does not extend ASCII"},
  };
  for (const auto& [commands, pdf, codePage, number, message] : cases) {
    ::setenv("VELTGENERAL_CODEPAGE", codePage, 1);
    const Result result = Generator::runFiles((generator.folder / commands).c_str(),
                                              (generator.folder / pdf).c_str());
    EXPECT_EQ(result.number, number) << message;
    EXPECT_EQ(result.message, message);
    EXPECT_EQ(generator.folder.fileCount(), 1u) << message;
  }
  ::unsetenv("VELTGENERAL_CODEPAGE");
  EXPECT_EQ(Generator::runFiles(nullptr, "a.pdf").message, "a file name is missing");
  EXPECT_EQ(Generator::runFiles("a.txt", nullptr).message, "a file name is missing");
  EXPECT_EQ(Generator::entry()("a.txt", "a.pdf", nullptr), 4);
}

}  // namespace
}  // namespace veltgeneral::pdf
