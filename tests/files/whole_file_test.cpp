#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <numeric>

#include "support/results.h"
#include "support/temporary_folder.h"
#include "veltgeneral/file_utility.h"

namespace veltgeneral {
namespace {

using namespace std::string_literals;
using test::failure;
using test::fields;

class WholeFile : public ::testing::Test {
 protected:
  test::TemporaryFolder folder_;
  FileUtility files_;
};

TEST_F(WholeFile, EveryByteSurvivesTheRoundTrip) {
  std::string bytes(100000, '\0');
  std::iota(bytes.begin(), bytes.end(), '\0');
  for (const std::string& each : {bytes, std::string()}) {
    folder_.put("file", each);
    Text text = u"before";
    EXPECT_EQ(fields(files_.readFile(folder_.text("file"), text)), test::fresh());
    EXPECT_EQ(text.size(), each.size());
    EXPECT_EQ(text.find(u"€\x81"), each.empty() ? Text::npos : 0x80U);
    EXPECT_EQ(fields(files_.writeFile(folder_.text("copy"), 0, text)),
              test::done("writeFile", "FileUtility"));
    EXPECT_EQ(folder_.get("copy"), each + "\r\n");
    Variant content = 1;
    EXPECT_EQ(fields(files_.readBinaryFile(folder_.text("file"), content)), test::fresh());
    EXPECT_EQ(std::get<Bytes>(content), Bytes(each.begin(), each.end()));
  }
  files_.writeFile(folder_.text("copy"), 0, u"\u4E2D\u2019");  // the first is not in the page
  EXPECT_EQ(folder_.get("copy"), "?\x92\r\n");
}

TEST_F(WholeFile, WindowsPathsReachTheHost) {
  folder_.put("sub/file.txt", "ok");
  Text windows = folder_.text("sub/file.txt");
  std::ranges::replace(windows, u'/', u'\\');
  setenv("VELTGENERAL_DRIVE_Q", folder_.path().c_str(), 1);
  for (const Text& path :
       {windows, Text(u"Q:\\sub\\file.txt"), Text(u"q:/sub/file.txt"), Text(u"Q:sub\\file.txt")}) {
    Text text;
    EXPECT_TRUE(files_.readFile(path, text).isSuccess()) << toUtf8(path);
    EXPECT_EQ(text, u"ok");
  }
  unsetenv("VELTGENERAL_DRIVE_Q");
}

// Each path for each member: the result says why, nothing hangs or stays open, and the caller's
// value stays.
TEST_F(WholeFile, RefusalsHaveNumbersAndLeaveArgumentsAlone) {
  const auto open = [] {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
  };
  std::filesystem::create_directory(folder_.path() / "folder");
  mkfifo(folder_.file("fifo").c_str(), 0600);
  folder_.put("file", "x");
  struct Case {
    Text path;
    int reading;
    int writing;
  };
  const Case cases[] = {{folder_.text("none"), 53, 0},
                        {folder_.text("none/file"), 76, 76},
                        {folder_.text("file/file"), 76, 76},
                        {folder_.text("folder"), 75, 75},
                        {u"", 75, 75},
                        {folder_.text("fifo"), 57, 57},
                        {u"/dev/null", 57, 57},
                        {u"Y:\\file", 76, 76},
                        {folder_.text("nul") + Text(1, u'\0') + u"x", 52, 52},
                        {folder_.text(std::string(300, 'n')), 52, 52}};
  const auto before = open();
  for (std::size_t i = 0; i < 3400; ++i) {  // three calls each
    const Case& c = cases[i % std::size(cases)];
    SCOPED_TRACE(toUtf8(c.path));
    Text text = u"mine";
    Variant content = 7;
    EXPECT_EQ(fields(files_.readFile(c.path, text)), failure(c.reading, "readFile", "FileUtility"));
    EXPECT_EQ(files_.readBinaryFile(c.path, content).numberInfo(), c.reading);
    EXPECT_EQ(text, u"mine");
    EXPECT_EQ(content, Variant(7));
    EXPECT_EQ(files_.writeFile(c.path, 0, u"x").numberInfo(), c.writing);
    std::filesystem::remove(folder_.file("none"));
  }
  EXPECT_EQ(open(), before);
}

// Files of the kernel hold less than they say, as one does that shrinks while it is read.
TEST_F(WholeFile, AFileThatEndsTooSoonIsRefused) {
  const Text kernels = u"/sys/devices/system/cpu/online";
  std::error_code unknown;
  if (std::filesystem::file_size(toUtf8(kernels), unknown) < 100 || unknown)
    GTEST_SKIP() << "the kernel says how long its files are";
  Text text;
  Variant content;
  EXPECT_EQ(fields(files_.readFile(kernels, text)), failure(62, "readFile", "FileUtility"));
  EXPECT_EQ(files_.readBinaryFile(kernels, content).numberInfo(), 62);
}

TEST_F(WholeFile, NormalFilesThatMatchAreCounted) {
  for (const std::string& name : {"a.txt"s, "B.TXT"s, "c.doc"s, "noext"s, ".hidden.txt"s,
                                  "PERCH\u00C9.doc"s, "a.b.t"s, std::string(200, 'a') + 'b'})
    folder_.put(name, "");
  files_.writeFile(folder_.text("hid.txt"), 2, u"");
  files_.writeFile(folder_.text("sys.txt"), 4, u"");
  files_.writeFile(folder_.text("ro.txt"), 33, u"");
  std::filesystem::create_directory(folder_.path() / "dir.txt");
  std::filesystem::create_symlink(folder_.path() / "a.txt", folder_.path() / "link.txt");
  mkfifo(folder_.file("fifo.txt").c_str(), 0600);
  std::int16_t count = 0;
  files_.numFileInDir(folder_.text("hid.txt"), count);
  const int hidden = count == 0 ? 0 : 2;  // where the file system keeps no attributes
  std::string manyStars;
  for (int i = 0; i < 100; ++i) manyStars += "*a";
  // A point before a wildcard, or last, also matches the end of the name; a question mark may find
  // nothing before a point or at the end. Many stars stay cheap.
  const std::pair<int, std::vector<std::string>> cases[] = {
      {9 + hidden, {"", "*", "*.*"}},
      {4 + hidden, {"*.txt"}},
      {3, {"*.?"}},
      {2, {"*.", "?.txt"}},
      {1, {"b.tXt", "perch\u00E9.*", "*l*n*t", "NOEXT.*", "noext.", "a??.txt", "noext??"}},
      {0, {"*l*n*x", "noex", "?noext", manyStars, "dir.txt", "no/such/*", "a.txt/*"}}};
  for (const auto& [expected, patterns] : cases) {
    for (const std::string& pattern : patterns) {
      EXPECT_EQ(fields(files_.numFileInDir(folder_.text(pattern), count)),
                test::done("numFileInDir", "FileUtility"));
      EXPECT_EQ(count, expected) << pattern;
    }
  }
  count = 5;
  EXPECT_EQ(fields(files_.numFileInDir(u"Y:\\*", count)),
            failure(76, "numFileInDir", "FileUtility"));
  EXPECT_EQ(count, 5);
}

TEST_F(WholeFile, TheCounterOverflowsAt16Bits) {
  for (int i = 0; i < 32767; ++i) close(creat(folder_.file(std::to_string(i)).c_str(), 0600));
  std::int16_t count = 0;
  EXPECT_TRUE(files_.numFileInDir(folder_.text(""), count).isSuccess());
  EXPECT_EQ(count, 32767);
  folder_.put("one more", "");
  count = 9;
  EXPECT_EQ(fields(files_.numFileInDir(folder_.text(""), count)),
            failure(6, "numFileInDir", "FileUtility"));
  EXPECT_EQ(count, 9);
}

}  // namespace
}  // namespace veltgeneral
