// Failing disks: the right number, and no descriptor left behind.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <functional>
#include <vector>

#include "support/results.h"
#include "support/temporary_folder.h"
#include "veltgeneral/file_utility.h"

namespace veltgeneral {
namespace {

// Runs `action` in a process of its own that may write files of at most `limit` bytes.
int withFileLimit(rlim_t limit, const std::function<int()>& action) {
  const pid_t child = fork();
  if (child == 0) {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit size{limit, limit};
    setrlimit(RLIMIT_FSIZE, &size);
    _exit(action());
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(DiskFault, AFullDiskIs61AndLeavesAShortFile) {
  test::TemporaryFolder folder;
  folder.put("file", "old");
  const Text long100k(100000, u'x');
  EXPECT_EQ(
      withFileLimit(
          70000,
          [&] { return FileUtility().writeFile(folder.text("file"), 0, long100k).numberInfo(); }),
      61);
  EXPECT_EQ(folder.get("file"), std::string(70000, 'x'));
}

TEST(DiskFault, FailingCallsLeakNoDescriptor) {
  test::TemporaryFolder folder;
  std::filesystem::create_directory(folder.path() / "folder");
  const auto open = [] {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
  };
  FileUtility files;
  Text text;
  TextArray table;
  std::int32_t count = 0;
  const auto before = open();
  for (int i = 0; i < 10000; ++i) {
    files.readFile(folder.text("folder"), text);
    files.writeFile(folder.text("folder"), 0, text);
    files.writeFile(u"/dev/null", 0, text);
    files.getArrayFromCsvFile(folder.text("none"), table, 3, count);
  }
  EXPECT_EQ(open(), before);
}

// Files of the kernel hold less than they say, as one does that shrinks while it is read.
TEST(DiskFault, AFileThatEndsTooSoonIs62) {
  const Text kernels = u"/sys/devices/system/cpu/online";
  std::error_code unknown;
  if (std::filesystem::file_size(toUtf8(kernels), unknown) < 100 || unknown) return;
  Text text;
  EXPECT_EQ(test::fields(FileUtility().readFile(kernels, text)),
            test::failure(62, "Input past end of file", "readFile", "FileUtility"));
}

TEST(DiskFault, TooManyOpenFilesIs67) {
  test::TemporaryFolder folder;
  folder.put("file", "x");
  // A sanitizer looks at an error's type through a pipe, once.
  Text text;
  FileUtility().readFile(folder.text("none"), text);
  std::vector<int> taken;
  rlimit before{};
  getrlimit(RLIMIT_NOFILE, &before);
  const rlimit few{64, before.rlim_max};
  setrlimit(RLIMIT_NOFILE, &few);
  for (int fd = open("/dev/null", O_RDONLY); fd >= 0; fd = open("/dev/null", O_RDONLY)) {
    taken.push_back(fd);
  }
  const ErrInfo result = FileUtility().readFile(folder.text("file"), text);
  for (const int fd : taken) close(fd);
  setrlimit(RLIMIT_NOFILE, &before);
  EXPECT_EQ(test::fields(result), test::failure(67, "Too many files", "readFile", "FileUtility"));
}

}  // namespace
}  // namespace veltgeneral
