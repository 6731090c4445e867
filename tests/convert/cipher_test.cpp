#include <gtest/gtest.h>

#include "automation/code_page.h"
#include "settings/support.h"
#include "support/results.h"
#include "veltgeneral/funzioni.h"

namespace veltgeneral {
namespace {

TEST(Cipher, TakesTheOutputForInputAndAnyText) {
  static constexpr TextView kTexts[][3] = {
      {u"abc09 ", u"klm:C*", u"abc09 "}, {u"", u"", u""}, {u"Ω中", u"II", u"??"}};
  const Funzioni f;
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
  const CodePage& page = systemCodePage();
  const auto check = [&](const char* name, auto member, int code, int by, std::size_t place) {
    const bool fits = code + by >= 0 && code + by <= 255;
    Text text(10000, u'm');
    text[place] = page.character(static_cast<std::uint8_t>(code));
    Text expected = u"before";
    if (fits) {
      expected.assign(text.size(), static_cast<char16_t>(u'm' + by));
      expected[place] = page.character(static_cast<std::uint8_t>(code + by));
    }
    Text out = u"before";
    const ErrInfo result = (f.*member)(text, out);
    ASSERT_EQ(out, expected) << code;
    ASSERT_EQ(test::fields(result),
              test::ofModule(fits ? 0 : 5, fits ? "" : "Invalid procedure call or argument", name));
  };
  for (int code = 0; code < 256; ++code) {
    for (const std::size_t place : {0, 63, 64, 1023, 1024, 9999}) {
      check("simpleEncrypt", &Funzioni::simpleEncrypt, code, 10, place);
      check("simpleDecrypt", &Funzioni::simpleDecrypt, code, -10, place);
    }
  }
  EXPECT_EQ(host.logged(), 120);  // ten codes of each member, in six places
}

}  // namespace
}  // namespace veltgeneral
