// Attributes as other software on the host keeps them.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include "platform/files.h"
#include "support/temporary_folder.h"
#include "veltgeneral/file_utility.h"

namespace veltgeneral {
namespace {

using namespace std::string_literals;
using platform::fileAttributes;
using platform::setFileAttributes;

class Attributes : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!store("0x0")) GTEST_SKIP() << "the file system keeps no extended attributes";
    removexattr(path_.c_str(), "user.DOSATTRIB");
  }
  bool store(const std::string& form) {
    return setxattr(path_.c_str(), "user.DOSATTRIB", form.data(), form.size(), 0) == 0;
  }
  std::string stored() const {
    char value[256];
    const auto got = getxattr(path_.c_str(), "user.DOSATTRIB", value, sizeof value);
    return got < 0 ? "none" : std::string(value, static_cast<std::size_t>(got));
  }

  test::TemporaryFolder folder_;
  std::string path_ = folder_.put("file", "x");
};

TEST_F(Attributes, AreWrittenAsTextAndModeAndReadBack) {
  struct Case {
    std::int32_t set;
    const char* stored;
    mode_t mode;
  };
  for (const Case& c : {Case{0x22, "0x22", 0644}, Case{1, "none", 0444}, Case{0x27, "0x26", 0444},
                        Case{32, "0x20", 0644}, Case{0, "none", 0644}}) {
    chmod(path_.c_str(), 0644);
    setFileAttributes(path_, c.set);
    EXPECT_EQ(fileAttributes(path_), c.set);
    EXPECT_EQ(stored(), c.stored);
    struct stat info {};
    stat(path_.c_str(), &info);
    EXPECT_EQ(info.st_mode & 07777, c.mode);
  }
}

TEST_F(Attributes, OtherWritersFormsAreUnderstood) {
  // Empty text, version 3 twice, mask 0x11, attributes, creation time.
  std::string binary("\0\0\3\0\3\0\0\0\x11\0\0\0\x26\0\0\0\1\2\3\4\5\6\7\x8", 24);
  const std::pair<std::string, std::int32_t> cases[] = {
      {"0x26\0"s, 0x26}, {"0x26", 0x26},           {"junk", 0},   {"\0"s, 0}, {"\0\0\3"s, 0},
      {"0x", 0},         {std::string(300, 0), 0}, {binary, 0x26}};
  for (const auto& [form, attributes] : cases) {
    store(form);
    EXPECT_EQ(fileAttributes(path_), attributes) << form;
  }
  setFileAttributes(path_, 32);
  binary[12] = '\x20';
  EXPECT_EQ(stored(), binary) << "the creation time must stay";
  setFileAttributes(path_, 0);
  EXPECT_EQ(stored().size(), 24U);
}

TEST_F(Attributes, WriteFileReplacesAndSetsExactly) {
  for (const std::int32_t before : {1, 39, 2, 0}) {
    setFileAttributes(path_, before);
    EXPECT_TRUE(FileUtility().writeFile(folder_.text("file"), 1, u"new").isSuccess());
    EXPECT_EQ(fileAttributes(path_), 1);
    EXPECT_EQ(folder_.get("file"), "new\r\n");
  }
  // Attributes that do not exist: the content is there, the result says 5.
  EXPECT_EQ(FileUtility().writeFile(folder_.text("file"), 16, u"later").numberInfo(), 5);
  EXPECT_EQ(folder_.get("file"), "later\r\n");
  EXPECT_EQ(fileAttributes(path_), 32);
}

}  // namespace
}  // namespace veltgeneral
