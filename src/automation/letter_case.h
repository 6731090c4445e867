// Letters without regard to case, as far as month names need it.
#pragma once

#include "veltgeneral/text.h"

namespace veltgeneral {

// The small letter of `c` in the Latin, Greek and Cyrillic blocks of Unicode that pair the cases by
// a fixed distance; every other character itself.
constexpr char16_t smallLetter(char16_t c) {
  const auto within = [c](char16_t first, char16_t last) { return c >= first && c <= last; };
  const auto plus = [c](int distance) { return static_cast<char16_t>(c + distance); };
  if (c < 0x80) return within(u'A', u'Z') ? plus(0x20) : c;
  if (within(0x00C0, 0x00DE)) return c == 0x00D7 ? c : plus(0x20);
  if (within(0x0100, 0x0137) || within(0x014A, 0x0177)) return static_cast<char16_t>(c | 1);
  if (within(0x0139, 0x0148) || within(0x0179, 0x017E)) return c % 2 == 1 ? plus(1) : c;
  if (within(0x0391, 0x03A9) || within(0x0410, 0x042F)) return plus(0x20);
  return within(0x0400, 0x040F) ? plus(0x50) : c;
}

constexpr bool isLetter(char16_t c) {
  return c < 0x80 ? smallLetter(c) >= u'a' && smallLetter(c) <= u'z' : c >= 0x00C0;
}

// 0 to 25 for a to z in either case, kNoLetterSlot for every other character.
constexpr unsigned kNoLetterSlot = 31;
constexpr unsigned letterSlot(char16_t c) {
  const unsigned letter = (c | 0x20u) - unsigned{u'a'};
  return letter < 26 && c < 0x80 ? letter : kNoLetterSlot;
}

// Whether `text` begins with `name`.
constexpr bool beginsWithName(TextView text, TextView name) {
  if (name.empty() || name.size() > text.size()) return false;
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (smallLetter(text[i]) != smallLetter(name[i])) return false;
  }
  return true;
}

}  // namespace veltgeneral
