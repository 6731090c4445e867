// Locales of the C library for the length of a test, compiled by localedef from the sources that
// the package `locales` brings, whatever the machine itself has installed.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <initializer_list>
#include <optional>
#include <stdexcept>
#include <string>

namespace veltgeneral {

class CompiledLocales {
 public:
  // `names` as "fr_FR"; they are compiled for UTF-8. Throws std::runtime_error where that fails.
  explicit CompiledLocales(std::initializer_list<const char*> names) {
    std::string pattern = (std::filesystem::temp_directory_path() / "locales-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
    folder_ = pattern;
    // Together, since each takes a second.
    std::string command;
    for (const std::string name : names) {
      command.append("localedef -c -i ").append(name).append(" -f UTF-8 '");
      command.append(compiled(name).string()).append("' >/dev/null 2>&1 & ");
    }
    const int status = std::system(command.append("wait").c_str());
    for (const std::string name : names) {
      // Warnings change localedef's exit status; what counts is whether there is a locale.
      if (status == 0 && std::filesystem::exists(compiled(name) / "LC_TIME")) continue;
      std::filesystem::remove_all(folder_);
      throw std::runtime_error("localedef could not compile " + name);
    }
    if (const char* before = std::getenv("LOCPATH")) before_ = before;
    ::setenv("LOCPATH", folder_.c_str(), 1);
  }

  ~CompiledLocales() {
    if (before_) {
      ::setenv("LOCPATH", before_->c_str(), 1);
    } else {
      ::unsetenv("LOCPATH");
    }
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  CompiledLocales(const CompiledLocales&) = delete;
  CompiledLocales& operator=(const CompiledLocales&) = delete;

 private:
  std::filesystem::path compiled(const std::string& name) const {
    return folder_ / (name + ".UTF-8");
  }

  std::filesystem::path folder_;
  std::optional<std::string> before_;
};

}  // namespace veltgeneral
