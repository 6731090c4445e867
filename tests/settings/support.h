// What the tests of the settings stores share: a folder of their own, whole files, many processes.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

#include "platform/narrow_page.h"
#include "support/process.h"

namespace veltgeneral::testing {

// Where tests work that write more than a disk takes in a moment.
inline std::filesystem::path memoryFolder() {
  const char* kShared = "/dev/shm";
  return ::access(kShared, W_OK) == 0 ? kShared : std::filesystem::temp_directory_path();
}

// A new folder, gone with the object.
class TemporaryFolder {
 public:
  explicit TemporaryFolder(
      const std::filesystem::path& parent = std::filesystem::temp_directory_path()) {
    std::string pattern = parent / "veltgeneral-XXXXXX";
    path_ = ::mkdtemp(pattern.data());
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all, ignored);
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string operator/(const std::string& name) const { return path_ + "/" + name; }
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

inline std::string contentOf(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

inline void setContent(const std::string& path, std::string_view content) {
  std::ofstream(path, std::ios::binary) << content;
}

// The library's own folders and its registry, in a folder of the test's.
class TestHost {
 public:
  explicit TestHost(const std::filesystem::path& parent = std::filesystem::temp_directory_path())
      : folder_(parent) {
    for (const char* name : {"registry", "home", "windows", "drive"})
      std::filesystem::create_directory(folder_ / name);
    ::setenv("VELTGENERAL_REGISTRY_DIR", (folder_ / "registry").c_str(), 1);
    ::setenv("VELTGENERAL_HOME", (folder_ / "home").c_str(), 1);
    ::setenv("VELTGENERAL_WINDOWS_DIR", (folder_ / "windows").c_str(), 1);
    ::setenv("VELTGENERAL_DRIVE_C", (folder_ / "drive").c_str(), 1);
  }
  ~TestHost() {
    for (const char* name : {"VELTGENERAL_REGISTRY_DIR", "VELTGENERAL_HOME",
                             "VELTGENERAL_WINDOWS_DIR", "VELTGENERAL_DRIVE_C"})
      ::unsetenv(name);
  }
  TestHost(const TestHost&) = delete;
  TestHost& operator=(const TestHost&) = delete;

  std::string operator/(const std::string& name) const { return folder_ / name; }
  // The machine's hive, whole: what stands below a version line and one key.
  void setMachineKey(const std::string& key, const std::string& values) const {
    setContent(folder_ / "registry/machine.reg",
               "REGEDIT4\n[HKEY_LOCAL_MACHINE\\" + key + "]\n" + values + "\n");
  }

 private:
  TemporaryFolder folder_;
};

// The first 256 characters, as ISO 8859-1 has them.
inline const platform::NarrowPage& latin1() {
  static const platform::NarrowPage kPage = [] {
    platform::NarrowPage page{};
    for (std::size_t i = 0; i < 256; ++i) page.characters[i] = static_cast<char16_t>(i);
    page.byte = [](char16_t c) { return static_cast<std::uint8_t>(c < 256 ? c : '?'); };
    return page;
  }();
  return kPage;
}

// A process of its own that runs `body`, which must not test anything; 0 when it went well.
inline pid_t inProcess(const std::function<bool()>& body) {
  const pid_t child = ::fork();
  if (child == 0) test::leave(body() ? 0 : 1);
  return child;
}

inline bool succeeded(pid_t child) {
  int status = 0;
  return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace veltgeneral::testing
