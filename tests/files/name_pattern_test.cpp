#include "files/name_pattern.h"

#include <gtest/gtest.h>

namespace veltgeneral {
namespace {

struct Case {
  TextView pattern;
  TextView name;
  bool matches;
};

constexpr Case kCases[] = {
    {u"*", u"a.txt", true},
    {u"*.txt", u"A.TXT", true},
    {u"*.txt", u"a.txt.old", false},
    {u"*.txt", u"b.txt.txt", true},
    {u"a*b*c", u"axxbxxbyc", true},
    {u"a*b*c", u"axxbxxby", false},
    {u"perché.*", u"PERCHÉ.doc", true},
    {u"", u"", true},
    {u"", u"a", false},
    // A point before a wildcard, or last, also matches the end of the name.
    {u"*.*", u"README", true},
    {u"README.*", u"readme", true},
    {u"*.", u"README", true},
    {u"*.", u"a.txt", false},
    {u"*.?", u"a.tx", false},
    {u"*.?", u"a.b.t", true},
    // A question mark may find nothing before a point or at the end.
    {u"a?.txt", u"ab.txt", true},
    {u"a?.txt", u"a.txt", true},
    {u"a?.txt", u"abc.txt", false},
    {u"???", u"ab", true},
    {u"???", u"abcd", false},
    {u"?b", u"b", false},
};

TEST(NamePattern, Matches) {
  for (const Case& c : kCases) {
    EXPECT_EQ(matchesPattern(c.name, c.pattern), c.matches)
        << toUtf8(c.pattern) << " on " << toUtf8(c.name);
  }
}

TEST(NamePattern, ManyStarsStayCheap) {
  Text pattern;
  for (int i = 0; i < 200; ++i) pattern += u"*a";
  EXPECT_FALSE(matchesPattern(Text(2000, u'a') + u"b", pattern));
}

}  // namespace
}  // namespace veltgeneral
