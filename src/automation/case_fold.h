// Letters without regard to case, one UTF-16 unit at a time, whatever the locale: the platform's
// rule for comparing names and keys.
#pragma once

#include <algorithm>
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

inline bool isLetter(char16_t unit) {
  return unit < 0x80 ? toUpper(unit) >= u'A' && toUpper(unit) <= u'Z' : unit >= 0x00C0;
}

// 0 to 25 for a to z in either case, kNoLetterSlot for every other character.
inline constexpr unsigned kNoLetterSlot = 31;
constexpr unsigned letterSlot(char16_t unit) {
  const unsigned letter = (unit | 0x20u) - unsigned{u'a'};
  return letter < 26 && unit < 0x80 ? letter : kNoLetterSlot;
}

inline bool equalsName(TextView text, TextView name) {
  return std::ranges::equal(text, name, {}, toUpper, toUpper);
}

// Never with an empty name.
inline bool beginsWithName(TextView text, TextView name) {
  return !name.empty() && equalsName(text.substr(0, name.size()), name);
}

}  // namespace veltgeneral
