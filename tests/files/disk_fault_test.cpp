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

// Another process empties the file and fills it again: what is read is the content of one moment or
// an error that says it ended too soon, never what was not in it.
TEST(DiskFault, AFileThatShrinksWhileItIsRead) {
  constexpr std::int16_t kRecords = 30000;
  const std::string record = "aaaaaaaaaaaaaaa;bbbb";
  test::TemporaryFolder folder;
  std::string all;
  for (int i = 0; i < kRecords; ++i) all += record + "\r\n";
  folder.put("file", all);
  const Text name = folder.text("file");
  const pid_t other = fork();
  for (const int fd = other == 0 ? open(folder.file("file").c_str(), O_WRONLY) : 0; other == 0;) {
    if (ftruncate(fd, 22 * 3) != 0 || pwrite(fd, all.data(), all.size(), 0) < 0) _exit(1);
    usleep(500);
  }
  FileUtility files;
  for (int round = 0; round < 300; ++round) {
    Text text = u"mine";
    Variant bytes = 7;
    TextArray table;
    TextArray list(Bounds{1, kRecords});
    std::int32_t lines = 0;
    std::int16_t count = kRecords;
    const std::int32_t asText = files.readFile(name, text).numberInfo();
    EXPECT_TRUE(asText == 62 ? text == u"mine" : asText == 0 && text.size() <= all.size());
    const std::int32_t asBytes = files.readBinaryFile(name, bytes).numberInfo();
    EXPECT_TRUE(asBytes == 62 ? std::get<int>(bytes) == 7 : asBytes == 0);
    EXPECT_TRUE(files.getArrayFromCsvFile(name, table, 2, lines).isSuccess());
    EXPECT_EQ(table.at(2, 2), u"bbbb");
    const std::int32_t asRecords = files.ooReadFile(name, 20, 1, count, list).numberInfo();
    EXPECT_TRUE(asRecords == 0 || asRecords == 62 || asRecords == eiABORTED) << asRecords;
    for (std::int32_t i = 1; i <= kRecords && !list.at(i).empty(); ++i) {
      ASSERT_EQ(list.at(i), fromUtf8(record));
    }
  }
  kill(other, SIGKILL);
  waitpid(other, nullptr, 0);
  // Files of the kernel hold less than they say, always.
  const Text kernels = u"/sys/devices/system/cpu/online";
  std::error_code unknown;
  if (std::filesystem::file_size(toUtf8(kernels), unknown) < 100 || unknown) return;
  Text text;
  EXPECT_EQ(test::fields(files.readFile(kernels, text)),
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
