#include <gtest/gtest.h>

#include "automation/code_page.h"
#include "support/results.h"
#include "support/test_host.h"
#include "veltgeneral/funzioni.h"

namespace veltgeneral {
namespace {

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
    (f.*member)(text, text);
    ASSERT_EQ(text == expected, fits) << code;
    ASSERT_EQ(test::fields(result),
              test::ofModule(fits ? 0 : 5, fits ? "" : "Invalid procedure call or argument", name));
  };
  for (int code = 0; code < 256; ++code) {
    for (const std::size_t place : {0, 63, 64, 1023, 1024, 9999}) {
      check("simpleEncrypt", &Funzioni::simpleEncrypt, code, 10, place);
      check("simpleDecrypt", &Funzioni::simpleDecrypt, code, -10, place);
    }
  }
  EXPECT_EQ(host.logged(), 2 * 120);  // ten codes of each member, in six places
  // A character that the page does not have counts as "?".
  Text text = u"Ω中";
  f.simpleEncrypt(text, text);
  EXPECT_EQ(text, u"II");
}

}  // namespace
}  // namespace veltgeneral
