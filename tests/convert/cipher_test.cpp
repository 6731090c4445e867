#include <gtest/gtest.h>

#include <algorithm>

#include "automation/code_page.h"
#include "settings/support.h"
#include "support/results.h"
#include "veltgeneral/funzioni.h"

namespace veltgeneral {
namespace {

struct Case {
  TextView plain, cipher;
};

// 130 and 136 are codes beyond ASCII, 128 the first, 245 the last that can be shifted.
constexpr Case kCases[] = {
    {u"abc", u"klm"}, {u"09 ", u":C*"}, {u"", u""},   {u"à", u"ê"},
    {u"x~", u"‚ˆ"},   {u"€", u"Š"},     {u"õ", u"ÿ"}, {TextView(u"\0", 1), u"\n"}};

TEST(Cipher, ShiftsCodesOfTheCodePage) {
  const Funzioni f;
  for (const Case& c : kCases) {
    Text out = u"before";
    EXPECT_TRUE(f.simpleEncrypt(c.plain, out).isSuccess());
    EXPECT_EQ(out, c.cipher);
    EXPECT_TRUE(f.simpleDecrypt(out, out).isSuccess());
    EXPECT_EQ(out, c.plain);
  }
  Text outside;
  f.simpleEncrypt(u"Ω中", outside);
  EXPECT_EQ(outside, u"II");  // "?"
}

TEST(Cipher, EveryCodeInAnyPlaceIsShiftedOrRefused) {
  const test::TestHost host;
  const Funzioni f;
  std::size_t refused = 0;
  for (int code = 0; code < 256; ++code) {
    for (const std::size_t place : {0, 63, 64, 8191, 8192, 9999}) {
      Text text(10000, u'm');
      text[place] = systemCodePage().character(static_cast<std::uint8_t>(code));
      const auto check = [&](const char* name, auto member, int by) {
        const bool fits = code + by >= 0 && code + by <= 255;
        const ErrInfo expected(fits ? 0 : 5, fits ? u"" : u"Invalid procedure call or argument",
                               fits ? eiINFORMATIONTYPE : eiERRORTYPE, fromUtf8(name),
                               Text(u"VELTGENERAL"));
        Text out = u"before";
        ASSERT_EQ(test::fields((f.*member)(text, out)), test::fields(expected)) << code;
        refused += fits ? 0 : 1;
        Text shifted = u"before";
        if (fits) {
          shifted.assign(text.size(), static_cast<char16_t>(u'm' + by));
          shifted[place] = systemCodePage().character(static_cast<std::uint8_t>(code + by));
        }
        ASSERT_EQ(out, shifted) << code;
      };
      check("simpleEncrypt", &Funzioni::simpleEncrypt, 10);
      check("simpleDecrypt", &Funzioni::simpleDecrypt, -10);
    }
  }
  const std::string log = test::contentOf(host / "home/tarnview.log");
  EXPECT_EQ(static_cast<std::size_t>(std::ranges::count(log, '\n')), refused);
}

}  // namespace
}  // namespace veltgeneral
