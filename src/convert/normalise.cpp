// Texts made fit for SQL, for XML and for one-byte readers.
#include <bitset>

#include "automation/code_page.h"
#include "convert/only_ascii.h"
#include "convert/replacements.h"
#include "convert/report.h"
#include "veltgeneral/funzioni.h"

namespace veltgeneral {
namespace {

struct Replaced {
  char16_t character;
  std::uint8_t row;
};

// Characters below 256 and the rows that replace them.
class RowTable {
 public:
  constexpr RowTable(std::initializer_list<Replaced> all) {
    for (const Replaced& each : all) rows_[each.character] = each.row;
  }
  constexpr std::size_t operator[](char16_t c) const { return c < rows_.size() ? rows_[c] : 0; }

 private:
  std::array<std::uint8_t, 256> rows_{};
};

struct DatabaseRule {
  static constexpr RowTable kRows{{u'\'', 1}, {u'`', 2}, {u'\r', 2}, {u'\n', 2}};
  static constexpr ReplacementTexts kTexts{u"''", u" "};
  static bool suspect(char16_t c) {
    return (c == u'\'') | (c == u'`') | (c == u'\r') | (c == u'\n');
  }
  static std::size_t row(char16_t c) { return kRows[c]; }
  static const ReplacementTexts& texts() { return kTexts; }
};

struct LineEndRule {
  static constexpr ReplacementTexts kTexts{u" "};
  static bool suspect(char16_t c) { return (c == u'\r') | (c == u'\n'); }
  static std::size_t row(char16_t c) { return suspect(c) ? 1 : 0; }
  static const ReplacementTexts& texts() { return kTexts; }
};

struct ApostropheRule {
  static constexpr ReplacementTexts kTexts{u"''"};
  static bool suspect(char16_t c) { return c == u'\''; }
  static std::size_t row(char16_t c) { return suspect(c) ? 1 : 0; }
  static const ReplacementTexts& texts() { return kTexts; }
};

struct XmlRule {
  static constexpr RowTable kRows{{u'&', 1}, {u'è', 2}, {u'é', 2}, {u'à', 3}, {u'ù', 4},
                                  {u'ò', 5}, {u'ì', 6}, {u'<', 7}, {u'>', 8}, {u'\'', 9}};
  static constexpr ReplacementTexts kTexts{u"&amp;", u"e`",   u"a`",   u"u`", u"o`",
                                           u"i`",    u"&lt;", u"&gt;", u"`"};
  // Pairs that differ in one bit, and all letters from à on.
  static bool suspect(char16_t c) {
    return ((c | 1) == u'\'') | ((c | 2) == u'>') | ((c & 0xFFE0) == u'à');
  }
  static std::size_t row(char16_t c) { return kRows[c]; }
  static const ReplacementTexts& texts() { return kTexts; }
};

// Judges codes of the code page. A character that the page does not have counts as "?" and stays.
class AsciiRule {
 public:
  explicit AsciiRule(const CodePage& page) {
    for (std::size_t code = 0; code < 256; ++code) {
      const char16_t character = page.character(static_cast<std::uint8_t>(code));
      const bool own = page.byte(character) == code;
      if (own && goes(code)) blanked_.set(character);
    }
    for (std::size_t c = 0xA0; c < 256; ++c) latinStays_ = latinStays_ && !blanked_[c];
    for (std::size_t c = u' '; c < 127; ++c) printableStays_ = printableStays_ && !blanked_[c];
  }

  bool suspect(char16_t c) const {
    const bool printable = printableStays_ & (static_cast<char16_t>(c - u' ') < 95);
    const bool latin = latinStays_ & (static_cast<char16_t>(c - 0xA0) < 96);
    return !(printable | latin);
  }
  std::size_t row(char16_t c) const { return blanked_[c] ? 1 : 0; }
  static const ReplacementTexts& texts() { return kTexts; }

 private:
  static constexpr ReplacementTexts kTexts{u" "};

  static constexpr bool goes(std::size_t code) {
    const auto within = [code](std::size_t first, std::size_t last) {
      return code >= first && code <= last;
    };
    return within(0, 7) || within(11, 12) || within(14, 31) || within(127, 144) || within(147, 159);
  }

  std::bitset<65536> blanked_;
  bool latinStays_ = true;
  bool printableStays_ = true;
};

template <class Rule>
ErrInfo normalised(TextView location, const Rule& rule, TextView text, Text& out) {
  return reportedAt(location, [&] {
    rewrite(rule, text, out);
    return doneAt(location);
  });
}

const AsciiRule& asciiRule() {
  static const AsciiRule rule(systemCodePage());
  return rule;
}

}  // namespace

TextView onlyAscii(TextView text, Text& room) {
  const AsciiRule& rule = asciiRule();
  if (text.size() <= kGreatestCounted && firstReplaced(rule, text) == text.size()) {
    const TextView trimmed = trimRight(text);
    if (!trimmed.empty()) return trimmed;
  }
  rewrite(rule, text, room);
  return room;
}

ErrInfo Funzioni::normStringForDb(TextView sStringa, Text& sStringaOut) const {
  return normalised(u"normStringForDb", DatabaseRule(), sStringa, sStringaOut);
}

ErrInfo Funzioni::normStringNoCRLF(TextView sStringa, Text& sStringaOut) const {
  return normalised(u"normStringNoCRLF", LineEndRule(), sStringa, sStringaOut);
}

ErrInfo Funzioni::normStringOnlyAscii(TextView sStringa, Text& sStringaOut) const {
  return reportedAt(u"normStringOnlyAscii", [&] {
    rewrite(asciiRule(), sStringa, sStringaOut);
    return doneAt(u"normStringOnlyAscii");
  });
}

ErrInfo Funzioni::normStringOnlyApice(TextView sStringa, Text& sStringaOut) const {
  return normalised(u"normStringOnlyApice", ApostropheRule(), sStringa, sStringaOut);
}

ErrInfo Funzioni::normStringForXML(TextView sStringa, Text& sStringaOut) const {
  return normalised(u"normStringForXML", XmlRule(), sStringa, sStringaOut);
}

ErrInfo Funzioni::normStringOnlyApiceWithNull(const Variant& vntStringa,
                                              Variant& vntStringaOut) const {
  return reportedAt(u"normStringOnlyApiceWithNull", [&] {
    if (kindOf(vntStringa) == Kind::empty || kindOf(vntStringa) == Kind::null) {
      vntStringaOut = Null{};
      return ErrInfo();
    }
    Text doubled;
    ErrInfo result = normStringOnlyApice(toText(vntStringa), doubled);
    if (result.isSuccess()) vntStringaOut = std::move(doubled);
    return result;
  });
}

}  // namespace veltgeneral
