// A fixed shift of code page bytes. It hides a text from a glance, and from nothing else.
#include <algorithm>

#include "automation/code_page.h"
#include "convert/report.h"
#include "platform/unit_scan.h"
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

template <int By>
void shiftCodes(const CodePage& page, char16_t* text, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    const auto code = static_cast<std::int16_t>(page.byte(text[i]) + By);
    if (code < 0 || code > 255) throw RuntimeError(RunTime::invalidCall);
    text[i] = page.character(static_cast<std::uint8_t>(code));
  }
}

template <int By>
ErrInfo shifted(const ErrInfo& done, TextView text, Text& out) {
  return reportedAt(done.locationInfo(), [&] {
    const CodePage& page = systemCodePage();
    static const bool kAscii = holdsAscii(page);
    Text built(text);
    for (std::size_t at = 0; at < built.size();) {
      // Characters that are their own codes, before and after.
      if (kAscii) {
        at += platform::shiftUnits(&built[at], built.size() - at, By < 0 ? -By : 0,
                                   kAsciiEnd - kShift, static_cast<char16_t>(By));
      }
      const std::size_t count = std::min(kBlock, built.size() - at);
      shiftCodes<By>(page, &built[at], count);
      at += count;
    }
    out = std::move(built);
    return done;
  });
}

}  // namespace

ErrInfo Funzioni::simpleEncrypt(TextView sToEncrypt, Text& sEncrypted) const {
  static const ErrInfo kDone = doneAt(u"simpleEncrypt");
  return shifted<kShift>(kDone, sToEncrypt, sEncrypted);
}

ErrInfo Funzioni::simpleDecrypt(TextView sToDecrypt, Text& sDecrypted) const {
  static const ErrInfo kDone = doneAt(u"simpleDecrypt");
  return shifted<-kShift>(kDone, sToDecrypt, sDecrypted);
}

}  // namespace veltgeneral
