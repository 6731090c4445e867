// Attributes as other software on the host keeps them.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include "platform/files.h"
#include "support/temporary_folder.h"
#include "veltgeneral/file_utility.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

using platform::fileAttributes;
using platform::setFileAttributes;

constexpr const char* kName = "user.DOSATTRIB";

class Attributes : public ::testing::Test {
 protected:
  void SetUp() override {
    folder_.put("file", "x");
    if (setxattr(path_.c_str(), kName, "0x0", 3, 0) != 0) {
      GTEST_SKIP() << "the file system keeps no extended attributes";
    }
    removexattr(path_.c_str(), kName);
  }
  std::string stored() const {
    char value[256];
    const auto got = getxattr(path_.c_str(), kName, value, sizeof value);
    return got < 0 ? "none" : std::string(value, static_cast<std::size_t>(got));
  }
  mode_t mode() const {
    struct stat info {};
    stat(path_.c_str(), &info);
    return info.st_mode & 07777;
  }

  test::TemporaryFolder folder_;
  std::string path_ = folder_.file("file");
};

TEST_F(Attributes, AreReadAndWrittenInTheTextualForm) {
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
    EXPECT_EQ(mode(), c.mode);
  }
  EXPECT_THROW(setFileAttributes(path_, 16), RuntimeError);
}

TEST_F(Attributes, OtherWritersFormsAreUnderstood) {
  // A text with its NUL, a text alone, and a binary record: empty text, version 3 twice, mask 0x11,
  // attributes, creation time.
  std::string binary("\0\0\3\0\3\0\0\0\x11\0\0\0\x26\0\0\0\1\2\3\4\5\6\7\x8", 24);
  for (const std::string& form : {std::string("0x26\0", 5), std::string("0x26"), binary}) {
    setxattr(path_.c_str(), kName, form.data(), form.size(), 0);
    EXPECT_EQ(fileAttributes(path_), 0x26);
  }
  setFileAttributes(path_, 32);
  binary[12] = '\x20';
  EXPECT_EQ(stored(), binary) << "the creation time must stay";
  setFileAttributes(path_, 0);
  EXPECT_EQ(stored().size(), 24U);
  for (const std::string& junk :
       {std::string("junk"), std::string("\0", 1), std::string("\0\0\3", 3), std::string("0x"),
        std::string(300, '\0')}) {
    setxattr(path_.c_str(), kName, junk.data(), junk.size(), 0);
    EXPECT_EQ(fileAttributes(path_), 0);
  }
}

TEST_F(Attributes, WriteFileReplacesAndSetsExactly) {
  FileUtility files;
  for (const std::int32_t before : {1, 39, 2, 0}) {
    setFileAttributes(path_, before);
    EXPECT_TRUE(files.writeFile(folder_.text("file"), 1, u"new").isSuccess());
    EXPECT_EQ(fileAttributes(path_), 1);
    EXPECT_EQ(folder_.get("file"), "new\r\n");
  }
  // Attributes that do not exist: the content is there, the result says 5.
  EXPECT_EQ(files.writeFile(folder_.text("file"), 16, u"later").numberInfo(), 5);
  EXPECT_EQ(folder_.get("file"), "later\r\n");
  EXPECT_EQ(fileAttributes(path_), 32);
}

}  // namespace
}  // namespace veltgeneral
