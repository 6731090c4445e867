#include "automation/date_tokens.h"

#include "automation/case_fold.h"

namespace veltgeneral {
namespace {

constexpr bool isDigit(char16_t c) { return c >= u'0' && c <= u'9'; }
constexpr bool isBlank(char16_t c) {
  return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r' || c == 0x00A0 || c == 0x202F;
}

class Scanner {
 public:
  Scanner(TextView text, const Locale& locale) : text_(text), locale_(locale) {}

  bool atEnd() const { return at_ == text_.size(); }

  bool skipBlanks() {
    const std::size_t start = at_;
    while (!atEnd() && isBlank(text_[at_])) ++at_;
    return at_ > start;
  }

  bool token(DateToken& out) {
    const bool found = isDigit(text_[at_]) ? number(out) : word(out);
    afterNumber_ = found && out.kind == TokenKind::number;
    return found;
  }

  // False for a mark that is followed by nothing.
  bool gap(DateToken& out) {
    out.gap = skipBlanks() ? Gap::blank : Gap::none;
    if (atEnd()) return true;
    const Gap mark = markAt(text_[at_]);
    if (mark == Gap::none) return true;
    out.gap = mark;
    out.mark = text_[at_++];
    skipBlanks();
    return !atEnd();
  }

 private:
  Gap markAt(char16_t c) const {
    if (c == u'/' || c == u'-' || c == locale_.dateSeparator) return Gap::dateMark;
    if (c == u':' || c == u'.' || c == locale_.timeSeparator) return Gap::timeMark;
    return c == u',' ? Gap::comma : Gap::none;
  }

  bool number(DateToken& out) {
    out.kind = TokenKind::number;
    out.value = 0;
    out.digits = 0;
    for (; !atEnd() && isDigit(text_[at_]); ++at_) {
      if (++out.digits > 4) return false;
      out.value = out.value * 10 + (text_[at_] - u'0');
    }
    return true;
  }

  bool word(DateToken& out) {
    if (mayBeMonth() && month(out)) return true;
    return afterNumber_ && halfDay(out);
  }

  // Three letters tell nearly every other word.
  bool mayBeMonth() const {
    const std::size_t left = text_.size() - at_;
    for (std::size_t i = 0; i < 2 && i + 1 < left; ++i) {
      const std::uint32_t next = locale_.monthLetters[i][letterSlot(text_[at_ + i])];
      if ((next >> letterSlot(text_[at_ + i + 1]) & 1) == 0) return false;
    }
    return left > 1;
  }

  // The length of `name` where it stands here as a whole word, 0 where it does not. The point of
  // an abbreviation may be left out.
  std::size_t matched(TextView name) const {
    const TextView rest = text_.substr(at_);
    if (beginsWithName(rest, name)) {
      if (name.back() == u'.' || name.size() == rest.size() || !isLetter(rest[name.size()])) {
        return name.size();
      }
      return 0;
    }
    return !name.empty() && name.back() == u'.' ? matched(name.substr(0, name.size() - 1)) : 0;
  }

  bool month(DateToken& out) {
    for (std::size_t i = 0; i < locale_.months.size(); ++i) {
      std::size_t length = matched(locale_.months[i]);
      if (length == 0) length = matched(locale_.shortMonths[i]);
      if (length == 0) continue;
      out.kind = TokenKind::month;
      out.value = static_cast<std::int32_t>(i) + 1;
      at_ += length;
      return true;
    }
    return false;
  }

  bool halfDay(DateToken& out) {
    const auto is = [&](TextView name) {
      const std::size_t length = matched(name);
      at_ += length;
      return length > 0;
    };
    const char16_t capital = toUpper(text_[at_]);
    if (capital != u'A' && capital != u'P' && capital < 0x80) return false;
    out.value = 0;
    if (is(u"am") || is(u"a") || is(locale_.am)) {
      out.kind = TokenKind::am;
      return true;
    }
    out.kind = TokenKind::pm;
    return is(u"pm") || is(u"p") || is(locale_.pm);
  }

  TextView text_;
  const Locale& locale_;
  std::size_t at_ = 0;
  bool afterNumber_ = false;
};

}  // namespace

bool DateTokens::scan(TextView text, const Locale& locale) {
  Scanner scanner(text, locale);
  scanner.skipBlanks();
  while (!scanner.atEnd()) {
    if (count_ == kMost) return false;
    DateToken& token = tokens_[count_];
    if (!scanner.token(token) || !scanner.gap(token)) return false;
    ++count_;
  }
  return true;
}

}  // namespace veltgeneral
