#include "platform/linux/settings/replace_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include "support.h"

namespace veltgeneral::platform {
namespace {

namespace fs = std::filesystem;

Edit to(std::string content) {
  return [content = std::move(content)](std::string_view) { return std::optional(content); };
}

struct stat statusOf(const std::string& path) {
  struct stat status {};
  EXPECT_EQ(::stat(path.c_str(), &status), 0);
  return status;
}

class ReplaceFile : public testing::Test {
 protected:
  const test::TemporaryFolder folder_;
};

TEST_F(ReplaceFile, KeepsModeLinkAndAttributesAndLeavesNothingBeside) {
  fs::create_directory(folder_ / "sub");
  const std::string file = folder_.put("sub/file", "old");
  fs::permissions(file, fs::perms(0640));
  const bool attributes = ::setxattr(file.c_str(), "user.note", "kept", 4, 0) == 0;
  fs::create_symlink("sub/file", folder_ / "one");
  fs::create_symlink(folder_ / "one", folder_ / "two");
  const struct stat before = statusOf(file);
  EXPECT_FALSE(changeFile(folder_ / "two", 0600, [](std::string_view content) {
    return std::optional(std::string(content) + " and new");
  }));
  const struct stat after = statusOf(file);
  EXPECT_TRUE(fs::is_symlink(folder_ / "two"));
  EXPECT_NE(before.st_ino, after.st_ino);
  EXPECT_EQ(test::contentOf(file), "old and new");
  EXPECT_EQ(after.st_mode & 07777, 0640u);
  EXPECT_EQ(after.st_uid, before.st_uid);
  if (attributes) {
    char value[8] = {};
    EXPECT_EQ(::getxattr(file.c_str(), "user.note", value, sizeof value), 4);
    EXPECT_STREQ(value, "kept");
  }
  const fs::directory_iterator beside(folder_ / "sub");
  EXPECT_EQ(std::distance(begin(beside), end(beside)), 1);
}

TEST_F(ReplaceFile, CreatesTheFileALinkNames) {
  fs::create_symlink("target", folder_ / "link");
  EXPECT_FALSE(changeFile(folder_ / "link", 0600, to("x")));
  EXPECT_EQ(folder_.get("target"), "x");
  EXPECT_EQ(statusOf(folder_ / "target").st_mode & 07777, 0600u);
  EXPECT_FALSE(changeFile(folder_ / "none", 0600, [](auto) { return std::nullopt; }));
  EXPECT_FALSE(fs::exists(folder_ / "none"));
}

TEST_F(ReplaceFile, RefusesWhatIsReadOnlyOrNoFile) {
  const std::string file = folder_.put("file", "old");
  const auto change = [](const std::string& path) { return changeFile(path, 0600, to("x")); };
  fs::permissions(file, fs::perms(0444));
  EXPECT_EQ(change(file), std::errc::permission_denied);
  fs::permissions(file, fs::perms(0644));
  fs::permissions(folder_.path(), fs::perms(0555));
  EXPECT_EQ(change(file), std::errc::permission_denied);
  EXPECT_EQ(change(folder_ / "new"), std::errc::permission_denied);
  EXPECT_EQ(test::contentOf(file), "old");
  EXPECT_EQ(change(folder_ / "no/file"), std::errc::no_such_file_or_directory);
  EXPECT_TRUE(change(folder_.path()));
}

// A folder closed to this process, and open to its owner: only a plain user meets one.
TEST_F(ReplaceFile, OverwritesInPlaceWhereTheFolderForbidsAnotherFile) {
  const std::string file = folder_.put("file", "old and longer");
  fs::permissions(file, fs::perms(0666));
  const bool root = ::geteuid() == 0;
  fs::permissions(folder_.path(), root ? fs::perms(0755) : fs::perms(0577));
  const struct stat before = statusOf(file);
  ASSERT_TRUE(test::succeeded(test::inProcess([&] {
    if (root && ::seteuid(test::Process::kNobody) != 0) return false;
    const bool changed = !changeFile(file, 0600, to("new"));
    return changed && (!root || ::seteuid(0) == 0);
  })));
  EXPECT_EQ(test::contentOf(file), "new");
  EXPECT_EQ(before.st_ino, statusOf(file).st_ino);
}

}  // namespace
}  // namespace veltgeneral::platform
