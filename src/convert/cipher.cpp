// A fixed shift of code page bytes. It hides a text from a glance, and from nothing else.

#include "automation/code_page.h"
#include "convert/report.h"
#include "platform/unit_scan.h"
#include "veltgeneral/funzioni.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

constexpr int kShift = 10;
constexpr char16_t kAsciiEnd = 0x80;

bool holdsAscii(const CodePage& page) {
  for (char16_t c = 0; c < kAsciiEnd; ++c) {
    if (page.byte(c) != c || page.character(static_cast<std::uint8_t>(c)) != c) return false;
  }
  return true;
}

template <int By>
char16_t shiftedCode(const CodePage& page, char16_t c) {
  const auto code = static_cast<std::int16_t>(page.byte(c) + By);
  if (code < 0 || code > 255) throw RuntimeError(RunTime::invalidCall);
  return page.character(static_cast<std::uint8_t>(code));
}

// From a piece of at most platform::kScanUnits units to `out`, which lies apart.
template <int By>
void shiftPiece(const CodePage& page, TextView piece, char16_t* out) {
  static const bool kAscii = holdsAscii(page);
  if (!kAscii) {
    for (const char16_t c : piece) *out++ = shiftedCode<By>(page, c);
    return;
  }
  // Most characters are their own codes, before and after.
  constexpr char16_t kFirst = By < 0 ? -By : 0;
  platform::UnitPositions others;
  const std::size_t count =
      platform::shiftUnits(piece, out, static_cast<char16_t>(By), kFirst,
                           static_cast<char16_t>(kFirst + kAsciiEnd - kShift - 1), others);
  for (std::size_t i = 0; i < count; ++i) {
    out[others[i]] = shiftedCode<By>(page, piece[others[i]]);
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
    for (std::size_t at = 0; at < text.size(); at += platform::kScanUnits) {
      const TextView piece = text.substr(at, platform::kScanUnits);
      built.append(piece);
      shiftPiece<By>(page, piece, &built[at]);
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
