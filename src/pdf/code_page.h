// The single-byte code page of command files, file names and messages.
//
// Bytes without a character stand for the control code of the same number, and back.
#pragma once

#include <array>
#include <string>
#include <string_view>

namespace veltgeneral::pdf {

class CodePage {
 public:
  // `name` as iconv knows it. Throws drawing::Error where it is unknown, not of single bytes, or
  // not an extension of ASCII, in which commands are written.
  explicit CodePage(const std::string& name);
  // The one in force: VELTGENERAL_CODEPAGE, or CP1252.
  static CodePage ofEnvironment();

  char16_t decode(char byte) const { return characters_[static_cast<unsigned char>(byte)]; }
  std::u16string decode(std::string_view bytes) const;
  // From UTF-8; what the page lacks becomes `?`.
  std::string encode(std::string_view utf8) const;

 private:
  std::array<char16_t, 256> characters_{};
};

}  // namespace veltgeneral::pdf
