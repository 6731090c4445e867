// Printed documents: as PDF files, through the scheduler, and straight to a printer.
#include <gtest/gtest.h>

#include <optional>
#include <thread>
#include <tuple>

#include "core/host_events.h"
#include "support/error_of.h"
#include "support/file_limit.h"
#include "support/pdf_text.h"
#include "support/ports.h"
#include "support/process.h"
#include "support/temporary_folder.h"
#include "veltgeneral/reporting.h"

namespace veltgeneral {
namespace {

using test::PdfText;

// A scheduler on loopback, without the rights of root, with all its files in a temporary folder.
// Its queues lead nowhere; it keeps what they were given.
class PrintSystem {
 public:
  PrintSystem() {
    std::string files = "ServerRoot " + folder_ / "" + "\nTempDir " + folder_ / "" + "\n";
    for (const std::string name :
         {"RequestRoot", "CacheDir", "StateDir", "AccessLog", "ErrorLog", "PageLog"})
      files.append(name).append(" ").append(folder_ / name).append("\n");
    folder_.put("files.conf", files);
    folder_.put("cupsd.conf", "Listen " + address() +
                                  "\nBrowsing Off\nDirtyCleanInterval 0\nPreserveJobFiles Yes\n"
                                  "<Policy default>\n<Limit All>\nOrder allow,deny\nAllow all\n"
                                  "</Limit>\n</Policy>\n");
    constexpr unsigned kNobody = test::Process::kNobody;
    EXPECT_TRUE(::geteuid() != 0 || ::chown(folder_.path().c_str(), kNobody, kNobody) == 0);
    ::setenv("CUPS_SERVER", address().c_str(), 1);
    scheduler_.emplace(std::vector<std::string>{"cupsd", "-f", "-c", folder_ / "cupsd.conf", "-s",
                                                folder_ / "files.conf"},
                       test::Process::Options{.unprivileged = true});
    EXPECT_TRUE(test::waitUntil([] { return test::listening(kPort); }));
  }
  ~PrintSystem() { ::unsetenv("CUPS_SERVER"); }

  static std::string address() { return "127.0.0.1:" + std::to_string(kPort); }

  // The document of the next job.
  std::string received() {
    return folder_ / ("RequestRoot/d0000" + std::to_string(++jobs_) + "-001");
  }
  // Whether that job says `text`.
  bool jobSays(const std::string& text) const {
    const std::string job = "RequestRoot/c0000" + std::to_string(jobs_);
    return test::waitUntil([&] { return folder_.get(job).find(text) != std::string::npos; });
  }

 private:
  const test::TemporaryFolder folder_;
  // One for all: a thread of the print system's library looks for its scheduler once.
  inline static const int kPort = test::freePort();
  int jobs_ = 0;
  std::optional<test::Process> scheduler_;
};

void printTwoPages(Reporting& report) {
  Variant size = 14.0;
  report.openReport();
  report.prtTesto(2.0, 5.0, size, false, false, u"perché");
  report.prtTesto(8.0, 0.0, size, true, false, u"10€");
  report.newPage();
  report.prtLayoutPaginaBase(Missing{}, Missing{}, std::int16_t{2});
  report.prtTesto(2.0, 5.0, size, false, true, u"second");
  report.closeReport();
}

void expectTwoPages(const std::string& file) {
  const PdfText document(file);
  EXPECT_EQ(document.pages, (std::vector<std::string>{"595 x 842", "595 x 842"}));
  // Where its top-left corner is, in cm, and how many cells it takes.
  constexpr std::tuple<const char*, int, double, double, int> kWords[] = {
      {"perché", 1, 2, 5, 6}, {"10€", 1, 8, 5, 3}, {"second", 2, 2, 5, 6}};
  for (const auto& [text, page, x, y, cells] : kWords) {
    const test::Word word = document.word(text);
    EXPECT_EQ(word.page, page) << text;
    EXPECT_NEAR(word.left, x * 567 / 20, 0.6) << text;
    EXPECT_NEAR(word.top, y * 567 / 20, 3) << text;
    EXPECT_NEAR(word.right - word.left, cells * 1229.0 / 2048 * 14, 0.6) << text;
  }
}

class PrinterTest : public testing::Test {
 protected:
  PrinterTest() {
    report_.setOutputMode(torPRINTER);
    choose("pdf:" + file_);
  }
  ~PrinterTest() override { ::unsetenv("VELTGENERAL_PRINTER"); }

  static void choose(const std::string& printer) {
    ::setenv("VELTGENERAL_PRINTER", printer.c_str(), 1);
  }
  std::int32_t errorOfPrinting() {
    return errorOf([&] { printTwoPages(report_); });
  }

  const test::TemporaryFolder folder_;
  const std::string file_ = folder_ / "report.pdf";
  Reporting report_;
};

TEST_F(PrinterTest, PagesToAFile) {
  printTwoPages(report_);
  expectTwoPages(file_);
  // The next document begins anew, on the first line; pages without a word count, except the last.
  Variant size = 10.0;
  report_.prtTesto(2.0, 5.0, size, false, false, u"first");
  report_.newPage();
  report_.newPage();
  report_.prtTesto(2.0, 0.0, size, false, false, u"third");
  report_.newPage();
  report_.closeReport();
  const PdfText document(file_);
  EXPECT_EQ(document.pages.size(), 3u);
  EXPECT_EQ(document.word("third").page, 3);
  EXPECT_NEAR(document.word("third").top, 0, 2);
}

TEST_F(PrinterTest, WhatFailsOrIsNotEndedLeavesTheFileAsItWas) {
  folder_.put("report.pdf", "before");
  {
    Reporting dropped;
    dropped.setOutputMode(torPRINTER);
    dropped.prtLayoutPaginaBase();
  }
  report_.openReport();
  report_.closeReport();  // nothing was drawn
  for (const double points : {0.0, -1.0, 2161.0}) {
    Variant size = points;
    EXPECT_EQ(errorOf([&] { report_.prtTesto(1.0, 1.0, size, false, false, u"a"); }), 380);
  }
  report_.closeReport();
  {
    // The system's words for a disk without room are the same to us.
    const test::FileLimit limit(2000);
    EXPECT_EQ(errorOfPrinting(), 61);
  }
  for (const auto& [place, error] : {std::pair{folder_ / "none/report.pdf", 76},
                                     {folder_ / "", 75},
                                     {file_ + "/report.pdf", 76}}) {
    choose("pdf:" + place);
    report_.closeReport();
    EXPECT_EQ(errorOfPrinting(), error) << place;
  }
  EXPECT_EQ(test::contentOf(file_), "before");
  EXPECT_EQ(folder_.fileCount(), 1u);
}

TEST_F(PrinterTest, ManyThreadsEachWithItsOwnDocument) {
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
  expectTwoPages(file_);
  EXPECT_EQ(folder_.fileCount(), 2u);
}

TEST_F(PrinterTest, JobsOfThePrintSystem) {
  const std::string direct = "ipp://" + PrintSystem::address() + "/printers/office";
  {
    PrintSystem system;
    choose("");
    EXPECT_EQ(errorOfPrinting(), 482);  // there is no queue at all
    test::outputOf("lpadmin -p office -E -v file:/dev/null 2>&1 && lpadmin -d office");
    for (const std::string& queue : {std::string(), std::string("office"), direct}) {
      choose(queue);
      EXPECT_EQ(errorOfPrinting(), 0) << queue;
      expectTwoPages(system.received());
      EXPECT_TRUE(system.jobSays("iso_a4_210x297mm"));
      EXPECT_TRUE(system.jobSays("Report from report_test"));
    }
    choose("nowhere");
    EXPECT_EQ(errorOfPrinting(), 482);
    // A queue that takes no jobs refuses the document when it is sent; the next one goes well.
    choose("office");
    report_.prtLayoutPaginaBase();
    test::outputOf("cupsreject office");
    EXPECT_EQ(errorOf([&] { report_.closeReport(); }), 482);
    test::outputOf("cupsaccept office");
    EXPECT_EQ(errorOfPrinting(), 0);
    expectTwoPages(system.received());
  }
  for (const std::string& queue : {std::string(), direct}) {
    choose(queue);
    EXPECT_EQ(errorOfPrinting(), 482) << queue;  // nobody is there
  }
}

}  // namespace
}  // namespace veltgeneral
