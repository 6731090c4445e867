// The machine at fault: a disk that is full, a file that appears while another is read.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
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

// Runs in a process of its own whose files cannot grow beyond `limit` bytes.
Result runLimited(const Generator& generator, rlim_t limit) {
  int channel[2];
  EXPECT_EQ(::pipe(channel), 0);
  const pid_t child = ::fork();
  if (child == 0) {
    const rlimit bound{limit, limit};
    std::signal(SIGXFSZ, SIG_IGN);
    ::setrlimit(RLIMIT_FSIZE, &bound);
    const Result result =
        Generator::runFiles(generator.folder / "a.txt", generator.folder / "a.pdf");
    const std::string text = std::to_string(result.number) + result.message;
    ::_exit(::write(channel[1], text.data(), text.size()) > 0 ? 0 : 1);
  }
  ::close(channel[1]);
  char text[200] = {};
  const ssize_t length = ::read(channel[0], text, sizeof text - 1);
  ::close(channel[0]);
  ::waitpid(child, nullptr, 0);
  return length > 0 ? Result{static_cast<std::int16_t>(text[0] - '0'), text + 1} : Result{-1, ""};
}

TEST(Fault, AFullDiskIsReportedAndLeavesTheOldFile) {
  const Generator generator;
  generator.folder.put("a.txt", longTable(5000));
  generator.folder.put("a.pdf", "before");
  // Refused among the pages, and refused at the very end.
  for (const rlim_t limit : {20000, 1000}) {
    const Result result = runLimited(generator, limit);
    EXPECT_EQ(result.number, 3);
    EXPECT_EQ(result.message, "the PDF file cannot be written: File too large: a.pdf");
    EXPECT_EQ(test::contentOf(generator.folder / "a.pdf"), "before");
    EXPECT_EQ(generator.folder.fileCount(), 2u);
    generator.folder.put("a.txt", "text 2 2 \"a\"");
  }
}

TEST(Fault, MemoryDoesNotGrowWithTheRows) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer keeps what is freed";
#endif
  const Generator generator;
  const auto peak = [&](int rows) {
    generator.folder.put("a.txt", longTable(rows));
    const pid_t child = ::fork();
    if (child == 0)
      ::_exit(Generator::runFiles(generator.folder / "a.txt", generator.folder / "a.pdf").number);
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
  const Generator generators[2];
  std::int16_t results[2] = {-1, -1};
  {
    std::thread other([&] { results[1] = generators[1].run(longTable(3000)).number; });
    results[0] = generators[0].run(longTable(3000)).number;
    other.join();
  }
  EXPECT_EQ(results[0], 0);
  EXPECT_EQ(results[1], 0);
  EXPECT_EQ(generators[0].info("Pages"), generators[1].info("Pages"));
}

}  // namespace
}  // namespace veltgeneral::pdf
