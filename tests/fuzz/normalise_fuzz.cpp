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
};

constexpr Member kMembers[] = {
    {&Funzioni::normStringForDb, u"`\r\n", false},
    {&Funzioni::normStringNoCRLF, u"\r\n", true},
    {&Funzioni::normStringOnlyAscii, TextView(u"\0\x01\x07\x0B\x0C\x0E\x1F\x7F€“\x81", 11), true},
    {&Funzioni::normStringOnlyApice, u"", false},
    {&Funzioni::normStringForXML, u"<>'èéàùòì", false},
};

// Where apostrophes are doubled, they come in pairs.
bool allPaired(TextView text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != u'\'') continue;
    if (i + 1 == text.size() || text[i + 1] != u'\'') return false;
    ++i;
  }
  return true;
}

void checkEntities(TextView text) {
  for (std::size_t at = 0; (at = text.find(u'&', at)) != TextView::npos; ++at) {
    const TextView rest = text.substr(at);
    require(rest.starts_with(u"&amp;") || rest.starts_with(u"&lt;") || rest.starts_with(u"&gt;"),
            "every & begins an entity", text);
  }
}

void check(const Member& member, const Text& text) {
  const Funzioni f;
  Text out = u"before";
  const bool fits = text.size() <= 32767;
  require((f.*member.call)(text, out).isSuccess() == fits, "all texts but too long ones", text);
  if (!fits) return require(out == u"before", "left alone", text);
  require(out == u" " || (!out.empty() && out.back() != u' '), "no blank at the end", text);
  require(out.find_first_of(member.forbidden) == Text::npos, "nothing forbidden", out);
  Text same = text;
  (f.*member.call)(same, same);
  require(same == out, "in its own variable", text);
  (f.*member.call)(out, same);
  if (member.settles) require(same == out, "a second pass changes nothing", text);
  if (member.call == &Funzioni::normStringForDb || member.call == &Funzioni::normStringOnlyApice) {
    require(allPaired(out), "apostrophes in pairs", out);
  }
  if (member.call == &Funzioni::normStringForXML) checkEntities(out);
}

void checkCipher(const Text& text) {
  const Funzioni f;
  Text hidden = u"before";
  if (!f.simpleEncrypt(text, hidden).isSuccess()) {
    return require(hidden == u"before", "left alone", text);
  }
  require(f.simpleDecrypt(hidden, hidden).isSuccess(), "can be read", text);
  require(hidden == fromBytes(toBytes(text)), "comes back", text);
}

}  // namespace
}  // namespace veltgeneral

void veltgeneral::fuzz(std::string_view bytes) {
  inALocale(bytes, [](const Text& text) {
    for (const Member& member : kMembers) check(member, text);
    checkCipher(text);
  });
}
