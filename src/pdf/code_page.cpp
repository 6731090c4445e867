#include "pdf/code_page.h"

#include <iconv.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <type_traits>

#include "drawing/error.h"
#include "drawing/handles.h"

namespace veltgeneral::pdf {
namespace {

using Converter = drawing::Handle<std::remove_pointer_t<iconv_t>, iconv_close>;

Converter open(const std::string& name) {
  iconv_t opened = iconv_open("UTF-16LE", name.c_str());
  // iconv's refusal is a pointer of all ones.
  if (reinterpret_cast<std::intptr_t>(opened) == -1) throw drawing::Error("is not known here");
  return Converter(opened);
}

char16_t characterOf(iconv_t converter, unsigned char byte) {
  char in = static_cast<char>(byte);
  char out[4] = {};
  char* inAt = &in;
  char* outAt = out;
  std::size_t inLeft = 1;
  std::size_t outLeft = sizeof out;
  iconv(converter, nullptr, nullptr, nullptr, nullptr);
  if (iconv(converter, &inAt, &inLeft, &outAt, &outLeft) == static_cast<std::size_t>(-1)) {
    if (errno == EINVAL) throw drawing::Error("has characters of more than one byte");
    return byte;
  }
  if (outLeft != 2) return byte;
  return static_cast<char16_t>(static_cast<unsigned char>(out[0]) |
                               static_cast<unsigned char>(out[1]) << 8);
}

}  // namespace

CodePage::CodePage(const std::string& name) {
  const Converter converter = open(name);
  for (unsigned byte = 0; byte < characters_.size(); ++byte) {
    characters_[byte] = characterOf(converter.get(), static_cast<unsigned char>(byte));
    if (byte < 0x80 && characters_[byte] != byte) throw drawing::Error("does not extend ASCII");
  }
}

CodePage CodePage::ofEnvironment() {
  const char* set = ::secure_getenv("VELTGENERAL_CODEPAGE");
  const std::string name = set != nullptr && *set != '\0' ? set : "CP1252";
  try {
    return CodePage(name);
  } catch (const drawing::Error& error) {
    throw drawing::Error("the code page " + name + " " + error.what());
  }
}

std::u16string CodePage::decode(std::string_view bytes) const {
  std::u16string text(bytes.size(), u'\0');
  std::transform(bytes.begin(), bytes.end(), text.begin(), [&](char b) { return decode(b); });
  return text;
}

std::string CodePage::encode(std::string_view utf8) const {
  std::string bytes;
  for (std::size_t i = 0; i < utf8.size();) {
    const auto lead = static_cast<unsigned char>(utf8[i]);
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    char32_t c = length == 1 ? lead : lead & (0x7Fu >> length);
    for (std::size_t k = 1; k < length && i + k < utf8.size(); ++k)
      c = c << 6 | (static_cast<unsigned char>(utf8[i + k]) & 0x3Fu);
    const auto found = std::find(characters_.begin(), characters_.end(), c);
    bytes.push_back(found == characters_.end() ? '?'
                                               : static_cast<char>(found - characters_.begin()));
    i += length;
  }
  return bytes;
}

}  // namespace veltgeneral::pdf
