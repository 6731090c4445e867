// Arithmetic that decimals need for conversion: 96 bits and a power of ten.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "veltgeneral/variant.h"

namespace veltgeneral {

constexpr int kMaxScale = 28;

// digits × 10^exponent: `digits` are 0 to 9 only. Halves go to even where 28 decimals or 96 bits do
// not hold everything; zeros at the end of the decimals are dropped. Throws RuntimeError 6 when the
// whole part does not fit.
Decimal decimalFromDigits(std::string_view digits, std::int64_t exponent, bool negative);

// The digits without sign and mark ("12345" of 123.45), never empty.
std::string digitsOf(const Decimal& value);

// `value` × 10^decimals as a whole number, halves to even. Throws RuntimeError 6 when it does not
// fit 64 bits.
std::int64_t scaledInteger(const Decimal& value, int decimals);

Decimal toDecimal(std::int64_t whole, int scale);
// 15 significant digits (7 for a single), as in its text. Throws RuntimeError 6 when it does not
// fit.
Decimal toDecimal(double value);
Decimal toDecimal(float value);
// The nearest double.
double toDouble(const Decimal& value);

}  // namespace veltgeneral
