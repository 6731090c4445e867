#include "files/name_pattern.h"

#include "automation/case_fold.h"

namespace veltgeneral {
namespace {

bool endsOptionally(TextView pattern, std::size_t point) {
  if (pattern[point] != u'.') return false;
  return point + 1 == pattern.size() || pattern[point + 1] == u'*' || pattern[point + 1] == u'?';
}

}  // namespace

bool matchesPattern(TextView name, TextView pattern) {
  std::size_t n = 0;
  std::size_t p = 0;
  // Where to go on when a later piece fails: behind the last star, one character further.
  std::size_t star = TextView::npos;
  std::size_t starName = 0;
  while (true) {
    const bool nameLeft = n < name.size();
    if (p < pattern.size()) {
      const char16_t c = pattern[p];
      if (c == u'*') {
        star = p++;
        starName = n;
        continue;
      }
      if (c == u'?' ? nameLeft && name[n] != u'.' : nameLeft && toUpper(name[n]) == toUpper(c)) {
        ++n;
        ++p;
        continue;
      }
      if (c == u'?' || (!nameLeft && endsOptionally(pattern, p))) {
        ++p;
        continue;
      }
    } else if (!nameLeft) {
      return true;
    }
    if (star == TextView::npos || starName == name.size()) return false;
    p = star + 1;
    n = ++starName;
  }
}

}  // namespace veltgeneral
