#include "automation/decimal.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <optional>

#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

// 96 bits, least significant first.
using Limbs = std::array<std::uint32_t, 3>;

// limbs × factor + addend; false where that does not fit.
bool multiplyAdd(Limbs& limbs, std::uint32_t factor, std::uint32_t addend) {
  std::uint64_t carry = addend;
  for (std::uint32_t& limb : limbs) {
    carry += std::uint64_t{limb} * factor;
    limb = static_cast<std::uint32_t>(carry);
    carry >>= 32;
  }
  return carry == 0;
}

// Divides by 10 and returns the remainder.
std::uint32_t divideBy10(Limbs& limbs) {
  std::uint64_t rest = 0;
  for (std::size_t i = limbs.size(); i-- > 0;) {
    rest = (rest << 32) | limbs[i];
    limbs[i] = static_cast<std::uint32_t>(rest / 10);
    rest %= 10;
  }
  return static_cast<std::uint32_t>(rest);
}

bool isZero(const Limbs& limbs) { return limbs == Limbs{}; }

Limbs limbsOf(const Decimal& value) { return {value.low, value.mid, value.high}; }

std::uint32_t digitAt(std::string_view digits, std::size_t i) {
  return static_cast<std::uint32_t>(digits[i] - '0');
}

// Whether dropping the last `drop` digits rounds the rest up, halves to even.
bool roundsUp(std::string_view digits, std::size_t drop) {
  if (drop == 0 || drop > digits.size()) return false;
  const std::size_t kept = digits.size() - drop;
  if (digits[kept] != '5') return digits[kept] > '5';
  if (digits.find_first_not_of('0', kept + 1) != std::string_view::npos) return true;
  return kept > 0 && digitAt(digits, kept - 1) % 2 == 1;
}

// The digits without the last `drop`, rounded; nothing where 96 bits do not hold them.
std::optional<Limbs> rounded(std::string_view digits, std::size_t drop) {
  Limbs limbs{};
  const std::size_t kept = digits.size() - std::min(drop, digits.size());
  for (std::size_t i = 0; i < kept; ++i) {
    if (!multiplyAdd(limbs, 10, digitAt(digits, i))) return std::nullopt;
  }
  if (roundsUp(digits, drop) && !multiplyAdd(limbs, 1, 1)) return std::nullopt;
  return limbs;
}

Decimal normalised(Limbs limbs, std::int64_t scale, bool negative) {
  Limbs shorter = limbs;
  while (scale > 0 && divideBy10(shorter) == 0) {
    limbs = shorter;
    --scale;
  }
  if (isZero(limbs)) return {};
  return {limbs[0], limbs[1], limbs[2], static_cast<std::uint8_t>(scale), negative};
}

template <class Real>
Decimal fromReal(Real value, int significant) {
  std::array<char, 40> room{};
  const auto [end, error] = std::to_chars(room.data(), room.data() + room.size(), value,
                                          std::chars_format::scientific, significant - 1);
  const std::string_view text(room.data(), end);
  const std::size_t mark = text.find('e');
  if (mark == std::string_view::npos) throw RuntimeError(RunTime::overflow);  // not finite
  std::string digits;
  std::ranges::copy_if(text.substr(0, mark), std::back_inserter(digits),
                       [](char c) { return c >= '0' && c <= '9'; });
  int exponent = 0;
  const std::size_t first = text[mark + 1] == '+' ? mark + 2 : mark + 1;
  std::from_chars(text.data() + first, end, exponent);
  return decimalFromDigits(digits, exponent - (significant - 1), text.front() == '-');
}

}  // namespace

Decimal decimalFromDigits(std::string_view digits, std::int64_t exponent, bool negative) {
  digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
  if (digits.empty()) return {};
  std::string longer;
  if (exponent > 0) {
    if (exponent > kMaxScale) throw RuntimeError(RunTime::overflow);
    longer = std::string(digits) + std::string(static_cast<std::size_t>(exponent), '0');
    digits = longer;
    exponent = 0;
  }
  const std::int64_t scale = -exponent;
  const auto count = static_cast<std::int64_t>(digits.size());
  std::int64_t drop = std::max({std::int64_t{0}, scale - kMaxScale, count - (kMaxScale + 1)});
  for (; drop <= scale; ++drop) {
    if (const auto limbs = rounded(digits, static_cast<std::size_t>(drop))) {
      return normalised(*limbs, scale - drop, negative);
    }
  }
  throw RuntimeError(RunTime::overflow);
}

std::string digitsOf(const Decimal& value) {
  Limbs limbs = limbsOf(value);
  std::string digits;
  do {
    digits.push_back(static_cast<char>('0' + divideBy10(limbs)));
  } while (!isZero(limbs));
  std::ranges::reverse(digits);
  return digits;
}

std::int64_t scaledInteger(const Decimal& value, int decimals) {
  std::string digits = digitsOf(value);
  const int drop = value.scale - decimals;
  if (drop < 0) digits.append(static_cast<std::size_t>(-drop), '0');
  const auto limbs = rounded(digits, static_cast<std::size_t>(std::max(drop, 0)));
  if (!limbs || (*limbs)[2] != 0) throw RuntimeError(RunTime::overflow);
  const std::uint64_t size = (std::uint64_t{(*limbs)[1]} << 32) | (*limbs)[0];
  constexpr auto kMost = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  if (size > kMost + (value.negative ? 1 : 0)) throw RuntimeError(RunTime::overflow);
  return static_cast<std::int64_t>(value.negative ? 0 - size : size);
}

Decimal toDecimal(std::int64_t whole, int scale) {
  const auto bits = static_cast<std::uint64_t>(whole);
  const std::uint64_t size = whole < 0 ? 0 - bits : bits;
  const Limbs limbs{static_cast<std::uint32_t>(size), static_cast<std::uint32_t>(size >> 32), 0};
  return normalised(limbs, scale, whole < 0);
}

Decimal toDecimal(double value) { return fromReal(value, 15); }
Decimal toDecimal(float value) { return fromReal(value, 7); }

double toDouble(const Decimal& value) {
  const std::string text = digitsOf(value) + "e-" + std::to_string(value.scale);
  double size = 0;
  std::from_chars(text.data(), text.data() + text.size(), size);
  return value.negative ? -size : size;
}

}  // namespace veltgeneral
