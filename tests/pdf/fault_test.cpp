// The machine at its limits: a full disk, little memory, many threads.
#include <sys/resource.h>
#include <sys/wait.h>

#include <thread>

#include "pdf/generator.h"
#include "support/file_limit.h"
#include "support/process.h"

namespace veltgeneral::pdf {
namespace {

std::string longTable(int rows) {
  std::string commands = "footer\ntext 2 28 \"{page} of {pages}\"\nend\ntable 4 6\n";
  for (int i = 0; i < rows; ++i)
    commands.append("row \"").append(std::to_string(i)).append("\" \"some text\"\n");
  return commands + "end\n";
}

TEST(Fault, AFullDiskIsReportedAndLeavesTheOldFile) {
  const Generator generator;
  generator.folder.put("a.pdf", "before");
  // Refused among the pages, and refused at the very end.
  for (const auto& [commands, most] :
       {std::pair{longTable(5000), 20000}, {"text 2 2 \"a\"", 1000}}) {
    generator.folder.put("a.txt", commands);
    const test::FileLimit limit(most);
    const Result result = generator.run();
    EXPECT_EQ(result.number, 3);
    EXPECT_EQ(result.message, "the PDF file cannot be written: File too large: a.pdf");
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
    const std::string commands = longTable(rows);
    const pid_t child = ::fork();
    if (child == 0) test::leave(generator.run(commands).number);
    int status = 0;
    rusage usage{};
    ::wait4(child, &status, 0, &usage);
    EXPECT_EQ(status, 0);
    return usage.ru_maxrss;
  };
  const long few = peak(2000);
  EXPECT_LT(peak(30000), few + 8 * 1024);
}

TEST(Fault, ThreadsEachMakeTheirOwn) {
  const auto work = [] {
    const Generator generator;
    EXPECT_EQ(generator.make(longTable(3000)).page(1).substr(0, 11), "0 some text");
  };
  { const std::jthread threads[] = {std::jthread(work), std::jthread(work)}; }
}

}  // namespace
}  // namespace veltgeneral::pdf
