// Published names are ASCII and matched without regard to case.
#pragma once

#include <cstddef>
#include <string_view>

#include "veltgeneral/text.h"

namespace veltgeneral {

constexpr char16_t foldAscii(char16_t c) noexcept {
  return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c | 0x20) : c;
}

constexpr char16_t codeUnit(char16_t c) noexcept { return c; }
constexpr char16_t codeUnit(char c) noexcept { return static_cast<unsigned char>(c); }

// `given` is a TextView or UTF-8.
template <class Given>
constexpr bool sameName(const Given& given, std::string_view name) noexcept {
  if (given.size() != name.size()) return false;
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (foldAscii(codeUnit(given[i])) != foldAscii(codeUnit(name[i]))) return false;
  }
  return true;
}

}  // namespace veltgeneral
