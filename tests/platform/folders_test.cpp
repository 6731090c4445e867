#include "platform/folders.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "veltgeneral/runtime_error.h"

namespace veltgeneral::platform {
namespace {

namespace fs = std::filesystem;

class Folders : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (fs::temp_directory_path() / "folders_test.XXXXXX").string();
    root_ = ::mkdtemp(pattern.data());
    ::unsetenv("VELTGENERAL_WINDOWS_DIR");
    ::unsetenv("VELTGENERAL_SYSTEM_DIR");
    ::setenv("XDG_STATE_HOME", root_.c_str(), 1);
  }
  void TearDown() override {
    fs::remove_all(root_);
    ::unsetenv("TMPDIR");
  }

  static mode_t modeOf(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 0777 : 0;
  }

  std::string root_;
};

TEST_F(Folders, WindowsAndSystemAreTheChosenOnesOrOurOwn) {
  EXPECT_EQ(windowsFolder(), root_ + "/veltgeneral/windows");
  EXPECT_EQ(systemFolder(), root_ + "/veltgeneral/windows/system");
  EXPECT_EQ(modeOf(systemFolder()), 0700u);
  ::setenv("VELTGENERAL_WINDOWS_DIR", "/srv/win/", 1);
  EXPECT_EQ(windowsFolder(), "/srv/win");
  EXPECT_EQ(systemFolder(), root_ + "/veltgeneral/windows/system");

  ::setenv("XDG_STATE_HOME", "relative", 1);
  ::setenv("HOME", root_.c_str(), 1);
  EXPECT_EQ(stateFolder(), root_ + "/.local/state/veltgeneral");
  ::setenv("XDG_STATE_HOME", "/proc/nowhere", 1);
  EXPECT_EQ(systemFolder(), "");
}

TEST_F(Folders, WorkFilesLieWhereNobodyElseCanReach) {
  ::setenv("TMPDIR", root_.c_str(), 1);
  EXPECT_EQ(temporaryFolder(), root_);

  fs::permissions(root_, fs::perms::others_exec, fs::perm_options::add);
  const std::string own = root_ + "/veltgeneral-" + std::to_string(::geteuid());
  EXPECT_EQ(temporaryFolder(), own);
  EXPECT_EQ(modeOf(own), 0700u);

  // Somebody was there first: a link, or a folder that others may enter.
  fs::remove(own);
  fs::create_directory(root_ + "/elsewhere");
  fs::permissions(root_ + "/elsewhere", fs::perms::owner_all);
  fs::create_directory_symlink(root_ + "/elsewhere", own);
  EXPECT_THROW(temporaryFolder(), RuntimeError);
  fs::remove(own);
  fs::create_directory(own);
  fs::permissions(own, fs::perms::all);
  EXPECT_THROW(temporaryFolder(), RuntimeError);

  ::setenv("TMPDIR", (root_ + "/missing").c_str(), 1);
  EXPECT_NO_THROW(temporaryFolder());
}

}  // namespace
}  // namespace veltgeneral::platform
