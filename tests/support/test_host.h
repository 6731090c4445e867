// A host of the test's own, and texts of settings files as tests write them.
#pragma once

#include <algorithm>

#include "platform/narrow_page.h"
#include "support/temporary_folder.h"

namespace veltgeneral::test {

// The library's own folders and its registry, in a folder of the test's.
class TestHost : public TemporaryFolder {
 public:
  TestHost() {
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

// "|" ends a line too.
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

}  // namespace veltgeneral::test
