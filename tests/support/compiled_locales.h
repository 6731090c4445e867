// Locales of the C library for the length of a test, compiled by localedef from the sources that
// the package `locales` brings, whatever the machine itself has installed.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <initializer_list>
#include <stdexcept>
#include <string>

#include "support/temporary_folder.h"

namespace veltgeneral {

class CompiledLocales {
 public:
  // `names` as "fr_FR"; they are compiled for UTF-8. Throws std::runtime_error where that fails.
  explicit CompiledLocales(std::initializer_list<const char*> names) {
    // Together, since each takes a second.
    std::string command;
    for (const std::string name : names) {
      command.append("localedef -c -i ").append(name).append(" -f UTF-8 '");
      command.append(compiled(name)).append("' >/dev/null 2>&1 & ");
    }
    const int status = std::system(command.append("wait").c_str());
    for (const std::string name : names) {
      // Warnings change localedef's exit status; what counts is whether there is a locale.
      if (status != 0 || !std::filesystem::exists(compiled(name) + "/LC_TIME"))
        throw std::runtime_error("localedef could not compile " + name);
    }
    ::setenv("LOCPATH", folder_.path().c_str(), 1);
  }

  ~CompiledLocales() { ::unsetenv("LOCPATH"); }
  CompiledLocales(const CompiledLocales&) = delete;
  CompiledLocales& operator=(const CompiledLocales&) = delete;

 private:
  std::string compiled(const std::string& name) const { return folder_ / (name + ".UTF-8"); }

  test::TemporaryFolder folder_;
};

}  // namespace veltgeneral
