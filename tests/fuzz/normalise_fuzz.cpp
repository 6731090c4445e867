// What comes out of a normaliser holds nothing that its table forbids, ends in no blank, and is the
// same for a text normalised in its own variable. What the cipher takes comes back.
#include "automation/code_page.h"
#include "fuzz/fuzz_input.h"
#include "veltgeneral/funzioni.h"

namespace veltgeneral {
namespace {

struct Member {
  ErrInfo (Funzioni::*call)(TextView, Text&) const;
  TextView forbidden;
  bool settles;  // a second pass changes nothing
  bool doubles;  // apostrophes come in pairs
};

constexpr Member kMembers[] = {
    {&Funzioni::normStringForDb, u"`\r\n", false, true},
    {&Funzioni::normStringNoCRLF, u"\r\n", true, false},
    {&Funzioni::normStringOnlyAscii, TextView(u"\0\x01\x07\x0B\x0C\x0E\x1F\x7F€“\x81", 11), true,
     false},
    {&Funzioni::normStringOnlyApice, u"", false, true},
    {&Funzioni::normStringForXML, u"<>'èéàùòì", false, false},
};

void check(const Member& member, const Text& text) {
  const Funzioni f;
  Text out = u"before";
  const bool fits = text.size() <= 32767;
  require((f.*member.call)(text, out).isSuccess() == fits, "all texts but too long ones");
  if (!fits) return require(out == u"before", "left alone");
  require(out == u" " || (!out.empty() && out.back() != u' '), "no blank at the end");
  require(out.find_first_of(member.forbidden) == Text::npos, "nothing forbidden");
  Text same = text;
  (f.*member.call)(same, same);
  require(same == out, "in its own variable");
  (f.*member.call)(out, same);
  require(!member.settles || same == out, "a second pass changes nothing");
  for (std::size_t i = 0; member.doubles && (i = out.find(u'\'', i)) != Text::npos; i += 2)
    require(out.compare(i, 2, u"''") == 0, "apostrophes in pairs");
}

void checkEntities(const Text& text) {
  Text out;
  Funzioni().normStringForXML(text, out);
  for (std::size_t i = 0; (i = out.find(u'&', i)) != Text::npos; ++i) {
    const TextView rest = TextView(out).substr(i);
    require(rest.starts_with(u"&amp;") || rest.starts_with(u"&lt;") || rest.starts_with(u"&gt;"),
            "every & begins an entity");
  }
}

void checkCipher(const Text& text) {
  const Funzioni f;
  Text hidden = u"before";
  if (!f.simpleEncrypt(text, hidden).isSuccess()) return require(hidden == u"before", "left alone");
  require(f.simpleDecrypt(hidden, hidden).isSuccess(), "can be read");
  require(hidden == fromBytes(toBytes(text)), "comes back");
}

}  // namespace
}  // namespace veltgeneral

void veltgeneral::fuzz(std::string_view bytes) {
  inALocale(bytes, [](const Text& text) {
    for (const Member& member : kMembers) check(member, text);
    checkEntities(text);
    checkCipher(text);
  });
}
