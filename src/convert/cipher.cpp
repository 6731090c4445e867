// A fixed shift of code page bytes. It hides a text from a glance, and from nothing else.
#include <algorithm>
#include <array>

#include "automation/code_page.h"
#include "convert/report.h"
#include "veltgeneral/funzioni.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

constexpr int kShift = 10;
constexpr std::size_t kBlock = 64;
constexpr char16_t kAsciiEnd = 0x80;

bool holdsAscii(const CodePage& page) {
  for (char16_t c = 0; c < kAsciiEnd; ++c) {
    if (page.byte(c) != c || page.character(static_cast<std::uint8_t>(c)) != c) return false;
  }
  return true;
}

// Shifts characters that are their own codes, before and after; false, with nothing changed, where
// there are others. Both loops become vector instructions.
template <int By>
bool shiftAscii(char16_t* text, std::size_t count) noexcept {
  constexpr char16_t kFirst = By < 0 ? -By : 0;
  constexpr char16_t kCount = kAsciiEnd - kShift;
  char16_t others = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const bool other = static_cast<char16_t>(text[i] - kFirst) >= kCount;
    others = static_cast<char16_t>(others | static_cast<char16_t>(other));
  }
  if (others != 0) return false;
  for (std::size_t i = 0; i < count; ++i) text[i] = static_cast<char16_t>(text[i] + By);
  return true;
}

template <int By>
void shiftCodes(const CodePage& page, char16_t* text, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    const auto code = static_cast<std::int16_t>(page.byte(text[i]) + By);
    if (code < 0 || code > 255) throw RuntimeError(RunTime::invalidCall);
    text[i] = page.character(static_cast<std::uint8_t>(code));
  }
}

template <int By>
ErrInfo shifted(TextView location, TextView text, Text& out) {
  return reportedAt(location, [&] {
    const CodePage& page = systemCodePage();
    static const bool ascii = holdsAscii(page);
    Text built(text);
    for (std::size_t at = 0; at < built.size(); at += kBlock) {
      const std::size_t count = std::min(kBlock, built.size() - at);
      if (!ascii || !shiftAscii<By>(&built[at], count)) shiftCodes<By>(page, &built[at], count);
    }
    out = std::move(built);
    return doneAt(location);
  });
}

}  // namespace

ErrInfo Funzioni::simpleEncrypt(TextView sToEncrypt, Text& sEncrypted) const {
  return shifted<kShift>(u"simpleEncrypt", sToEncrypt, sEncrypted);
}

ErrInfo Funzioni::simpleDecrypt(TextView sToDecrypt, Text& sDecrypted) const {
  return shifted<-kShift>(u"simpleDecrypt", sToDecrypt, sDecrypted);
}

}  // namespace veltgeneral
