// A fixed shift of code page bytes. It hides a text from a glance, and from nothing else.

#include "automation/code_page.h"
#include "convert/report.h"
#include "platform/unit_scan.h"
#include "veltgeneral/funzioni.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

constexpr int kShift = 10;
constexpr std::size_t kBlock = 64;
constexpr std::size_t kPiece = 8192;
constexpr char16_t kAsciiEnd = 0x80;

bool holdsAscii(const CodePage& page) {
  for (char16_t c = 0; c < kAsciiEnd; ++c) {
    if (page.byte(c) != c || page.character(static_cast<std::uint8_t>(c)) != c) return false;
  }
  return true;
}

template <int By>
void shiftCodes(const CodePage& page, TextView text, char16_t* out) {
  for (const char16_t c : text) {
    const auto code = static_cast<std::int16_t>(page.byte(c) + By);
    if (code < 0 || code > 255) throw RuntimeError(RunTime::invalidCall);
    *out++ = page.character(static_cast<std::uint8_t>(code));
  }
}

// From `text` to `out`, which may be the same place.
template <int By>
void shiftAll(const CodePage& page, TextView text, char16_t* out) {
  static const bool kAscii = holdsAscii(page);
  while (!text.empty()) {
    // Characters that are their own codes, before and after.
    const std::size_t plain =
        kAscii ? platform::shiftUnits(text, out, By < 0 ? -By : 0, kAsciiEnd - kShift,
                                      static_cast<char16_t>(By))
               : 0;
    const TextView rest = text.substr(plain, kBlock);
    shiftCodes<By>(page, rest, out + plain);
    text.remove_prefix(plain + rest.size());
    out += plain + rest.size();
  }
}

template <int By>
ErrInfo shifted(const char16_t* member, TextView text, Text& out) {
  static const ErrInfo kDone = doneAt(member);
  return reportedAt(kDone.locationInfo(), [&] {
    const CodePage& page = systemCodePage();
    Text built;
    built.reserve(text.size());
    // Piece by piece, so that what was copied is still near when it is shifted.
    for (std::size_t at = 0; at < text.size(); at += kPiece) {
      const TextView piece = text.substr(at, kPiece);
      built.append(piece);
      shiftAll<By>(page, piece, &built[at]);
    }
    out = std::move(built);
    return kDone;
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
