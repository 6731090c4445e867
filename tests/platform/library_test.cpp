#include "platform/library.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <utility>

#include "support/error_of.h"

namespace veltgeneral::platform {
namespace {

namespace fs = std::filesystem;

TEST(Library, OpensAndCalls) {
  Library first(PLUGIN);
  const Library second = std::move(first);
  EXPECT_EQ(second.entry<int()>("answer")(), 42);
  EXPECT_EQ(errorOf([&] { second.entry<int()>("question"); }), 453);
}

TEST(Library, SaysWhyItCannotBeOpened) {
  EXPECT_EQ(errorOf([] { Library library("/nowhere/at_all.so"); }), 53);
  EXPECT_EQ(errorOf([] { Library library("no_such_library_anywhere.so"); }), 53);
  EXPECT_EQ(errorOf([] { Library library(BROKEN_PLUGIN); }), 48);
}

TEST(Library, ModulesLieBesideTheLibraryUnlessTheEnvironmentSaysWhere) {
  const std::string folder = fs::canonical("/proc/self/exe").parent_path().string();
  EXPECT_EQ(libraryFolder(), folder);
  ::unsetenv("VELTGENERAL_MODULE_DIR");
  EXPECT_EQ(modulePath("x"), folder + "/veltgeneral/x.so");
  const std::string beside = modulePath("m");
  ::setenv("VELTGENERAL_MODULE_DIR", "", 1);
  EXPECT_EQ(modulePath("m"), beside);
  ::setenv("VELTGENERAL_MODULE_DIR", "/elsewhere", 1);
  EXPECT_EQ(modulePath("x"), "/elsewhere/x.so");
}

}  // namespace
}  // namespace veltgeneral::platform
