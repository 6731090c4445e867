// Documents, read back with independent tools.
#include <algorithm>
#include <cmath>

#include "pdf/generator.h"

namespace veltgeneral::pdf {
namespace {

std::string repeated(std::string_view text, int times) {
  std::string out;
  for (int i = 0; i < times; ++i) out += text;
  return out;
}

TEST(Document, TextStandsWhereItIsPut) {
  const Generator generator;
  ASSERT_EQ(generator
                .run("font \"Courier New\" 10\n"
                     "text 5 4 \"left\"\n"
                     "text 5 5 \"middle\" centre\n"
                     "TEXT 5 6 \"right\" RIGHT # no comment\n")
                .message,
            "line 4: expected left, centre or right, found \"#\"");
  ASSERT_EQ(generator
                .run("font \"Courier New\" 10\n"
                     "text 5 4 \"left\"\n"
                     "text 5 5 \"middle\" centre\n"
                     "TEXT 5 6 \"one\\nright\" RIGHT\n")
                .number,
            0);
  const std::vector<Word> words = generator.words();
  ASSERT_EQ(words.size(), 4u);
  const double cell = 10 * 1229.0 / 2048;
  EXPECT_NEAR(words[0].left, 5 * kCm, 0.1);
  EXPECT_NEAR(words[0].right, 5 * kCm + 4 * cell, 0.1);
  EXPECT_NEAR(words[0].top, 4 * kCm, 1);
  EXPECT_NEAR((words[1].left + words[1].right) / 2, 5 * kCm, 0.1);
  EXPECT_NEAR(words[3].right, 5 * kCm, 0.1);
  EXPECT_GT(words[3].top, words[2].top + 10);
}

TEST(Document, TitleAuthorAndPageSizes) {
  const Generator generator;
  ASSERT_EQ(generator
                .run("title \"Citt\xE0 \x80\"\nauthor \"R. \\\"Bob\\\" Rossi\"\n"
                     "newpage\npage landscape\nspace 1\n")
                .number,
            0);
  EXPECT_EQ(generator.info("Title"), "Città €");
  EXPECT_EQ(generator.info("Author"), "R. \"Bob\" Rossi");
  const std::string sizes = generator.ask("pdfinfo -l 2 %s");
  EXPECT_NE(sizes.find("Page    1 size:  595.276 x 841.89 pts (A4)"), std::string::npos) << sizes;
  EXPECT_NE(sizes.find("Page    2 size:  841.89 x 595.276 pts (A4)"), std::string::npos) << sizes;
}

TEST(Document, TextIsReadInTheCodePage) {
  const Generator generator;
  ASSERT_EQ(generator.run("text 2 2 \"perch\xE9\xA0\x80\x93\"").number, 0);
  EXPECT_EQ(generator.pageText(1), "perché €“");
  ::setenv("VELTGENERAL_CODEPAGE", "CP1251", 1);
  const int number = generator.run("text 2 2 \"\xCC\xE8\xF0\"").number;
  ::unsetenv("VELTGENERAL_CODEPAGE");
  ASSERT_EQ(number, 0);
  EXPECT_EQ(generator.pageText(1), "Мир");
}

TEST(Document, ParagraphsWrapAtBlanksAndStayInside) {
  const Generator generator;
  ASSERT_EQ(generator
                .run("font \"Times New Roman\" 12\nmargins 3 2 4 2\nparagraph \"" +
                     repeated("lorem ipsum dolor ", 40) + "end\" justify\n" +
                     "paragraph \"a\\n\\nb\"\nparagraph \"" + std::string(200, 'W') +
                     "\" from 10 to 12\n")
                .number,
            0);
  const std::vector<Word> words = generator.words();
  const double right = (21 - 4) * kCm;
  int flush = 0;
  double lineTop = 0;
  int count = 0;
  double a = 0;
  double b = 0;
  std::size_t wide = 0;
  for (const Word& word : words) {
    EXPECT_LE(word.right, right + 0.01) << word.text;
    EXPECT_GE(word.left, 3 * kCm - 0.01) << word.text;
    if (std::abs(word.right - right) < 0.5) ++flush;
    if (word.top > lineTop + 1 && word.text[0] != 'W') ++count;
    lineTop = word.top;
    if (word.text == "a") a = word.top;
    if (word.text == "b") b = word.top;
    if (word.text[0] == 'W') {
      wide += word.text.size();
      EXPECT_GE(word.left, 10 * kCm - 0.01);
      EXPECT_LE(word.right, 12 * kCm + 0.01);
    }
  }
  EXPECT_EQ(flush, count - 3);  // every line but the last, and a and b
  EXPECT_NEAR((b - a) / (words[1].bottom - words[1].top), 2 * 1.15, 0.1);
  EXPECT_EQ(wide, 200u);  // a word without blanks is cut, and nothing of it lost
}

TEST(Document, HeadersFootersAndTheCountOfPages) {
  const Generator generator;
  ASSERT_EQ(generator
                .run("header\ntext 2 1 \"Upper{page}\"\nend\n"
                     "footer\ntext 19 28 \"{page}/{pages} \\{page}\" right\nend\n"
                     "paragraph \"" +
                     repeated("x\\n", 130) +
                     "\"\n"
                     "header\ntext 2 1 \"Later\"\nend\nnewpage\ntext 3 3 \"last {pages}\"\n")
                .number,
            0);
  EXPECT_EQ(generator.info("Pages"), "4");
  EXPECT_EQ(generator.pageText(2).substr(0, 7), "Upper2 ");
  EXPECT_EQ(generator.pageText(4), "Later last 4 4/4 {page}");
  for (const Word& word : generator.words())
    EXPECT_LE(word.bottom, (word.text == "x" ? 27.7 : 29.7) * kCm + 1);
}

TEST(Document, AnEmptyFileIsAnEmptyPage) {
  const Generator generator;
  ASSERT_EQ(generator.run("# nothing\n").number, 0);
  EXPECT_EQ(generator.info("Pages"), "1");
}

TEST(Document, EveryPublishedExampleIsUnderstood) {
  const Generator generator;
  const std::string examples = SOURCE_DIR "/examples/invoice/";
  EXPECT_EQ(Generator::runFiles(examples + "invoice.txt", generator.folder / "a.pdf").message, "");
  EXPECT_EQ(generator.info("Pages"), "1");

  generator.folder.put("logo.png", test::contentOf(examples + "logo.png"));
  const std::string page = test::contentOf(SOURCE_DIR "/docs/pdf-commands.md");
  int count = 0;
  constexpr std::string_view kFence = "\n```\n";
  for (std::size_t at = page.find(kFence); at != std::string::npos; ++count) {
    const std::size_t end = page.find(kFence, at + 1);
    const std::string example = page.substr(at + kFence.size(), end - at - kFence.size());
    EXPECT_EQ(generator.run(example).message, "") << example;
    at = page.find(kFence, end + 1);
  }
  EXPECT_GE(count, 10);
}

TEST(Table, CellsStandInTheirColumns) {
  const Generator generator;
  ASSERT_EQ(generator
                .run("font \"Arial\" 10\ntable 3 4 right 5 centre grid from 4\n"
                     "row \"a\" \"b\" \"c\"\nrow \"one two three four five six\" \"d\" \"\"\n"
                     "row \"e\" \"f\" \"g\"\nend\nparagraph \"after\"\n")
                .number,
            0);
  std::vector<Word> words = generator.words();
  const auto find = [&](std::string_view text) {
    return *std::find_if(words.begin(), words.end(), [&](const Word& w) { return w.text == text; });
  };
  const double pad = 0.12 * kCm;
  EXPECT_NEAR(find("a").left, 4 * kCm + pad, 0.1);
  EXPECT_NEAR(find("b").right, 11 * kCm - pad, 0.1);
  EXPECT_NEAR((find("c").left + find("c").right) / 2, 13.5 * kCm, 0.1);
  EXPECT_LE(find("three").right, 7 * kCm - pad + 0.01);
  EXPECT_GT(find("six").top, find("one").top + 10);
  EXPECT_NEAR(find("d").top, find("one").top, 0.1);
  EXPECT_GT(find("e").top, find("six").bottom);
  EXPECT_GT(find("after").top, find("e").bottom);
}

TEST(Table, BreaksBetweenRowsAndRepeatsItsHead) {
  const Generator generator;
  std::string commands = "table 5 5\nhead \"Head\" \"of\"\nhead \"two\" \"rows\"\n";
  for (int i = 0; i < 100; ++i)
    commands.append("row \"r").append(std::to_string(i)).append("\\nsecond\" \"\"\n");
  ASSERT_EQ(generator.run("move 26\n" + commands + "end\n").number, 0);
  const std::vector<Word> words = generator.words();
  const int pages = std::stoi(generator.info("Pages"));
  ASSERT_GT(pages, 3);
  // The head does not stay behind alone, and no row is split.
  EXPECT_EQ(std::count_if(words.begin(), words.end(), [](const Word& w) { return w.page == 1; }),
            0);
  for (int page = 2; page <= pages; ++page) {
    const std::string text = generator.pageText(page);
    EXPECT_EQ(text.substr(0, 18), "Head of two rows r") << page;
    EXPECT_EQ(text.substr(text.size() - 6), "second") << page;
  }
}

TEST(Table, ARowTallerThanAPageGoesOnOnTheNext) {
  const Generator generator;
  std::string cell;
  for (int i = 0; i < 150; ++i) cell.append("w").append(std::to_string(i)).append("\\n");
  ASSERT_EQ(
      generator.run("table 5 5\nhead \"Head\" \"\"\nrow \"" + cell + "\" \"x\"\nend\n").number, 0);
  int next = 0;
  int heads = 0;
  for (const Word& word : generator.words()) {
    EXPECT_LE(word.bottom, 27.7 * kCm + 1);
    if (word.text[0] == 'w') {
      EXPECT_EQ(word.text.substr(1), std::to_string(next));
      ++next;
    }
    if (word.text == "Head") ++heads;
  }
  EXPECT_EQ(next, 150);
  EXPECT_EQ(heads, std::stoi(generator.info("Pages")));
}

}  // namespace
}  // namespace veltgeneral::pdf
