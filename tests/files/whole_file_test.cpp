#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <numeric>

#include "support/results.h"
#include "support/temporary_folder.h"
#include "veltgeneral/file_utility.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

using test::failure;
using test::fields;

const auto kWritten = std::tuple(0, "Operazione eseguita correttamente", 3, "writeFile",
                                 "FileUtility", "VELTGENERAL", "");

TEST(WholeFile, EveryByteSurvivesTheRoundTrip) {
  test::TemporaryFolder folder;
  std::string bytes(100000, '\0');
  std::iota(bytes.begin(), bytes.end(), '\0');
  folder.put("all", bytes);

  FileUtility files;
  for (const std::string& each : {bytes, std::string()}) {
    folder.put("file", each);
    Text text = u"before";
    EXPECT_EQ(fields(files.readFile(folder.text("file"), text)), test::fresh());
    EXPECT_EQ(text.size(), each.size());
    EXPECT_EQ(text.find(u"€\x81"), each.empty() ? Text::npos : 0x80U);
    EXPECT_EQ(fields(files.writeFile(folder.text("copy"), 0, text)), kWritten);
    EXPECT_EQ(folder.get("copy"), each + "\r\n");
    Variant content = 1;
    EXPECT_EQ(fields(files.readBinaryFile(folder.text("file"), content)), test::fresh());
    EXPECT_TRUE(std::ranges::equal(std::get<Bytes>(content), each, {}, {},
                                   [](char c) { return static_cast<std::uint8_t>(c); }));
  }
  files.writeFile(folder.text("copy"), 0, u"\u4E2D\u2019");  // the first is not in the page
  EXPECT_EQ(folder.get("copy"), "?\x92\r\n");
}

TEST(WholeFile, WindowsPathsReachTheHost) {
  test::TemporaryFolder folder;
  std::filesystem::create_directory(folder.path() / "sub");
  folder.put("sub/file.txt", "ok");
  Text windows = folder.text("sub/file.txt");
  std::ranges::replace(windows, u'/', u'\\');
  setenv("VELTGENERAL_DRIVE_Q", folder.path().c_str(), 1);
  for (const Text& path :
       {windows, Text(u"Q:\\sub\\file.txt"), Text(u"q:/sub/file.txt"), Text(u"Q:sub\\file.txt")}) {
    Text text;
    EXPECT_TRUE(FileUtility().readFile(path, text).isSuccess()) << toUtf8(path);
    EXPECT_EQ(text, u"ok");
  }
  unsetenv("VELTGENERAL_DRIVE_Q");
}

// Each path for each member: the result says why, nothing hangs, and the caller's value stays.
TEST(WholeFile, RefusalsHaveNumbersAndLeaveArgumentsAlone) {
  test::TemporaryFolder folder;
  std::filesystem::create_directory(folder.path() / "folder");
  mkfifo(folder.file("fifo").c_str(), 0600);
  folder.put("file", "x");
  struct Case {
    Text path;
    int reading;
    int writing;
  };
  const Case cases[] = {{folder.text("none"), 53, 0},
                        {folder.text("none/file"), 76, 76},
                        {folder.text("file/file"), 76, 76},
                        {folder.text("folder"), 75, 75},
                        {folder.text("folder/"), 75, 75},
                        {u"", 75, 75},
                        {folder.text("fifo"), 57, 57},
                        {u"/dev/null", 57, 57},
                        {u"Y:\\file", 76, 76},
                        {folder.text("nul") + Text(1, u'\0') + u"x", 52, 52},
                        {folder.text(std::string(300, 'n')), 52, 52}};
  FileUtility files;
  for (const Case& c : cases) {
    SCOPED_TRACE(toUtf8(c.path));
    Text text = u"mine";
    Variant content = 7;
    EXPECT_EQ(
        fields(files.readFile(c.path, text)),
        failure(c.reading, toUtf8(standardMessage(c.reading)).c_str(), "readFile", "FileUtility"));
    EXPECT_EQ(files.readBinaryFile(c.path, content).numberInfo(), c.reading);
    EXPECT_EQ(text, u"mine");
    EXPECT_EQ(std::get<int>(content), 7);
    EXPECT_EQ(files.writeFile(c.path, 0, u"x").numberInfo(), c.writing);
  }
}

TEST(WholeFile, AccessIsDeniedToOthers) {
  if (geteuid() == 0) GTEST_SKIP() << "nothing is denied to root";
  test::TemporaryFolder folder;
  folder.put("secret", "x");
  chmod(folder.file("secret").c_str(), 0200);
  Text text;
  EXPECT_EQ(fields(FileUtility().readFile(folder.text("secret"), text)),
            failure(70, "Permission denied", "readFile", "FileUtility"));
  chmod(folder.path().c_str(), 0500);
  EXPECT_EQ(FileUtility().writeFile(folder.text("new"), 0, u"x").numberInfo(), 70);
  chmod(folder.path().c_str(), 0700);
}

TEST(WholeFile, CountsNormalFilesThatMatch) {
  test::TemporaryFolder folder;
  FileUtility files;
  for (const char* name : {"a.txt", "B.TXT", "c.doc", "noext", ".hidden.txt"}) folder.put(name, "");
  files.writeFile(folder.text("hid.txt"), 2, u"");
  files.writeFile(folder.text("sys.txt"), 4, u"");
  files.writeFile(folder.text("ro.txt"), 33, u"");
  std::filesystem::create_directory(folder.path() / "dir.txt");
  std::filesystem::create_symlink(folder.path() / "a.txt", folder.path() / "link.txt");
  mkfifo(folder.file("fifo.txt").c_str(), 0600);
  const bool kept = [&] {
    std::int16_t count = 0;
    files.numFileInDir(folder.text("hid.txt"), count);
    return count == 0;  // else the file system keeps no attributes
  }();
  struct Case {
    Text pattern;
    int count;
  };
  const int hidden = kept ? 0 : 2;
  const Case cases[] = {
      {folder.text(""), 6 + hidden},    {folder.text("*"), 6 + hidden},
      {folder.text("*.*"), 6 + hidden}, {folder.text("*.txt"), 4 + hidden},
      {folder.text("?.txt"), 2},        {folder.text("NOEXT"), 1},
      {folder.text("dir.txt"), 0},      {folder.text("no/such/*"), 0},
      {folder.text("a.txt/*"), 0},
  };
  for (const Case& c : cases) {
    std::int16_t count = -1;
    EXPECT_EQ(fields(files.numFileInDir(c.pattern, count)),
              std::tuple(0, "Operazione eseguita correttamente", 3, "numFileInDir", "FileUtility",
                         "VELTGENERAL", ""));
    EXPECT_EQ(count, c.count) << toUtf8(c.pattern);
  }
  std::int16_t count = 5;
  EXPECT_EQ(fields(files.numFileInDir(u"Y:\\*", count)),
            failure(76, "Path not found", "numFileInDir", "FileUtility"));
  EXPECT_EQ(count, 5);
}

TEST(WholeFile, TheCounterOverflowsAt16Bits) {
  test::TemporaryFolder folder;
  for (int i = 0; i < 32767; ++i) close(creat(folder.file(std::to_string(i)).c_str(), 0600));
  std::int16_t count = 0;
  EXPECT_TRUE(FileUtility().numFileInDir(folder.text(""), count).isSuccess());
  EXPECT_EQ(count, 32767);
  folder.put("one more", "");
  count = 9;
  EXPECT_EQ(fields(FileUtility().numFileInDir(folder.text(""), count)),
            failure(6, "Overflow", "numFileInDir", "FileUtility"));
  EXPECT_EQ(count, 9);
}

}  // namespace
}  // namespace veltgeneral
