#include <gtest/gtest.h>

#include <algorithm>

#include "automation/code_page.h"
#include "settings/support.h"
#include "support/results.h"
#include "veltgeneral/funzioni.h"

namespace veltgeneral {
namespace {

TEST(Cipher, TakesTheOutputForInputAndAnyText) {
  const Funzioni f;
  static constexpr TextView kTexts[][3] = {
      {u"abc09 ", u"klm:C*", u"abc09 "}, {u"", u"", u""}, {u"Ω中", u"II", u"??"}};
  for (const auto& [plain, cipher, back] : kTexts) {
    Text text(plain);
    EXPECT_TRUE(f.simpleEncrypt(text, text).isSuccess());
    EXPECT_EQ(text, cipher);
    EXPECT_TRUE(f.simpleDecrypt(text, text).isSuccess());
    EXPECT_EQ(text, back);
  }
}

TEST(Cipher, EveryCodeInAnyPlaceIsShiftedOrRefused) {
  const test::TestHost host;
  const Funzioni f;
  std::size_t refused = 0;
  for (int code = 0; code < 256; ++code) {
    for (const std::size_t place : {0, 63, 64, 1023, 1024, 9999}) {
      Text text(10000, u'm');
      text[place] = systemCodePage().character(static_cast<std::uint8_t>(code));
      const auto check = [&](const char* name, auto member, int by) {
        const bool fits = code + by >= 0 && code + by <= 255;
        const char* const problem = fits ? "" : "Invalid procedure call or argument";
        Text out = u"before";
        ASSERT_EQ(test::fields((f.*member)(text, out)), test::ofModule(fits ? 0 : 5, problem, name))
            << code;
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
