// Published names are ASCII and matched without regard to case.
#pragma once

#include <cstddef>
#include <string_view>

#include "veltgeneral/text.h"

namespace veltgeneral {

constexpr char16_t foldAscii(char16_t c) noexcept {
  return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c | 0x20) : c;
}

constexpr bool sameName(TextView text, std::string_view name) noexcept {
  if (text.size() != name.size()) return false;
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (foldAscii(text[i]) != foldAscii(static_cast<unsigned char>(name[i]))) return false;
  }
  return true;
}

}  // namespace veltgeneral
