#include "platform/linux/settings/replace_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include "support.h"

namespace veltgeneral::platform {
namespace {

namespace fs = std::filesystem;
using veltgeneral::testing::contentOf;
using veltgeneral::testing::inProcess;
using veltgeneral::testing::setContent;
using veltgeneral::testing::succeeded;
using veltgeneral::testing::TemporaryFolder;

Edit to(std::string content) {
  return [content = std::move(content)](std::string_view) { return std::optional(content); };
}

std::size_t filesIn(const std::string& folder) {
  return static_cast<std::size_t>(
      std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

TEST(ReplaceFile, KeepsModeLinkAndAttributesAndLeavesNothingBeside) {
  const TemporaryFolder folder;
  fs::create_directory(folder / "sub");
  setContent(folder / "sub/file", "old");
  fs::permissions(folder / "sub/file", fs::perms(0640));
  const bool attributes = ::setxattr((folder / "sub/file").c_str(), "user.note", "kept", 4, 0) == 0;
  fs::create_symlink("sub/file", folder / "one");
  fs::create_symlink(folder / "one", folder / "two");
  struct stat before {};
  ::stat((folder / "sub/file").c_str(), &before);
  EXPECT_FALSE(changeFile(folder / "two", 0600, [](std::string_view content) {
    return std::optional(std::string(content) + " and new");
  }));
  struct stat after {};
  ::stat((folder / "sub/file").c_str(), &after);
  EXPECT_TRUE(fs::is_symlink(folder / "two"));
  EXPECT_NE(before.st_ino, after.st_ino);
  EXPECT_EQ(contentOf(folder / "sub/file"), "old and new");
  EXPECT_EQ(after.st_mode & 07777, 0640u);
  EXPECT_EQ(after.st_uid, before.st_uid);
  if (attributes) {
    char value[8] = {};
    EXPECT_EQ(::getxattr((folder / "sub/file").c_str(), "user.note", value, sizeof value), 4);
    EXPECT_STREQ(value, "kept");
  }
  EXPECT_EQ(filesIn(folder / "sub"), 1u);
}

TEST(ReplaceFile, CreatesTheFileALinkNames) {
  const TemporaryFolder folder;
  fs::create_symlink("target", folder / "link");
  EXPECT_FALSE(changeFile(folder / "link", 0600, to("x")));
  EXPECT_EQ(contentOf(folder / "target"), "x");
  EXPECT_EQ(fs::status(folder / "target").permissions(), fs::perms(0600));
  EXPECT_FALSE(changeFile(folder / "none", 0600, [](auto) { return std::nullopt; }));
  EXPECT_FALSE(fs::exists(folder / "none"));
}

TEST(ReplaceFile, RefusesWhatIsReadOnlyOrNoFile) {
  const TemporaryFolder folder;
  setContent(folder / "file", "old");
  fs::permissions(folder / "file", fs::perms(0444));
  EXPECT_EQ(changeFile(folder / "file", 0600, to("x")), std::errc::permission_denied);
  fs::permissions(folder / "file", fs::perms(0644));
  fs::permissions(folder.path(), fs::perms(0555));
  EXPECT_EQ(changeFile(folder / "file", 0600, to("x")), std::errc::permission_denied);
  EXPECT_EQ(changeFile(folder / "new", 0600, to("x")), std::errc::permission_denied);
  fs::permissions(folder.path(), fs::perms(0755));
  EXPECT_EQ(contentOf(folder / "file"), "old");
  EXPECT_EQ(changeFile(folder / "no/file", 0600, to("x")), std::errc::no_such_file_or_directory);
  EXPECT_TRUE(changeFile(folder.path(), 0600, to("x")));
}

// A folder closed to this process, and open to its owner: only a plain user meets one.
TEST(ReplaceFile, OverwritesInPlaceWhereTheFolderForbidsAnotherFile) {
  const TemporaryFolder folder;
  setContent(folder / "file", "old and longer");
  fs::permissions(folder / "file", fs::perms(0666));
  const bool root = ::geteuid() == 0;
  fs::permissions(folder.path(), root ? fs::perms(0755) : fs::perms(0577));
  struct stat before {};
  ::stat((folder / "file").c_str(), &before);
  ASSERT_TRUE(succeeded(inProcess([&] {
    if (root && ::seteuid(test::Process::kNobody) != 0) return false;
    const bool changed = !changeFile(folder / "file", 0600, to("new"));
    return changed && (!root || ::seteuid(0) == 0);
  })));
  struct stat after {};
  ::stat((folder / "file").c_str(), &after);
  EXPECT_EQ(contentOf(folder / "file"), "new");
  EXPECT_EQ(before.st_ino, after.st_ino);
}

}  // namespace
}  // namespace veltgeneral::platform
