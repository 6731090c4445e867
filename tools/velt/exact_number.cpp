#include "exact_number.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>

namespace veltgeneral::tool {
namespace {

// `digits` are those of the whole number that `scale` decimals belong to.
std::string withPoint(std::string digits, std::size_t scale, bool negative) {
  if (digits.size() <= scale) digits.insert(0, scale + 1 - digits.size(), '0');
  if (scale > 0) {
    digits.insert(digits.size() - scale, 1, '.');
    digits.erase(digits.find_last_not_of('0') + 1);
    if (digits.ends_with('.')) digits.pop_back();
  }
  return negative && digits != "0" ? "-" + digits : digits;
}

struct Written {
  std::string digits;  // never empty
  std::size_t scale = 0;
  bool negative = false;
};

std::optional<Written> readWritten(std::string_view text) {
  Written out;
  out.negative = text.starts_with('-');
  if (out.negative || text.starts_with('+')) text.remove_prefix(1);
  const std::size_t point = text.find('.');
  out.digits = text.substr(0, point);
  if (point != std::string_view::npos) {
    out.digits += text.substr(point + 1);
    out.scale = text.size() - point - 1;
  }
  const bool valid = !out.digits.empty() &&
                     std::ranges::all_of(out.digits, [](char c) { return c >= '0' && c <= '9'; });
  return valid ? std::optional(std::move(out)) : std::nullopt;
}

using Limbs = std::array<std::uint32_t, 3>;  // the least first

// The remainder.
std::uint32_t divideByTen(Limbs& limbs) {
  std::uint64_t rest = 0;
  for (std::size_t i = limbs.size(); i-- > 0;) {
    rest = rest << 32 | limbs[i];
    limbs[i] = static_cast<std::uint32_t>(rest / 10);
    rest %= 10;
  }
  return static_cast<std::uint32_t>(rest);
}

// False where it does not fit.
bool appendDigit(Limbs& limbs, std::uint32_t digit) {
  std::uint64_t carry = digit;
  for (std::uint32_t& limb : limbs) {
    carry += std::uint64_t{limb} * 10;
    limb = static_cast<std::uint32_t>(carry);
    carry >>= 32;
  }
  return carry == 0;
}

}  // namespace

std::string plainText(Currency value) {
  std::string digits = std::to_string(value.scaled);
  const bool negative = digits.starts_with('-');
  return withPoint(digits.substr(negative ? 1 : 0), 4, negative);
}

std::string plainText(const Decimal& value) {
  Limbs limbs{value.low, value.mid, value.high};
  std::string digits;
  do {
    digits.insert(digits.begin(), static_cast<char>('0' + divideByTen(limbs)));
  } while (limbs != Limbs{});
  return withPoint(std::move(digits), value.scale, value.negative);
}

std::optional<Currency> readCurrency(std::string_view text) {
  auto written = readWritten(text);
  if (!written || written->scale > 4) return std::nullopt;
  written->digits.append(4 - written->scale, '0');
  if (written->negative) written->digits.insert(0, 1, '-');
  const char* const end = written->digits.data() + written->digits.size();
  Currency out;
  const auto [stop, error] = std::from_chars(written->digits.data(), end, out.scaled);
  return error == std::errc() && stop == end ? std::optional(out) : std::nullopt;
}

std::optional<Decimal> readDecimal(std::string_view text) {
  const auto written = readWritten(text);
  if (!written || written->scale > 28) return std::nullopt;
  Limbs limbs{};
  for (const char c : written->digits) {
    if (!appendDigit(limbs, static_cast<std::uint32_t>(c - '0'))) return std::nullopt;
  }
  return Decimal{.low = limbs[0],
                 .mid = limbs[1],
                 .high = limbs[2],
                 .scale = static_cast<std::uint8_t>(written->scale),
                 .negative = written->negative};
}

}  // namespace veltgeneral::tool
