#include "automation/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <string>

#include "automation/decimal.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

// What the grammar found. `mantissa` still holds its thousands and decimal marks; the counts are
// those of its digits.
struct Number {
  TextView mantissa;
  std::uint64_t value = 0;       // of the first 19 significant digits
  std::int64_t significant = 0;  // digits from the first that is not zero
  std::int64_t decimals = 0;     // digits after the decimal mark
  std::int64_t exponent = 0;
  bool negative = false;
  bool literal = false;  // &H or &O; `value` is its bits
};

constexpr int kValueDigits = 19;
// Beyond it every double is infinite or zero, however long the mantissa that fits in memory.
constexpr std::int64_t kExponentLimit = std::int64_t{1} << 50;

constexpr bool isDigit(char16_t c) { return c >= u'0' && c <= u'9'; }
constexpr bool isNoBreakBlank(char16_t c) { return c == 0x00A0 || c == 0x202F; }
constexpr char16_t lower(char16_t c) { return static_cast<char16_t>(c | 0x20); }

class Scanner {
 public:
  Scanner(TextView text, const Locale& locale) : text_(text), locale_(locale) {}

  std::optional<Number> scan() {
    Number number;
    if (!opening()) return std::nullopt;
    if (peek() == u'&') {
      if (!literal(number)) return std::nullopt;
    } else {
      mantissa(number);
      if (!exponent(number)) return std::nullopt;
    }
    if (!closing(number.literal)) return std::nullopt;
    number.negative = negative_;
    return number;
  }

 private:
  // NUL at the end; a NUL inside the text is no part of a number either.
  char16_t peek(std::size_t ahead = 0) const {
    return at_ + ahead < text_.size() ? text_[at_ + ahead] : u'\0';
  }

  bool blank(char16_t c) const {
    return c == u' ' || (c <= u'\r' && (c == u'\t' || c == u'\n' || c == u'\r')) ||
           (isNoBreakBlank(c) && isNoBreakBlank(locale_.thousands));
  }

  bool currency() {
    const Text& sign = locale_.currency;
    if (hasCurrency_ || sign.empty() || peek() != sign[0]) return false;
    if (text_.substr(at_, sign.size()) != sign) return false;
    hasCurrency_ = true;
    at_ += sign.size();
    return true;
  }

  bool sign() {
    const char16_t c = peek();
    if (hasSign_ || (c != u'-' && c != u'+')) return false;
    hasSign_ = true;
    negative_ = c == u'-';
    ++at_;
    return true;
  }

  bool parenthesis() {
    if (hasSign_ || peek() != u'(') return false;
    hasSign_ = negative_ = open_ = true;
    ++at_;
    return true;
  }

  // Everything before the digits. False where no number can follow.
  bool opening() {
    while (true) {
      const char16_t c = peek();
      if (isDigit(c) || c == u'&') return true;
      if (blank(c)) {
        ++at_;
      } else if (!sign() && !currency() && !parenthesis()) {
        return c == locale_.decimal && isDigit(peek(1));
      }
    }
  }

  void digit(Number& number, char16_t c) {
    if (number.significant < kValueDigits) number.value = number.value * 10 + (c - u'0');
    if (number.value != 0) ++number.significant;
  }

  // A blank serves as the thousands mark of a locale whose mark is a no-break blank, but only
  // between digits.
  bool thousands(char16_t c) const {
    if (c == locale_.thousands) return c != 0;
    return isNoBreakBlank(locale_.thousands) && blank(c) && isDigit(peek(1));
  }

  void mantissa(Number& number) {
    const std::size_t start = at_;
    for (;; ++at_) {
      const char16_t c = peek();
      if (isDigit(c)) {
        digit(number, c);
      } else if (!thousands(c)) {
        break;
      }
    }
    if (peek() == locale_.decimal) {
      const std::size_t first = ++at_;
      for (; isDigit(peek()); ++at_) digit(number, peek());
      number.decimals = static_cast<std::int64_t>(at_ - first);
    }
    number.mantissa = text_.substr(start, at_ - start);
  }

  bool exponent(Number& number) {
    const char16_t letter = lower(peek());
    if (letter != u'e' && letter != u'd') return true;
    const bool hasSign = peek(1) == u'+' || peek(1) == u'-';
    if (!isDigit(peek(hasSign ? 2 : 1))) return false;
    const bool negative = peek(1) == u'-';
    at_ += hasSign ? 2 : 1;
    for (; isDigit(peek()); ++at_) {
      if (number.exponent < kExponentLimit)
        number.exponent = number.exponent * 10 + (peek() - u'0');
    }
    if (negative) number.exponent = -number.exponent;
    return true;
  }

  bool literal(Number& number) {
    if (hasSign_ || hasCurrency_) return false;
    const char16_t letter = lower(peek(1));
    if (letter != u'h' && letter != u'o') return false;
    const unsigned base = letter == u'h' ? 16 : 8;
    at_ += 2;
    const std::size_t start = at_;
    for (;; ++at_) {
      const char16_t c = peek();
      const unsigned value = isDigit(c) ? c - unsigned{u'0'} : lower(c) - unsigned{u'a'} + 10;
      if ((!isDigit(c) && (lower(c) < u'a' || lower(c) > u'f')) || value >= base) break;
      // Once beyond 32 bits it stays there.
      if (number.value >> 32 == 0) number.value = number.value * base + value;
    }
    number.literal = true;
    return at_ > start;
  }

  // Everything after the digits, to the end of the text.
  bool closing(bool literal) {
    while (at_ < text_.size()) {
      if (blank(peek())) {
        ++at_;
      } else if (open_ && peek() == u')') {
        open_ = false;
        ++at_;
      } else if (literal || (!sign() && !currency())) {
        return false;
      }
    }
    return !open_;
  }

  TextView text_;
  const Locale& locale_;
  std::size_t at_ = 0;
  bool hasSign_ = false;
  bool hasCurrency_ = false;
  bool negative_ = false;
  bool open_ = false;
};

// Decimal places before the first significant digit's right edge: 123 has 3, 0.01 has -1.
std::int64_t magnitude(const Number& number) {
  return number.significant - number.decimals + number.exponent;
}

// The digits of the mantissa alone.
std::string digitsOf(const Number& number) {
  std::string digits;
  digits.reserve(number.mantissa.size());
  for (const char16_t c : number.mantissa) {
    if (isDigit(c)) digits.push_back(static_cast<char>(c));
  }
  return digits;
}

// Powers of ten that a double holds exactly; a quotient or product of two exact doubles is rounded
// once and so is the nearest.
constexpr std::array kExactPowers{1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                  1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                  1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr std::int64_t kExactDigits = 15;

double nearest(const Number& number) {
  const std::int64_t shift = number.exponent - number.decimals;
  if (number.significant <= kExactDigits && std::abs(shift) < std::int64_t{kExactPowers.size()}) {
    const auto whole = static_cast<double>(number.value);
    return shift < 0 ? whole / kExactPowers[static_cast<std::size_t>(-shift)]
                     : whole * kExactPowers[static_cast<std::size_t>(shift)];
  }
  if (number.value == 0) return 0;
  const std::string digits = digitsOf(number) + 'e' + std::to_string(shift);
  double value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (error != std::errc{}) return magnitude(number) > 0 ? HUGE_VAL : 0.0;
  return value;
}

bool fitsLiteral(const Number& number) { return number.value >> 32 == 0; }

std::int32_t wrapped(const Number& number) {
  if (!fitsLiteral(number)) throw RuntimeError(RunTime::overflow);
  if (number.value <= 0xFFFF) return static_cast<std::int16_t>(number.value);
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(number.value));
}

Number scanned(TextView text, const Locale& locale) {
  const auto number = Scanner(text, locale).scan();
  if (!number) throw RuntimeError(RunTime::typeMismatch);
  return *number;
}

// Whether `c` is a letter that stands in no number.
bool isOtherLetter(char16_t c, const Locale& locale) {
  const char16_t small = lower(c);
  return small >= u'a' && small <= u'z' && c < 0x80 && small != u'e' && small != u'd' &&
         c != locale.currency.c_str()[0];
}

// Doubles end between 1.7E+308 and 1.8E+308.
constexpr std::int64_t kSafeMagnitude = 308;

}  // namespace

bool isNumberToItsEnd(TextView text, const Locale& locale) {
  const auto* const mark = std::ranges::find_if_not(text, isDigit);
  if (mark == text.end() && text.size() <= kSafeMagnitude) return true;
  // Codes as "12AB" end here: after digits only few letters go on.
  if (mark != text.begin() && mark != text.end() && isOtherLetter(*mark, locale)) return false;
  const auto number = Scanner(text, locale).scan();
  if (!number) return false;
  if (number->literal) return fitsLiteral(*number);
  return magnitude(*number) <= kSafeMagnitude || std::isfinite(nearest(*number));
}

double readDouble(TextView text, const Locale& locale) {
  const Number number = scanned(text, locale);
  if (number.literal) return wrapped(number);
  const double value = nearest(number);
  if (!std::isfinite(value)) throw RuntimeError(RunTime::overflow);
  return number.negative ? -value : value;
}

Decimal readDecimal(TextView text, const Locale& locale) {
  const Number number = scanned(text, locale);
  if (number.literal) return toDecimal(std::int64_t{wrapped(number)}, 0);
  return decimalFromDigits(digitsOf(number), number.exponent - number.decimals, number.negative);
}

}  // namespace veltgeneral
