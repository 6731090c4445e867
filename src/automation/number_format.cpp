// Texts of numbers. The digits come from std::to_chars, which rounds correctly and knows no locale;
// only the marks are the locale's.
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

#include "automation/coerce.h"
#include "automation/decimal.h"
#include "automation/locale.h"

namespace veltgeneral {
namespace {

using Room = std::array<char, 40>;

template <class... Form>
std::string_view written(Room& room, Form... form) {
  return {room.data(), std::to_chars(room.data(), room.data() + room.size(), form...).ptr};
}

Text withMark(std::string_view digits, char16_t mark) {
  Text text;
  text.reserve(digits.size());
  for (const char c : digits) {
    if (c == '.') {
      text.push_back(mark);
    } else {
      text.push_back(c == 'e' ? u'E' : static_cast<char16_t>(c));
    }
  }
  return text;
}

TextView notFinite(double value) {
  const bool negative = std::signbit(value);
  if (std::isinf(value)) return negative ? u"-1.#INF" : u"1.#INF";
  return negative ? u"-1.#IND" : u"1.#QNAN";
}

template <class Real>
std::string_view realDigits(Room& room, Real value, int significant, Real wholeLimit) {
  // Whole numbers that the digits hold; negative zero loses its sign.
  if (std::abs(value) < wholeLimit && std::trunc(value) == value) {
    return written(room, static_cast<std::int64_t>(value));
  }
  return written(room, value, std::chars_format::general, significant);
}

std::string_view realDigits(Room& room, double value) { return realDigits(room, value, 15, 1e15); }

// "12345" with scale 2 is 123.45; zeros at the end of the decimals go.
Text fixedPoint(std::string digits, std::size_t scale, bool negative) {
  if (digits.size() <= scale) digits.insert(0, scale + 1 - digits.size(), '0');
  digits.insert(digits.size() - scale, 1, '.');
  digits.erase(digits.find_last_not_of('0') + 1);
  if (digits.back() == '.') digits.pop_back();
  if (negative && digits != "0") digits.insert(0, 1, '-');
  return withMark(digits, userLocale().decimal);
}

}  // namespace

Text toText(double value) {
  if (!std::isfinite(value)) return Text(notFinite(value));
  Room room;
  return withMark(realDigits(room, value), userLocale().decimal);
}

Text toText(float value) {
  if (!std::isfinite(value)) return Text(notFinite(value));
  Room room;
  return withMark(realDigits(room, value, 7, 1e7F), userLocale().decimal);
}

Text toText(std::int32_t value) {
  Room room;
  return withMark(written(room, value), u'.');
}

Text toText(Currency value) {
  const auto bits = static_cast<std::uint64_t>(value.scaled);
  const bool negative = value.scaled < 0;
  return fixedPoint(std::to_string(negative ? 0 - bits : bits), 4, negative);
}

Text toText(const Decimal& value) {
  return fixedPoint(digitsOf(value), value.scale, value.negative);
}

Text shortNumber(double value) {
  if (!std::isfinite(value)) return Text(notFinite(value));
  Room room;
  Text text = withMark(realDigits(room, value), u'.');
  const std::size_t first = text[0] == u'-' ? 1 : 0;
  if (text.compare(first, 2, u"0.") == 0) text.erase(first, 1);
  return text;
}

}  // namespace veltgeneral
