// Documents, read back with independent tools, and what they ask of the machine.
#include <sys/resource.h>
#include <sys/wait.h>

#include <thread>
#include <tuple>

#include "pdf/generator.h"
#include "support/dots.h"
#include "support/file_limit.h"
#include "support/process.h"

namespace veltgeneral::pdf {
namespace {

std::string repeated(std::string_view text, int times) {
  std::string out;
  for (int i = 0; i < times; ++i) out += text;
  return out;
}

std::string longTable(int rows) {
  return "footer\ntext 2 28 \"{page} of {pages}\"\nend\ntable 4 6\n" +
         repeated("row \"a\" \"some text\"\n", rows) + "end\n";
}

// The first page of a document that `commands` make.
class Rendered {
 public:
  Rendered(const Generator& generator, std::string_view commands) {
    EXPECT_EQ(generator.run(commands).message, "");
    const std::string dots = generator.folder / "dots";
    test::outputOf("pdftoppm -r 72 -png -singlefile " + generator.document + " " + dots);
    page_.reset(cairo_image_surface_create_from_png((dots + ".png").c_str()));
  }
  // At a place in cm.
  std::uint32_t at(double x, double y) const {
    return test::dotAt(page_.get(), static_cast<int>(x * kCm), static_cast<int>(y * kCm));
  }

 private:
  test::Picture page_;
};

class Document : public testing::Test {
 protected:
  // In how many places each picture stands that the document holds.
  std::string placesOfPictures() const {
    return test::outputOf("pdfimages -list " + generator_.document +
                          " | awk 'NR > 2 { n[$11]++ } END { for (id in n) print n[id] }' | sort");
  }

  const Generator generator_;
};

TEST_F(Document, TextsAndCellsStandWhereTheyArePut) {
  const PdfText text = generator_.make(
      "font \"Courier New\" 10\ntext 5 4 \"left\"\ntext 5 5 \"middle\" centre\n"
      "TEXT 5 6 \"one\\nright\" RIGHT\nmove 7\ntable 3 4 right 5 centre grid from 4\n"
      "row \"a\" \"b\" \"c\"\nrow \"wide cells wrap\" \"d\" \"\"\nrow \"e\" \"\" \"\"\nend\n"
      "paragraph \"after\"\n");
  const double width = 4 * 10 * 1229.0 / 2048 / kCm;
  const double pad = 0.12;
  const std::tuple<const char*, double Word::*, double> cases[] = {
      {"left", &Word::left, 5},
      {"left", &Word::right, 5 + width},
      {"middle", &Word::left, 5 - 0.75 * width},
      {"middle", &Word::right, 5 + 0.75 * width},
      {"right", &Word::right, 5},
      {"a", &Word::left, 4 + pad},
      {"b", &Word::right, 11 - pad},
      {"c", &Word::right, 13.5 + width / 8},
      {"wrap", &Word::left, 4 + pad},
  };
  for (const auto& [word, edge, cm] : cases)
    EXPECT_NEAR(text.word(word).*edge, cm * kCm, 0.1) << word;
  EXPECT_NEAR(text.word("left").top, 4 * kCm, 1);
  EXPECT_NEAR(text.word("d").top, text.word("wide").top, 0.1);
  // Each of these stands below the one before.
  const char* before = "left";
  for (const char* word : {"middle", "one", "right", "a", "wide", "wrap", "e", "after"}) {
    EXPECT_GT(text.word(word).top, text.word(before).bottom - 2) << word;
    before = word;
  }
}

TEST_F(Document, PagesHoldWhatIsWritten) {
  // The code page, commands, and the words of their pages.
  constexpr std::tuple<const char*, const char*, const char*> kCases[] = {
      {"", "# nothing\n", ""},
      {"", "text 2 2 \"perch\xE9\xA0\x80\x93\"", "perché €“"},
      {"CP1251", "text 2 2 \"\xCC\xE8\xF0\"", "Мир"},
      {"",
       "header\ntext 2 1 \"Upper{page}\"\nend\n"
       "footer\ntext 19 28 \"{page}/{pages} \\{page}\" right\nend\n"
       "paragraph \"a\"\nnewpage\nparagraph \"b\"\n"
       "header\ntext 2 1 \"Later\"\nend\nnewpage\ntext 3 3 \"last {pages}\"\n",
       "Upper1 a 1/3 {page} | Upper2 b 2/3 {page} | Later last 3 3/3 {page}"},
      // A table of heads alone, where they find no room, stands on the next page.
      {"", "move 27\ntable 5\nhead \"one\"\nhead \"two\"\nend\nparagraph \"after\"\n",
       " | one two after"},
  };
  for (const auto& [codePage, commands, pages] : kCases) {
    ::setenv("VELTGENERAL_CODEPAGE", codePage, 1);
    const PdfText text = generator_.make(commands);
    std::string words = text.page(1);
    for (int page = 2; page <= static_cast<int>(text.pages.size()); ++page)
      words.append(" | ").append(text.page(page));
    EXPECT_EQ(words, pages);
  }
  ::unsetenv("VELTGENERAL_CODEPAGE");
}

TEST_F(Document, TitleAuthorAndPageSizes) {
  const PdfText text = generator_.make(
      "title \"Citt\xE0 \x80\"\nauthor \"R. \\\"Bob\\\" Rossi\"\n"
      "newpage\npage landscape\nspace 1\n");
  EXPECT_EQ(text.pages, (std::vector<std::string>{"595 x 842", "842 x 595"}));
  const std::string info = test::outputOf("pdfinfo " + generator_.document);
  for (const char* line : {"Title:           Città €\n", "Author:          R. \"Bob\" Rossi\n",
                           "Page size:       595.276 x 841.89 pts (A4)\n"})
    EXPECT_NE(info.find(line), std::string::npos) << line << info;
}

TEST_F(Document, ParagraphsWrapAtBlanksAndStayInside) {
  const std::vector<Word> words =
      generator_
          .make("font \"Times New Roman\" 12\nmargins 3 2 4 2\nparagraph \"" +
                repeated("lorem ipsum dolor ", 40) + "end\" justify\nparagraph \"a\\n\\n" +
                repeated("b\\n", 130) + "\"\nparagraph \"" + repeated("W", 200) +
                "\" from 10 to 12\n")
          .words;
  const double right = (21 - 4) * kCm;
  std::size_t i = 0;
  for (; words[i].text != "end"; ++i)
    EXPECT_TRUE(words[i + 1].top == words[i].top || words[i].right > right - 0.5) << i;
  EXPECT_LT(words[i].right, right - 10);
  EXPECT_NEAR(words[i + 2].top - words[i + 1].top, 2 * 1.15 * (words[i].bottom - words[i].top), 1);
  // A word without blanks is cut, and nothing of it lost.
  std::size_t wide = 0;
  for (const Word& word : words) {
    const bool isWide = word.text[0] == 'W';
    if (isWide) wide += word.text.size();
    EXPECT_LE(word.right, (isWide ? 12 * kCm : right) + 0.01) << word.text;
    EXPECT_GE(word.left, (isWide ? 10 : 3) * kCm - 0.01) << word.text;
    EXPECT_LE(word.bottom, 27.7 * kCm + 1) << word.text;
  }
  EXPECT_EQ(wide, 200u);
  EXPECT_EQ(words.back().page, 4);
}

TEST_F(Document, EveryPublishedExampleIsUnderstood) {
  const std::string examples = SOURCE_DIR "/examples/invoice/";
  generator_.folder.put("logo.png", test::contentOf(examples + "logo.png"));
  EXPECT_EQ(generator_.make(test::contentOf(examples + "invoice.txt")).pages.size(), 1u);
  const std::string page = test::contentOf(SOURCE_DIR "/docs/pdf-commands.md");
  constexpr std::string_view kFence = "\n```\n";
  int count = 0;
  for (std::size_t end = 0, at = 0; (at = page.find(kFence, end)) != std::string::npos; ++count) {
    end = page.find(kFence, at + 1);
    const std::string example = page.substr(at + kFence.size(), end - at - kFence.size());
    EXPECT_EQ(generator_.run(example).message, "") << example;
    end += kFence.size();
  }
  EXPECT_GE(count, 10);
}

TEST_F(Document, TablesGoOnBelowTheirHeadOnTheNextPage) {
  std::string rows;
  std::string lines;
  for (int i = 0; i < 150; ++i) {
    rows.append("row \"").append(std::to_string(i)).append("\\nof\\nfour\\nend\" \"\"\n");
    lines.append(std::to_string(i)).append("\\n");
  }
  // Commands, the first page of the table, and how its pages end.
  const std::tuple<std::string, int, const char*> cases[] = {
      // Rows stay whole, and the head does not stay behind alone.
      {"move 25.3\ntable 5 5\nhead \"Head\" \"of\"\nhead \"two\" \"rows\"\n" + rows, 2, "end"},
      // A row taller than a page does not.
      {"table 9\nhead \"Head of two rows\"\nrow \"" + lines + "\"\n", 1, ""},
  };
  for (const auto& [commands, firstPage, pageEnd] : cases) {
    const PdfText text = generator_.make(commands + "end\n");
    int next = 0;
    for (const Word& word : text.words) {
      EXPECT_LE(word.bottom, 27.7 * kCm + 1);
      next += word.text == std::to_string(next) ? 1 : 0;
    }
    EXPECT_EQ(next, 150);
    EXPECT_EQ(text.words[0].page, firstPage);
    ASSERT_GT(text.pages.size(), 2u);
    for (int page = firstPage; page <= static_cast<int>(text.pages.size()); ++page) {
      EXPECT_TRUE(text.page(page).starts_with("Head of two rows ")) << page;
      EXPECT_TRUE(text.page(page).ends_with(pageEnd)) << page;
    }
  }
}

TEST_F(Document, BoxesLinesFillsAndColours) {
  const Rendered page(generator_,
                      "box 2 2 6 4 fill #FFEE00 #0000FF thick 6\n"
                      "box 10 2 2 2 fill RED noline\n"
                      "line 2 10 8 10 thick 8 green\n"
                      "move 12\ntable 3 3 grid thick 6 from 2\nrow \"\" \"\" fill navy\nend\n");
  constexpr std::tuple<double, double, std::uint32_t> kDots[] = {
      {5, 4, 0xFFEE00},    {2, 4, 0x0000FF},    {9.9, 3, 0xFFFFFF},  {10.1, 3, 0xC00000},
      {5, 10, 0x008000},   {5, 10.3, 0xFFFFFF}, {3, 12.3, 0x102860}, {5, 12.3, 0xA0A0A0},
      {2, 12.3, 0xA0A0A0}, {8, 12.3, 0xA0A0A0}};
  for (const auto& [x, y, colour] : kDots) EXPECT_EQ(page.at(x, y), colour) << x << ", " << y;
}

TEST_F(Document, APictureFillsItsPlaceAndIsHeldOnce) {
  test::writePng(generator_.folder / "logo.png", 2, 0xFF0000);
  std::string commands("header\nimage \"logo.png\" 2 2 4\nend\nimage \"");
  commands.append(generator_.folder / "logo.png").append("\" 10 2 1 6\nnewpage\nspace 1\n");
  const Rendered page(generator_, commands);
  EXPECT_EQ(page.at(5.9, 3.9), 0xFF0000u);  // twice as wide as high, as the picture is
  EXPECT_EQ(page.at(5.9, 4.1), 0xFFFFFFu);
  EXPECT_EQ(page.at(10.5, 7.9), 0xFF0000u);
  EXPECT_EQ(placesOfPictures(), "3\n");
}

TEST_F(Document, APictureThatMemoryDidNotKeepIsReadAgain) {
  constexpr std::uint32_t kColours[] = {0xFF0000, 0x00FF00, 0x0000FF, 0xFF0000};
  std::string commands;
  for (int i = 0; i < 4; ++i) {
    const std::string name = std::to_string(i % 3);
    test::writePng(generator_.folder / name, 1700, kColours[i]);
    commands.append("image \"").append(name).append("\" 2 ");
    commands.append(std::to_string(2 + 3 * i)).append(" 4\n");
  }
  const Rendered page(generator_, commands);
  for (int i = 0; i < 4; ++i)
    EXPECT_EQ(page.at(3, 3 + 3 * i) & 0xF0F0F0, kColours[i] & 0xF0F0F0) << i;  // shrinking rounds
  EXPECT_EQ(placesOfPictures(), "1\n1\n2\n");
}

TEST_F(Document, AFullDiskIsReportedAndLeavesTheOldFile) {
  generator_.folder.put("a.pdf", "before");
  // Refused among the pages, and refused at the very end.
  for (const auto& [commands, most] :
       {std::pair{longTable(5000), 20000}, {"text 2 2 \"a\"", 1000}}) {
    generator_.folder.put("a.txt", commands);
    const test::FileLimit limit(most);
    const Result result = generator_.run();
    EXPECT_EQ(result.number, 3);
    EXPECT_EQ(result.message, "the PDF file cannot be written: File too large: a.pdf");
    EXPECT_EQ(test::contentOf(generator_.document), "before");
    EXPECT_EQ(generator_.folder.fileCount(), 2u);
  }
}

TEST_F(Document, MemoryDoesNotGrowWithTheRows) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer keeps what is freed";
#endif
  const auto peak = [&](int rows) {
    const std::string commands = longTable(rows);
    const pid_t child = ::fork();
    if (child == 0) test::leave(generator_.run(commands).number);
    int status = 0;
    rusage usage{};
    ::wait4(child, &status, 0, &usage);
    EXPECT_EQ(status, 0);
    return usage.ru_maxrss;
  };
  const long few = peak(2000);
  EXPECT_LT(peak(30000), few + 8 * 1024);
}

TEST_F(Document, ThreadsEachMakeTheirOwn) {
  const auto work = [] {
    const Generator generator;
    EXPECT_EQ(generator.make(longTable(3000)).page(1).substr(0, 11), "a some text");
  };
  { const std::jthread threads[] = {std::jthread(work), std::jthread(work)}; }
}

}  // namespace
}  // namespace veltgeneral::pdf
