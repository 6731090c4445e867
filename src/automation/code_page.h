// The system's single-byte code page (VELTGENERAL_CODEPAGE, CP1252 unless said otherwise).
//
// Every byte has a character: one that the page leaves out is the control code of the same number,
// so bytes survive a round trip. A character outside the page becomes "?": no look-alike
// substitution, which is how a harmless character turns into a quote.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "veltgeneral/text.h"

namespace veltgeneral {

class CodePage {
 public:
  // Throws RuntimeError 5 for a name that is no single-byte page that the C library's iconv knows.
  explicit CodePage(std::string_view name);

  char16_t character(std::uint8_t byte) const noexcept { return characters_[byte]; }
  // 63 ("?") for a character outside the page.
  std::uint8_t byte(char16_t character) const noexcept { return bytes_[character]; }

  // Each writes as many elements as it is given; `out` has at least that many.
  void widen(std::span<const std::uint8_t> bytes, char16_t* out) const noexcept;
  void narrow(TextView text, std::uint8_t* out) const noexcept;

 private:
  std::array<char16_t, 256> characters_;
  std::array<std::uint8_t, 65536> bytes_;
  bool holdsAscii_ = true;  // bytes 0 to 127 are the characters of the same number
};

// The page in force for the process; lives for good. Throws RuntimeError 5 as the constructor does.
const CodePage& systemCodePage();

std::string toBytes(TextView text, const CodePage& page = systemCodePage());
Text fromBytes(std::string_view bytes, const CodePage& page = systemCodePage());

}  // namespace veltgeneral
