#include "platform/folders.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/library.h"
#include "support/error_of.h"
#include "support/temporary_folder.h"

namespace veltgeneral::platform {
namespace {

namespace fs = std::filesystem;

mode_t modeOf(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 0777 : 0;
}

TEST(Folders, WindowsAndSystemAreTheChosenOnesOrOurOwn) {
  const test::TemporaryFolder root;
  const std::string windows = root / "veltgeneral/windows";
  ::unsetenv("VELTGENERAL_WINDOWS_DIR");
  ::unsetenv("VELTGENERAL_SYSTEM_DIR");
  ::setenv("XDG_STATE_HOME", root.path().c_str(), 1);
  EXPECT_EQ(windowsFolder(), windows);
  EXPECT_EQ(systemFolder(), windows + "/system");
  EXPECT_EQ(modeOf(windows + "/system"), 0700u);
  ::setenv("VELTGENERAL_WINDOWS_DIR", "/srv/win/", 1);
  EXPECT_EQ(windowsFolder(), "/srv/win");
  EXPECT_EQ(systemFolder(), windows + "/system");

  ::setenv("XDG_STATE_HOME", "relative", 1);
  ::setenv("HOME", root.path().c_str(), 1);
  EXPECT_EQ(stateFolder(), root / ".local/state/veltgeneral");
  ::setenv("XDG_STATE_HOME", "/proc/nowhere", 1);
  EXPECT_EQ(systemFolder(), "");
}

TEST(Folders, WorkFilesLieWhereNobodyElseCanReach) {
  const test::TemporaryFolder root;
  const std::string own = root / ("veltgeneral-" + std::to_string(::geteuid()));
  ::setenv("TMPDIR", root.path().c_str(), 1);
  EXPECT_EQ(temporaryFolder(), root.path());

  fs::permissions(root.path(), fs::perms::others_exec, fs::perm_options::add);
  EXPECT_EQ(temporaryFolder(), own);
  EXPECT_EQ(modeOf(own), 0700u);

  // Somebody was there first: a link, or a folder that others may enter.
  fs::rename(own, root / "elsewhere");
  fs::create_directory_symlink(root / "elsewhere", own);
  EXPECT_EQ(errorOf([] { temporaryFolder(); }), 70);
  fs::remove(own);
  fs::create_directory(own);
  fs::permissions(own, fs::perms::all);
  EXPECT_EQ(errorOf([] { temporaryFolder(); }), 70);

  ::setenv("TMPDIR", (root / "missing").c_str(), 1);
  EXPECT_EQ(errorOf([] { temporaryFolder(); }), 0);
  ::unsetenv("TMPDIR");
}

TEST(Folders, ModulesLieBesideTheLibraryUnlessTheEnvironmentSaysWhere) {
  const std::string folder = fs::canonical("/proc/self/exe").parent_path().string();
  EXPECT_EQ(libraryFolder(), folder);
  for (const auto& [chosen, path] :
       {std::pair("", folder + "/veltgeneral/x.so"), {"/elsewhere", "/elsewhere/x.so"}}) {
    ::setenv("VELTGENERAL_MODULE_DIR", chosen, 1);
    EXPECT_EQ(modulePath("x"), path);
  }
}

TEST(Library, OpensAndCallsOrSaysWhyNot) {
  Library first(PLUGIN);
  const Library second = std::move(first);
  EXPECT_EQ(second.entry<int()>("answer")(), 42);
  EXPECT_EQ(errorOf([&] { second.entry<int()>("question"); }), 453);
  EXPECT_EQ(errorOf([] { Library library("no_such_library_anywhere.so"); }), 53);
  EXPECT_EQ(errorOf([] { Library library("/nowhere/at_all.so"); }), 53);
  EXPECT_EQ(errorOf([] { Library library(BROKEN_PLUGIN); }), 48);
}

}  // namespace
}  // namespace veltgeneral::platform
