// The machine at fault: a disk that is full, a file that appears while another is read.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>
#include <thread>

#include "pdf/generator.h"

namespace veltgeneral::pdf {
namespace {

std::string longTable(int rows) {
  std::string commands = "footer\ntext 2 28 \"{page} of {pages}\"\nend\ntable 4 6\n";
  for (int i = 0; i < rows; ++i)
    commands.append("row \"").append(std::to_string(i)).append("\" \"some text\"\n");
  return commands + "end\n";
}

// What another process spends on `body`, which returns its exit status.
rusage inProcess(const std::function<int()>& body, int expected) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(body());
  int status = 0;
  rusage usage{};
  ::wait4(child, &status, 0, &usage);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == expected) << status;
  return usage;
}

TEST(Fault, AFullDiskIsReportedAndLeavesTheOldFile) {
  const Generator generator;
  generator.folder.put("a.pdf", "before");
  // Refused among the pages, and refused at the very end.
  for (const auto& [commands, limit] :
       {std::pair{longTable(5000), 20000}, {std::string("text 2 2 \"a\""), 1000}}) {
    const std::string file = generator.folder.put("a.txt", commands);
    const auto run = [&] {
      const rlimit bound{static_cast<rlim_t>(limit), static_cast<rlim_t>(limit)};
      std::signal(SIGXFSZ, SIG_IGN);
      ::setrlimit(RLIMIT_FSIZE, &bound);
      const Result result = Generator::runFiles(file, generator.document);
      const bool told = result.message == "the PDF file cannot be written: File too large: a.pdf";
      return told ? result.number : 99;
    };
    inProcess(run, 3);
    EXPECT_EQ(test::contentOf(generator.document), "before");
    EXPECT_EQ(generator.folder.fileCount(), 2u);
  }
}

TEST(Fault, MemoryDoesNotGrowWithTheRows) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer keeps what is freed";
#endif
  const Generator generator;
  const auto peak = [&](int rows) {
    generator.folder.put("a.txt", longTable(rows));
    const auto run = [&] {
      return Generator::runFiles(generator.folder / "a.txt", generator.document).number;
    };
    return inProcess(run, 0).ru_maxrss;
  };
  const long few = peak(2000);
  EXPECT_LT(peak(30000), few + 8 * 1024);
}

TEST(Fault, ThreadsEachMakeTheirOwn) {
  const Generator generators[2];
  const auto work = [](const Generator& generator) {
    EXPECT_EQ(generator.run(longTable(3000)).number, 0);
  };
  std::thread other(work, std::cref(generators[1]));
  work(generators[0]);
  other.join();
  EXPECT_EQ(PdfText(generators[0].document).pages, PdfText(generators[1].document).pages);
}

}  // namespace
}  // namespace veltgeneral::pdf
