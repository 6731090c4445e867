#include "files/name_pattern.h"

#include "automation/case_fold.h"

namespace veltgeneral {
namespace {

// Whether the point at `at` may stand for the end of the name. Behind a star it may only where the
// star's run, `run`, holds no point: the star stops at the last one.
bool mayEnd(TextView pattern, std::size_t at, TextView run) {
  if (pattern[at] != u'.') return false;
  if (at > 0 && pattern[at - 1] == u'*' && run.find(u'.') != TextView::npos) return false;
  return at + 1 == pattern.size() || pattern[at + 1] == u'*' || pattern[at + 1] == u'?';
}

}  // namespace

bool matchesPattern(TextView name, TextView pattern) {
  std::size_t n = 0;
  std::size_t p = 0;
  // Where to go on when a later piece fails: behind the last star, one character further.
  std::size_t star = TextView::npos;
  std::size_t starName = 0;
  std::size_t runBegin = 0;
  while (true) {
    const bool nameLeft = n < name.size();
    if (p < pattern.size()) {
      const char16_t c = pattern[p];
      if (c == u'*') {
        star = p++;
        starName = runBegin = n;
        continue;
      }
      if (c == u'?' ? nameLeft && name[n] != u'.' : nameLeft && toUpper(name[n]) == toUpper(c)) {
        ++n;
        ++p;
        continue;
      }
      if (c == u'?' || (!nameLeft && mayEnd(pattern, p, name.substr(runBegin)))) {
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
