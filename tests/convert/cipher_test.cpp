#include <gtest/gtest.h>

#include <algorithm>

#include "automation/code_page.h"
#include "settings/support.h"
#include "support/results.h"
#include "veltgeneral/funzioni.h"

namespace veltgeneral {
namespace {

auto success(TextView location) {
  return test::fields(ErrInfo(0, u"", eiINFORMATIONTYPE, location, Text(u"VELTGENERAL")));
}
auto refusal(TextView location) {
  return test::fields(ErrInfo(5, u"Invalid procedure call or argument", eiERRORTYPE, location,
                              Text(u"VELTGENERAL")));
}

struct Case {
  TextView plain;
  TextView cipher;
};

constexpr Case kCases[] = {
    {u"abc", u"klm"},
    {u"09 ", u":C*"},
    {u"", u""},
    {u"à", u"ê"},
    {u"x~", u"‚ˆ"},  // codes 130 and 136
    {u"€", u"Š"},    // 128, 138
    {TextView(u"\0", 1), u"\n"},
    {u"õ", u"ÿ"},  // the last that has a code
};

TEST(Cipher, ShiftsCodesOfTheCodePage) {
  const Funzioni f;
  for (const Case& c : kCases) {
    SCOPED_TRACE(toUtf8(c.plain));
    Text out = u"before";
    EXPECT_EQ(test::fields(f.simpleEncrypt(c.plain, out)), success(u"simpleEncrypt"));
    EXPECT_EQ(out, c.cipher);
    EXPECT_EQ(test::fields(f.simpleDecrypt(out, out)), success(u"simpleDecrypt"));
    EXPECT_EQ(out, c.plain);
  }
  Text outside;
  f.simpleEncrypt(u"Ω中", outside);
  EXPECT_EQ(outside, u"II");  // "?"
}

TEST(Cipher, EveryCodeInAnyPlaceComesBackOrIsRefused) {
  const testing::TestHost host;
  const Funzioni f;
  std::size_t refused = 0;
  for (unsigned code = 0; code < 256; ++code) {
    for (const std::size_t place : {0, 63, 64, 299}) {
      Text plain(300, u'm');
      plain[place] = systemCodePage().character(static_cast<std::uint8_t>(code));
      Text out = u"before";
      const ErrInfo result = f.simpleEncrypt(plain, out);
      ASSERT_EQ(test::fields(result),
                code > 245 ? refusal(u"simpleEncrypt") : success(u"simpleEncrypt"));
      if (code > 245) {
        EXPECT_EQ(out, u"before");
        ++refused;
      } else {
        EXPECT_EQ(systemCodePage().byte(out[place]), code + 10);
        f.simpleDecrypt(out, out);
        ASSERT_EQ(out, plain) << code;
      }
      Text back = u"before";
      const bool tooLow = code < 10;
      ASSERT_EQ(test::fields(f.simpleDecrypt(plain, back)),
                tooLow ? refusal(u"simpleDecrypt") : success(u"simpleDecrypt"));
      EXPECT_EQ(back == u"before", tooLow);
      refused += tooLow ? 1 : 0;
    }
  }
  const std::string log = testing::contentOf(host / "home/tarnview.log");
  EXPECT_EQ(static_cast<std::size_t>(std::ranges::count(log, '\n')), refused);
}

}  // namespace
}  // namespace veltgeneral
