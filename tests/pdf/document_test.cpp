// Documents, read back with independent tools.
#include <algorithm>
#include <cmath>
#include <set>

#include "pdf/generator.h"

namespace veltgeneral::pdf {
namespace {

std::string repeated(std::string_view text, int times) {
  std::string out;
  for (int i = 0; i < times; ++i) out += text;
  return out;
}

class Document : public testing::Test {
 protected:
  const Generator generator_;
};

TEST_F(Document, TextStandsWhereItIsPut) {
  const std::vector<Word> words = generator_
                                      .make(
                                          "font \"Courier New\" 10\n"
                                          "text 5 4 \"left\"\n"
                                          "text 5 5 \"middle\" centre\n"
                                          "TEXT 5 6 \"one\\nright\" RIGHT\n")
                                      .words;
  ASSERT_EQ(words.size(), 4u);
  const double cell = 10 * 1229.0 / 2048;
  EXPECT_NEAR(words[0].left, 5 * kCm, 0.1);
  EXPECT_NEAR(words[0].right, 5 * kCm + 4 * cell, 0.1);
  EXPECT_NEAR(words[0].top, 4 * kCm, 1);
  EXPECT_NEAR((words[1].left + words[1].right) / 2, 5 * kCm, 0.1);
  EXPECT_NEAR(words[3].right, 5 * kCm, 0.1);
  EXPECT_GT(words[3].top, words[2].top + 10);
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

TEST_F(Document, TextIsReadInTheCodePage) {
  EXPECT_EQ(generator_.make("text 2 2 \"perch\xE9\xA0\x80\x93\"").page(1), "perché €“");
  ::setenv("VELTGENERAL_CODEPAGE", "CP1251", 1);
  const PdfText text = generator_.make("text 2 2 \"\xCC\xE8\xF0\"");
  ::unsetenv("VELTGENERAL_CODEPAGE");
  EXPECT_EQ(text.page(1), "Мир");
}

TEST_F(Document, ParagraphsWrapAtBlanksAndStayInside) {
  const PdfText text = generator_.make(
      "font \"Times New Roman\" 12\nmargins 3 2 4 2\nparagraph \"" +
      repeated("lorem ipsum dolor ", 40) + "end\" justify\n" +
      "paragraph \"a\\n\\nb\"\nparagraph \"" + std::string(200, 'W') + "\" from 10 to 12\n");
  const double right = (21 - 4) * kCm;
  int flush = 0;
  std::set<double> lines;
  std::size_t wide = 0;
  for (const Word& word : text.words) {
    const bool isWide = word.text[0] == 'W';
    EXPECT_LE(word.right, (isWide ? 12 * kCm : right) + 0.01) << word.text;
    EXPECT_GE(word.left, (isWide ? 10 : 3) * kCm - 0.01) << word.text;
    if (isWide) {
      wide += word.text.size();
    } else {
      lines.insert(std::round(word.top));
      if (std::abs(word.right - right) < 0.5) ++flush;
    }
  }
  EXPECT_EQ(flush, static_cast<int>(lines.size()) - 3);  // all but the last, and a and b
  const double height = text.words[1].bottom - text.words[1].top;
  EXPECT_NEAR((text.word("b").top - text.word("a").top) / height, 2 * 1.15, 0.1);
  EXPECT_EQ(wide, 200u);  // a word without blanks is cut, and nothing of it lost
}

TEST_F(Document, HeadersFootersAndTheCountOfPages) {
  const PdfText text = generator_.make(
      "header\ntext 2 1 \"Upper{page}\"\nend\n"
      "footer\ntext 19 28 \"{page}/{pages} \\{page}\" right\nend\nparagraph \"" +
      repeated("x\\n", 130) +
      "\"\nheader\ntext 2 1 \"Later\"\nend\nnewpage\ntext 3 3 \"last {pages}\"\n");
  EXPECT_EQ(text.pages.size(), 4u);
  EXPECT_EQ(text.page(2).substr(0, 7), "Upper2 ");
  EXPECT_EQ(text.page(4), "Later last 4 4/4 {page}");
  for (const Word& word : text.words)
    EXPECT_LE(word.bottom, (word.text == "x" ? 27.7 : 29.7) * kCm + 1);
}

TEST_F(Document, AnEmptyFileIsAnEmptyPage) {
  EXPECT_EQ(generator_.make("# nothing\n").pages.size(), 1u);
}

TEST_F(Document, EveryPublishedExampleIsUnderstood) {
  const std::string examples = SOURCE_DIR "/examples/invoice/";
  EXPECT_EQ(Generator::runFiles(examples + "invoice.txt", generator_.document).message, "");
  EXPECT_EQ(PdfText(generator_.document).pages.size(), 1u);

  generator_.folder.put("logo.png", test::contentOf(examples + "logo.png"));
  std::string page = test::contentOf(SOURCE_DIR "/docs/pdf-commands.md");
  constexpr std::string_view kFence = "\n```\n";
  int count = 0;
  for (; test::skipBehind(page, kFence); ++count) {
    const std::string example = page.substr(0, page.find(kFence));
    EXPECT_EQ(generator_.run(example).message, "") << example;
    test::skipBehind(page, kFence);
  }
  EXPECT_GE(count, 10);
}

TEST_F(Document, CellsStandInTheirColumns) {
  const PdfText text = generator_.make(
      "font \"Arial\" 10\ntable 3 4 right 5 centre grid from 4\n"
      "row \"a\" \"b\" \"c\"\nrow \"one two three four five six\" \"d\" \"\"\n"
      "row \"e\" \"f\" \"g\"\nend\nparagraph \"after\"\n");
  const double pad = 0.12 * kCm;
  EXPECT_NEAR(text.word("a").left, 4 * kCm + pad, 0.1);
  EXPECT_NEAR(text.word("b").right, 11 * kCm - pad, 0.1);
  EXPECT_NEAR((text.word("c").left + text.word("c").right) / 2, 13.5 * kCm, 0.1);
  EXPECT_LE(text.word("three").right, 7 * kCm - pad + 0.01);
  EXPECT_GT(text.word("six").top, text.word("one").top + 10);
  EXPECT_NEAR(text.word("d").top, text.word("one").top, 0.1);
  EXPECT_GT(text.word("e").top, text.word("six").bottom);
  EXPECT_GT(text.word("after").top, text.word("e").bottom);
}

TEST_F(Document, ATableBreaksBetweenRowsAndRepeatsItsHead) {
  std::string commands = "move 26\ntable 5 5\nhead \"Head\" \"of\"\nhead \"two\" \"rows\"\n";
  for (int i = 0; i < 100; ++i)
    commands.append("row \"r").append(std::to_string(i)).append("\\nsecond\" \"\"\n");
  const PdfText text = generator_.make(commands + "end\n");
  ASSERT_GT(text.pages.size(), 3u);
  // The head does not stay behind alone, and no row is split.
  EXPECT_EQ(text.page(1), "");
  for (std::size_t number = 2; number <= text.pages.size(); ++number) {
    const std::string page = text.page(static_cast<int>(number));
    EXPECT_EQ(page.substr(0, 18), "Head of two rows r") << number;
    EXPECT_EQ(page.substr(page.size() - 6), "second") << number;
  }
}

TEST_F(Document, ARowTallerThanAPageGoesOnOnTheNext) {
  std::string cell;
  for (int i = 0; i < 150; ++i) cell.append("w").append(std::to_string(i)).append("\\n");
  const PdfText text =
      generator_.make("table 5 5\nhead \"Head\" \"\"\nrow \"" + cell + "\" \"x\"\nend\n");
  int next = 0;
  std::size_t heads = 0;
  for (const Word& word : text.words) {
    EXPECT_LE(word.bottom, 27.7 * kCm + 1);
    if (word.text == "Head") ++heads;
    if (word.text[0] == 'w') {
      EXPECT_EQ(word.text.substr(1), std::to_string(next));
      ++next;
    }
  }
  EXPECT_EQ(next, 150);
  EXPECT_EQ(heads, text.pages.size());
}

// A table of heads alone, where they find no room, stands on the next page.
TEST_F(Document, HeadsWithoutRowsStandTogether) {
  const PdfText text =
      generator_.make("move 27\ntable 5\nhead \"one\"\nhead \"two\"\nend\nparagraph \"after\"\n");
  EXPECT_EQ(text.page(2), "one two after");
}

}  // namespace
}  // namespace veltgeneral::pdf
