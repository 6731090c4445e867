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

// Fixed replacements of characters below 256.
class TableRule {
 public:
  static constexpr bool kBlanks = false;

  TableRule(std::initializer_list<Replaced> rows, const ReplacementTexts& texts) : texts_(texts) {
    std::bitset<256> members;
    for (const Replaced& each : rows) {
      rows_[each.character] = each.row;
      members.set(each.character);
    }
    suspects_ = platform::UnitSet(members);
  }

  const platform::UnitSet& suspects() const { return suspects_; }
  std::size_t row(char16_t c) const { return c < rows_.size() ? rows_[c] : 0; }
  const ReplacementTexts& texts() const { return texts_; }

 private:
  std::array<std::uint8_t, 256> rows_{};
  ReplacementTexts texts_;
  platform::UnitSet suspects_{{}};
};

const TableRule& databaseRule() {
  static const TableRule kRule({{u'\'', 1}, {u'`', 2}, {u'\r', 2}, {u'\n', 2}}, {u"''", u" "});
  return kRule;
}

const TableRule& apostropheRule() {
  static const TableRule kRule({{u'\'', 1}}, {u"''"});
  return kRule;
}

const TableRule& xmlRule() {
  static const TableRule kRule(
      {{u'&', 1},
       {u'è', 2},
       {u'é', 2},
       {u'à', 3},
       {u'ù', 4},
       {u'ò', 5},
       {u'ì', 6},
       {u'<', 7},
       {u'>', 8},
       {u'\'', 9}},
      {u"&amp;", u"e`", u"a`", u"u`", u"o`", u"i`", u"&lt;", u"&gt;", u"`"});
  return kRule;
}

// Characters that become blanks.
class BlankRule {
 public:
  static constexpr bool kBlanks = true;

  explicit BlankRule(const std::bitset<65536>& blanked) : blanked_(blanked) {
    std::bitset<256> members;
    for (std::size_t c = 0; c < blanked.size(); ++c) {
      // What the scan cannot tell apart it shall stop at.
      if (blanked[c]) members.set(c > 0x7FFF ? 0 : std::min<std::size_t>(c, 255));
    }
    suspects_ = platform::UnitSet(members);
    exact_ = !members[0] && !members[255];
    for (unsigned c = 0; c < 256; ++c) {
      exact_ = exact_ && suspects_.has(static_cast<std::uint8_t>(c)) == blanked[c];
    }
  }

  const platform::UnitSet& suspects() const { return suspects_; }
  bool exact() const { return exact_; }
  std::size_t row(char16_t c) const { return blanked_[c] ? 1 : 0; }

 private:
  std::bitset<65536> blanked_;
  bool exact_ = false;
  platform::UnitSet suspects_{{}};
};

const BlankRule& lineEndRule() {
  static const BlankRule kRule(std::bitset<65536>().set(u'\r').set(u'\n'));
  return kRule;
}

constexpr bool goesFromAscii(unsigned code) {
  const auto within = [code](unsigned first, unsigned last) {
    return code >= first && code <= last;
  };
  return within(0, 7) || within(11, 12) || within(14, 31) || within(127, 144) || within(147, 159);
}

// Judges codes of the code page. A character that the page does not have counts as "?" and stays.
const BlankRule& asciiRule() {
  static const BlankRule kRule([] {
    const CodePage& page = systemCodePage();
    std::bitset<65536> blanked;
    for (unsigned code = 0; code < 256; ++code) {
      const char16_t character = page.character(static_cast<std::uint8_t>(code));
      if (page.byte(character) == code && goesFromAscii(code)) blanked.set(character);
    }
    return blanked;
  }());
  return kRule;
}

template <class Rule>
ErrInfo rewritten(const ErrInfo& done, const Rule& (*rule)(), TextView text, Text& out) {
  return reportedAt(done.locationInfo(), [&] {
    rewrite(rule(), text, out);
    return done;
  });
}

// The members differ in their names and rules; a rule is one member's alone, as is its result. One
// body for all rules of a type keeps the code short.
template <const auto& (*rule)()>
ErrInfo normalised(const char16_t* member, TextView text, Text& out) {
  static const ErrInfo kDone = doneAt(member);
  return rewritten(kDone, rule, text, out);
}

}  // namespace

void keepOnlyAscii(std::span<char16_t> text) { blankIn(asciiRule(), text); }

ErrInfo Funzioni::normStringForDb(TextView sStringa, Text& sStringaOut) const {
  return normalised<&databaseRule>(u"normStringForDb", sStringa, sStringaOut);
}

ErrInfo Funzioni::normStringNoCRLF(TextView sStringa, Text& sStringaOut) const {
  return normalised<&lineEndRule>(u"normStringNoCRLF", sStringa, sStringaOut);
}

ErrInfo Funzioni::normStringOnlyAscii(TextView sStringa, Text& sStringaOut) const {
  return normalised<&asciiRule>(u"normStringOnlyAscii", sStringa, sStringaOut);
}

ErrInfo Funzioni::normStringOnlyApice(TextView sStringa, Text& sStringaOut) const {
  return normalised<&apostropheRule>(u"normStringOnlyApice", sStringa, sStringaOut);
}

ErrInfo Funzioni::normStringForXML(TextView sStringa, Text& sStringaOut) const {
  return normalised<&xmlRule>(u"normStringForXML", sStringa, sStringaOut);
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
