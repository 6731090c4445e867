#include "veltgeneral/err_info.h"

#include <gtest/gtest.h>

#include "support/error_of.h"
#include "support/results.h"

namespace veltgeneral {
namespace {

using test::fields;

ErrInfo full() {
  return ErrInfo(5, u"text", eiWARNINGTYPE, u"op", Text(u"C"), Text(u"P"), Text(u"s"));
}

TEST(ErrInfo, SaysWhatItHoldsInOrder) {
  struct Case {
    ErrInfo result;
    TextView text;
    bool success;
  };
  ErrInfo clearedOne = full();
  clearedOne.clear();
  const Case cases[] = {
      {ErrInfo(), u"", true},
      {clearedOne, u"vntTypeInfo=\"4\" ", true},
      {full(),
       u"vntNumberInfo=\"5\" vntDescriptionInfo=\"text\" vntTypeInfo=\"2\" vntLocationInfo=\"op\" "
       u"vntProcessInfo=\"P\" vntClassInfo=\"C\" vntStepInfo=\"s\" ",
       false},
      // A failure code is negative, and its number is not written.
      {ErrInfo(eiABORTED, u"x", eiERRORTYPE, u"op"),
       u"vntDescriptionInfo=\"x\" vntTypeInfo=\"1\" vntLocationInfo=\"op\" ", false},
      {ErrInfo(0, u"  a b ", eiERRORTYPE, u"   ", Text(u"say \"c\"")),
       u"vntDescriptionInfo=\"a b\" vntTypeInfo=\"1\" vntClassInfo=\"say \"c\"\" ", true},
      // Only blanks are trimmed.
      {ErrInfo(0, u"\t", static_cast<typeInfoCostant>(-1), u""), u"vntDescriptionInfo=\"\t\" ",
       true},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(toUtf8(c.result.getAttrEqualValue()), toUtf8(c.text));
    EXPECT_EQ(c.result.isSuccess(), c.success);
  }
}

TEST(ErrInfo, FillForgetsWhatWasThere) {
  ErrInfo result = full();
  EXPECT_EQ(result.fill(7, u"d", eiDEBUGTYPE, u"l"), 0);
  EXPECT_EQ(fields(result), std::tuple(7, "d", 4, "l", "", "", ""));
  result.fill(1, u"", static_cast<typeInfoCostant>(0x10003), u"", 12, true);
  EXPECT_EQ(fields(result), std::tuple(1, "", 3, "", "12", "True", ""));
  // A value that is no text changes nothing.
  EXPECT_EQ(errorOf([&] { result.fill(9, u"", eiERRORTYPE, u"", TextArray()); }), 13);
  EXPECT_EQ(result.numberInfo(), 1);
}

TEST(ErrInfo, RecordsFillInPart) {
  struct Case {
    structError record;
    int error;
    std::tuple<int, const char*, int, const char*, const char*, const char*, const char*> after;
  };
  Case cases[] = {
      {{.vntNumberInfo = Text(u"12")}, 0, {12, "text", 2, "op", "C", "P", "s"}},
      {{.vntNumberInfo = 2.5, .vntTypeInfo = Text(u" 3 ")}, 0, {2, "text", 3, "op", "C", "P", "s"}},
      {{.vntDescriptionInfo = Text(u" d "), .vntLocationInfo = Null{}, .vntStepInfo = Text(u"  ")},
       0,
       {5, " d ", 2, "op", "C", "P", "s"}},
      {{.vntProcessInfo = 1, .vntClassInfo = true}, 0, {5, "text", 2, "op", "True", "1", "s"}},
      // The error comes where the field stands: what is before it has changed, the rest has not.
      {{.vntNumberInfo = 9, .vntTypeInfo = Text(u"x"), .vntLocationInfo = Text(u"l")},
       6,
       {9, "text", 2, "op", "C", "P", "s"}},
      {{.vntTypeInfo = 70000}, 6, {5, "text", 2, "op", "C", "P", "s"}},
  };
  for (Case& c : cases) {
    ErrInfo result = full();
    EXPECT_EQ(errorOf([&] { EXPECT_EQ(result.ErrInfoNew(c.record), 0); }), c.error);
    EXPECT_EQ(fields(result), c.after);
  }
}

TEST(ErrInfo, CopiesAreExactAndAnswerCleared) {
  ErrInfo original = full();
  ErrInfo copy;
  EXPECT_EQ(fields(original.clone(copy)), test::cleared());
  EXPECT_EQ(fields(copy), fields(original));
  original.clone(original);
  EXPECT_EQ(fields(copy), fields(original));
  // A copy changes alone, and may be filled with its own texts.
  structError record{.vntLocationInfo = Text(u"l")};
  copy.ErrInfoNew(record);
  EXPECT_EQ(fields(original), fields(full()));
  copy.fill(0, copy.locationInfo(), eiERRORTYPE, copy.descriptionInfo());
  EXPECT_EQ(fields(copy), std::tuple(0, "l", 1, "text", "", "", ""));
}

}  // namespace
}  // namespace veltgeneral
