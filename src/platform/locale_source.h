// What the host's C library knows about a locale, asked without changing the process's own.
#pragma once

#include <array>
#include <optional>
#include <string>

namespace veltgeneral::platform {

// Texts are bytes in `codeset`, as nl_langinfo (POSIX.1-2017) gives them.
struct LocaleSource {
  std::string codeset;
  std::string decimal;
  std::string thousands;
  std::string currency;    // the sign alone
  std::string dateFormat;  // strftime conversions, "%d/%m/%Y"
  std::string timeFormat;  // likewise, "%H:%M:%S"
  std::string am;
  std::string pm;
  std::array<std::string, 12> months;
  std::array<std::string, 12> shortMonths;
  std::array<std::string, 7> days;       // Sunday first
  std::array<std::string, 7> shortDays;  // Sunday first
};

// Nothing where the host has no locale of this name ("fr_FR.UTF-8").
std::optional<LocaleSource> readLocale(const std::string& name);

}  // namespace veltgeneral::platform
