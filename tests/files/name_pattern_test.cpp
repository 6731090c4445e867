#include "files/name_pattern.h"

#include <gtest/gtest.h>

#include <vector>

namespace veltgeneral {
namespace {

TEST(NamePattern, Matches) {
  struct Case {
    Text pattern;
    std::vector<TextView> matching;
    std::vector<Text> others;
  };
  Text manyStars;
  for (int i = 0; i < 200; ++i) manyStars += u"*a";
  const Case cases[] = {
      {u"*", {u"a.txt"}, {}},
      {u"*.txt", {u"A.TXT", u"b.txt.txt"}, {u"a.txt.old"}},
      {u"a*b*c", {u"axxbxxbyc"}, {u"axxbxxby"}},
      {u"perché.*", {u"PERCHÉ.doc"}, {}},
      {u"", {u""}, {u"a"}},
      // A point before a wildcard, or last, also matches the end of the name.
      {u"*.*", {u"README"}, {}},
      {u"README.*", {u"readme"}, {}},
      {u"*.", {u"README"}, {u"a.txt"}},
      {u"*.?", {u"a.b.t"}, {u"a.tx"}},
      // A question mark may find nothing before a point or at the end.
      {u"a?.txt", {u"ab.txt", u"a.txt"}, {u"abc.txt"}},
      {u"???", {u"ab"}, {u"abcd"}},
      {u"?b", {}, {u"b"}},
      {manyStars, {}, {Text(2000, u'a') + u'b'}},  // and stays cheap
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(toUtf8(c.pattern));
    for (const TextView name : c.matching) EXPECT_TRUE(matchesPattern(name, c.pattern));
    for (const TextView name : c.others) EXPECT_FALSE(matchesPattern(name, c.pattern));
  }
}

}  // namespace
}  // namespace veltgeneral
