// Printed documents: as PDF files, through a printer that speaks IPP, and through the scheduler.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <thread>

#include "core/host_events.h"
#include "report/print_system.h"
#include "support/error_of.h"
#include "support/pdf_text.h"
#include "veltgeneral/reporting.h"

namespace veltgeneral {
namespace {

using test::PdfText;
using test::TemporaryFolder;

void printTwoPages(Reporting& report) {
  Variant size = 14.0;
  report.openReport();
  report.prtLayoutPaginaBase(Text(u"Ordini"), Missing{}, std::int16_t{1});
  report.prtTesto(2.0, 5.0, size, false, false, u"perché");
  report.prtTesto(8.0, 0.0, size, true, false, u"10€");
  report.newPage();
  report.prtLayoutPaginaBase(Missing{}, Missing{}, std::int16_t{2});
  report.prtTesto(2.0, 5.0, size, false, true, u"second");
  report.closeReport();
}

void expectTwoPages(const PdfText& document) {
  EXPECT_EQ(document.pages, (std::vector<std::string>{"595 x 842", "595 x 842"}));
  struct Case {
    const char* text;
    int page;
    double x, y;  // cm of its top-left corner
    double size;
  };
  constexpr Case kCases[] = {
      {"Ordini", 1, 9.5, 1.2, 14},
      {"perché", 1, 2, 5, 14},
      {"10€", 1, 8, 5, 14},
      {"second", 2, 2, 5, 14},
      {"2", 2, 16 + 8 * 0.2117, 27.1, 10},
  };
  constexpr double kPoint = 567 / 20.0;
  for (const Case& c : kCases) {
    const test::Word word = document.word(c.text);
    EXPECT_EQ(word.page, c.page) << c.text;
    EXPECT_NEAR(word.left, c.x * kPoint, 0.6) << c.text;
    EXPECT_NEAR(word.top, c.y * kPoint, c.size * 0.2) << c.text;
    const auto cells = static_cast<double>(fromUtf8(c.text).size());
    EXPECT_NEAR(word.right - word.left, cells * 1229 / 2048 * c.size, 0.6) << c.text;
  }
}

class PrinterTest : public testing::Test {
 protected:
  PrinterTest() { report_.setOutputMode(torPRINTER); }
  ~PrinterTest() override { ::unsetenv("VELTGENERAL_PRINTER"); }

  static void choose(const std::string& printer) {
    ::setenv("VELTGENERAL_PRINTER", printer.c_str(), 1);
  }

  TemporaryFolder folder_;
  Reporting report_;
};

TEST_F(PrinterTest, PagesToAFile) {
  const std::string file = folder_ / "report.pdf";
  choose("pdf:" + file);
  printTwoPages(report_);
  expectTwoPages(PdfText(file));
  // The next document begins anew, on the first line; pages without a word count, except the last.
  Variant size = 10.0;
  report_.newPage();
  report_.newPage();
  report_.prtTesto(2.0, 0.0, size, false, false, u"third");
  report_.newPage();
  report_.closeReport();
  const PdfText document(file);
  EXPECT_EQ(document.pages.size(), 3u);
  EXPECT_EQ(document.word("third").page, 3);
  EXPECT_NEAR(document.word("third").top, 0, 2);
}

TEST_F(PrinterTest, WhatFailsOrIsNotEndedLeavesTheFileAsItWas) {
  const std::string file = folder_.put("report.pdf", "before");
  choose("pdf:" + file);
  {
    Reporting dropped;
    dropped.setOutputMode(torPRINTER);
    dropped.openReport();
    dropped.prtLayoutPaginaBase();
  }
  report_.openReport();
  report_.closeReport();  // nothing was drawn
  for (const double points : {0.0, -1.0, 2161.0}) {
    Variant size = points;
    EXPECT_EQ(errorOf([&] { report_.prtTesto(1.0, 1.0, size, false, false, u"a"); }), 380);
    report_.closeReport();
  }
  for (const auto& [place, error] : {std::pair{folder_ / "none/report.pdf", 76},
                                     {folder_ / "", 75},
                                     {file + "/report.pdf", 76}}) {
    choose("pdf:" + place);
    EXPECT_EQ(errorOf([&] { printTwoPages(report_); }), error) << place;
    report_.closeReport();
  }
  // A file that may not grow: the system's words for a disk without room are the same to us.
  choose("pdf:" + file);
  rlimit before{};
  ::getrlimit(RLIMIT_FSIZE, &before);
  const auto signal = ::signal(SIGXFSZ, SIG_IGN);
  const rlimit small{2000, before.rlim_max};
  ::setrlimit(RLIMIT_FSIZE, &small);
  const std::int32_t error = errorOf([&] { printTwoPages(report_); });
  ::setrlimit(RLIMIT_FSIZE, &before);
  ::signal(SIGXFSZ, signal);
  EXPECT_EQ(error, 61);
  EXPECT_EQ(test::contentOf(file), "before");
  EXPECT_EQ(folder_.fileCount(), 1u);
}

TEST_F(PrinterTest, ManyThreadsEachWithItsOwnDocument) {
  const std::string file = folder_ / "report.pdf";
  choose("pdf:" + file);
  ::setenv("VELTGENERAL_FORM", ("image:" + folder_ / "form.png").c_str(), 1);
  const auto draw = [] {
    Reporting printed;
    printed.setOutputMode(torPRINTER);
    Reporting shown;
    Variant size = 12.0;
    for (int i = 0; i < 20; ++i) {
      shown.prtTesto(2.0, 3.0, size, false, i % 2 == 0,
                     u"perch\u00E9 \u4E2D\u6587 \u0E44\u0E17\u0E22");
      printed.prtTesto(2.0, 9.0, size, false, false, u"\u4E2D\u6587");
      printTwoPages(printed);
      processHostEvents();  // which shows the form
    }
  };
  const auto work = [&] { EXPECT_EQ(errorOf(draw), 0); };
  { const std::jthread threads[] = {std::jthread(work), std::jthread(work), std::jthread(work)}; }
  Reporting().closeReport();
  ::unsetenv("VELTGENERAL_FORM");
  // Whichever was last, it is whole.
  expectTwoPages(PdfText(file));
  EXPECT_EQ(folder_.fileCount(), 2u);
}

TEST_F(PrinterTest, StraightToAPrinter) {
  test::PrintSystem system;
  system.startPrinter();
  choose(system.printerAddress());
  printTwoPages(report_);
  expectTwoPages(PdfText(system.received()));
  EXPECT_TRUE(system.printerLogHas("media (keyword) iso_a4_210x297mm"));
  EXPECT_TRUE(system.printerLogHas("Report from report_test"));

  system.stopPrinter();
  EXPECT_EQ(errorOf([&] { printTwoPages(report_); }), 482);
}

TEST_F(PrinterTest, ThroughTheScheduler) {
  test::PrintSystem system;
  system.startScheduler();
  choose("");
  EXPECT_EQ(errorOf([&] { report_.openReport(); }), 482);  // there is no queue at all
  system.startPrinter();
  system.addDefaultQueue("office");
  for (const char* queue : {"", "office"}) {
    choose(queue);
    printTwoPages(report_);
    expectTwoPages(PdfText(system.received()));
    EXPECT_TRUE(system.printerLogHas("x-dimension=21000 y-dimension=29700"));
  }
  choose("nowhere");
  EXPECT_EQ(errorOf([&] { report_.openReport(); }), 482);
  // A queue that takes no jobs refuses the document when it is sent; the next one goes well.
  choose("office");
  report_.openReport();
  report_.prtLayoutPaginaBase();
  system.administer({"cupsreject", "office"});
  EXPECT_EQ(errorOf([&] { report_.closeReport(); }), 482);
  system.administer({"cupsaccept", "office"});
  printTwoPages(report_);
  expectTwoPages(PdfText(system.received()));
}

}  // namespace
}  // namespace veltgeneral
