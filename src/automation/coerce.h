// Automation's coercions, all of them: what any kind of value is as any other kind.
//
// Conversions to integers and to currency round halves to even. Throws RuntimeError: 6 a number
// that does not fit, 13 a text that is no number (or date), or a kind that has no such form, 94
// null. An empty value is 0, false, the empty text, day zero. Bytes, arrays, objects and missing
// are error 13. Number and date text follow the user's locale.
//
//   A boolean is -1 or 0 as a number and "True" or "False" as a text, whatever the locale. Any
//   number but 0 is true; a text is "True" or "False" in any case, else a number.
//   A date is its day number, and a number is the date of that day number (years 100 to 9999, else
//   error 6). A text of a number is no date, and a text of a date is no number.
//   A single or double becomes a decimal, and a text, with its 7 or 15 significant digits.
#pragma once

#include <concepts>
#include <cstdint>

#include "veltgeneral/text.h"
#include "veltgeneral/variant.h"

namespace veltgeneral {

// A Text or a literal, which would otherwise suit a TextView and a Variant equally.
template <class T>
concept TextLike = std::convertible_to<const T&, TextView>;

// Total tests; each is true exactly where the reading with the same grammar succeeds. Booleans,
// every kind of number and the empty variant are numeric; dates, null and missing are not.
bool isNumeric(const Variant& value);
bool isNumeric(TextView text);
bool isNumeric(const TextLike auto& text) { return isNumeric(TextView(text)); }
bool isDate(const Variant& value);
bool isDate(TextView text);
bool isDate(const TextLike auto& text) { return isDate(TextView(text)); }

std::int16_t toInt16(const Variant& value);
std::int32_t toInt32(const Variant& value);
float toSingle(const Variant& value);
double toDouble(const Variant& value);
Currency toCurrency(const Variant& value);
Decimal toDecimal(const Variant& value);
Date toDate(const Variant& value);
bool toBoolean(const Variant& value);
// toText(const Variant&) is variant.h's.

std::int16_t toInt16(double value);
std::int32_t toInt32(double value);
std::int16_t toInt16(TextView text);
std::int16_t toInt16(const TextLike auto& text) { return toInt16(TextView(text)); }
std::int32_t toInt32(TextView text);
std::int32_t toInt32(const TextLike auto& text) { return toInt32(TextView(text)); }
double toDouble(TextView text);
double toDouble(const TextLike auto& text) { return toDouble(TextView(text)); }

// The text of a number: 15 (7) significant digits, exponent form where the digits do not fit
// ("1E+15", "1E-05"), the locale's decimal mark, no grouping. Infinities and non-numbers are
// "1.#INF", "-1.#INF", "1.#QNAN", "-1.#IND".
Text toText(double value);
Text toText(float value);
Text toText(std::int32_t value);
// Every digit, without zeros at the end of the decimals.
Text toText(Currency value);
Text toText(const Decimal& value);

// The locale-independent short form: "." as decimal mark, no blank, no zero before it (".5",
// "-.5").
Text shortNumber(double value);

// Blanks (U+0020 only) removed at both ends, at the end.
TextView trim(TextView text);
TextView trimRight(TextView text);

}  // namespace veltgeneral
