#include "platform/linux/settings/replace_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include "support/process.h"
#include "support/test_host.h"

namespace veltgeneral::platform {
namespace {

namespace fs = std::filesystem;

std::error_code change(const std::string& path) {
  return changeFile(path, 0600,
                    [](std::string_view old) { return std::string(old.substr(0, 3)) + "new"; });
}

struct ReplaceFile : testing::Test {
  const test::TemporaryFolder folder;
};

// A second name of a file tells whether that was replaced or overwritten.
TEST_F(ReplaceFile, KeepsOwnerModeLinkAndAttributesAndLeavesNothingBeside) {
  const std::string file = folder.put("sub/file", "old");
  fs::create_hard_link(file, folder / "second");
  fs::permissions(file, fs::perms(0640));
  // Where they can be given: another owner, attributes.
  [[maybe_unused]] const int owned = ::chown(file.c_str(), 1, 2);
  const bool attributes = ::setxattr(file.c_str(), "user.note", "kept", 4, 0) == 0;
  struct stat before {
  }, after{};
  EXPECT_EQ(::stat(file.c_str(), &before), 0);
  fs::create_symlink("sub/file", folder / "one");
  fs::create_symlink(folder / "one", folder / "two");
  EXPECT_FALSE(change(folder / "two"));
  EXPECT_EQ(::stat(file.c_str(), &after), 0);
  EXPECT_TRUE(fs::is_symlink(folder / "two"));
  EXPECT_EQ(test::contentOf(file) + folder.get("second"), "oldnewold");
  EXPECT_EQ(std::tuple(after.st_mode, after.st_uid, after.st_gid),
            std::tuple(before.st_mode, before.st_uid, before.st_gid));
  char value[8] = {};
  EXPECT_EQ(::getxattr(file.c_str(), "user.note", value, sizeof value) == 4, attributes);
  EXPECT_STREQ(value, attributes ? "kept" : "");
  const fs::directory_iterator beside(folder / "sub");
  EXPECT_EQ(std::distance(begin(beside), end(beside)), 1);
}

TEST_F(ReplaceFile, CreatesTheFileALinkNames) {
  fs::create_symlink("target", folder / "link");
  EXPECT_FALSE(change(folder / "link"));
  EXPECT_EQ(folder.get("target"), "new");
  EXPECT_EQ(fs::status(folder / "target").permissions(), fs::perms(0600));
  EXPECT_FALSE(changeFile(folder / "none", 0600, [](auto) { return std::nullopt; }));
  EXPECT_FALSE(fs::exists(folder / "none"));
}

TEST_F(ReplaceFile, RefusesWhatIsReadOnlyOrNoFile) {
  const std::string file = folder.put("file", "old");
  fs::permissions(file, fs::perms(0444));
  EXPECT_EQ(change(file), std::errc::permission_denied);
  fs::permissions(file, fs::perms(0644));
  fs::permissions(folder.path(), fs::perms(0555));
  EXPECT_EQ(change(file), std::errc::permission_denied);
  EXPECT_EQ(change(folder / "new"), std::errc::permission_denied);
  EXPECT_EQ(test::contentOf(file), "old");
  EXPECT_EQ(change(folder / "no/file"), std::errc::no_such_file_or_directory);
  EXPECT_TRUE(change(folder.path()));
}

// A folder closed to this process, and open to its owner: only a plain user meets one.
TEST_F(ReplaceFile, OverwritesInPlaceWhereTheFolderForbidsAnotherFile) {
  const std::string file = folder.put("file", "old and longer");
  fs::create_hard_link(file, folder / "second");
  fs::permissions(file, fs::perms(0666));
  const bool root = ::geteuid() == 0;
  fs::permissions(folder.path(), root ? fs::perms(0755) : fs::perms(0577));
  EXPECT_TRUE(test::succeeded(test::inProcess([&] {
    return (!root || ::seteuid(test::Process::kNobody) == 0) && !change(file) &&
           (!root || ::seteuid(0) == 0);
  })));
  EXPECT_EQ(folder.get("second"), "oldnew");
}

}  // namespace
}  // namespace veltgeneral::platform
