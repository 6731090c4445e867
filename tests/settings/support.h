// What the tests of the settings stores share: folders of the library's own, many processes.
#pragma once

#include <algorithm>
#include <functional>

#include "platform/narrow_page.h"
#include "support/process.h"
#include "support/temporary_folder.h"

namespace veltgeneral::test {

// Where tests work that write more than a disk takes in a moment.
inline std::filesystem::path memoryFolder() {
  const char* kShared = "/dev/shm";
  return ::access(kShared, W_OK) == 0 ? kShared : std::filesystem::temp_directory_path();
}

// The library's own folders and its registry, in a folder of the test's.
class TestHost : public TemporaryFolder {
 public:
  explicit TestHost(const std::filesystem::path& parent = std::filesystem::temp_directory_path())
      : TemporaryFolder(parent) {
    for (const auto& [variable, name] : kFolders) {
      std::filesystem::create_directory(*this / name);
      ::setenv(variable, (*this / name).c_str(), 1);
    }
  }
  ~TestHost() {
    for (const auto& [variable, name] : kFolders) ::unsetenv(variable);
  }

  // The machine's hive, whole: what stands below a version line and one key.
  void setMachineKey(const std::string& key, const std::string& values) const {
    put("registry/machine.reg", "REGEDIT4\n[HKEY_LOCAL_MACHINE\\" + key + "]\n" + values + "\n");
  }

  // Lines of the library's own log.
  std::ptrdiff_t logged() const { return std::ranges::count(get("home/tarnview.log"), '\n'); }

 private:
  static constexpr std::pair<const char*, const char*> kFolders[] = {
      {"VELTGENERAL_REGISTRY_DIR", "registry"},
      {"VELTGENERAL_HOME", "home"},
      {"VELTGENERAL_WINDOWS_DIR", "windows"},
      {"VELTGENERAL_DRIVE_C", "drive"}};
};

// Texts of settings files as tests write them: "|" ends a line too.
inline std::string withLineEnds(std::string_view text, std::string_view lineEnd = "\n") {
  std::string out;
  for (const char c : text) c == '|' || c == '\n' ? out.append(lineEnd) : out.append(1, c);
  return out;
}

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
  if (child == 0) leave(body() ? 0 : 1);
  return child;
}

inline bool succeeded(pid_t child) {
  int status = 0;
  return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

constexpr int kProcesses = 8;

// Whether `body` went well in each of so many processes at the same time; they have a number.
inline bool inProcesses(const std::function<bool(int)>& body) {
  std::vector<pid_t> children;
  for (int process = 0; process < kProcesses; ++process)
    children.push_back(inProcess([&] { return body(process); }));
  const auto failed = [](pid_t child) { return !succeeded(child); };
  return std::ranges::count_if(children, failed) == 0;
}

}  // namespace veltgeneral::test
