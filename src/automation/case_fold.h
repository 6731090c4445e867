// Upper case of UTF-16 units one by one, whatever the locale: the platform's rule for comparing
// names and keys.
#pragma once

#include <array>

#include "veltgeneral/text.h"

namespace veltgeneral {

// The simple upper-case mapping of each unit (Unicode); a unit without one, a surrogate, and the
// dotless i and long s, whose capitals belong to other letters, are themselves.
const std::array<char16_t, 65536>& upperCaseTable();

inline char16_t toUpper(char16_t unit) {
  if (unit < 0x80) {
    return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - 0x20) : unit;
  }
  return upperCaseTable()[unit];
}

}  // namespace veltgeneral
