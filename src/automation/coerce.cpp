// One visitor per target kind: a kind that a visitor does not name is a type mismatch, or the
// number that `asDouble` gives it.
#include "automation/coerce.h"

#include <cmath>
#include <limits>
#include <string_view>
#include <utility>

#include "automation/calendar.h"
#include "automation/case_fold.h"
#include "automation/date_text.h"
#include "automation/decimal.h"
#include "automation/number_text.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

template <class... Cases>
struct Overloaded : Cases... {
  using Cases::operator()...;
};
template <class... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

template <class T>
concept NativeNumber = std::same_as<T, std::int16_t> || std::same_as<T, std::int32_t> ||
    std::same_as<T, float> || std::same_as<T, double>;

// Kinds that have no value to convert.
template <class T>
concept Opaque = std::same_as<T, Missing> || std::same_as<T, Bytes> || std::same_as<T, TextArray> ||
    std::same_as<T, ObjectRef>;

constexpr std::int64_t kCurrencyUnit = 10000;
constexpr int kCurrencyDecimals = 4;

[[noreturn]] void fail(RunTime error) { throw RuntimeError(error); }

// To the nearest, halves to even; the rounding mode of the host is not asked.
double rounded(double value) {
  const double below = std::floor(value);
  const double rest = value - below;
  if (rest != 0.5) return rest < 0.5 ? below : below + 1;
  return std::fmod(below, 2) == 0 ? below : below + 1;
}

template <class Integer>
Integer checked(double whole) {
  // The lowest value and the one after the highest are powers of two, which a double holds.
  constexpr auto kLowest = static_cast<double>(std::numeric_limits<Integer>::min());
  if (!(whole >= kLowest && whole < -kLowest)) fail(RunTime::overflow);
  return static_cast<Integer>(whole);
}

template <class Integer>
Integer checked(std::int64_t whole) {
  if (!std::in_range<Integer>(whole)) fail(RunTime::overflow);
  return static_cast<Integer>(whole);
}

double asDouble(NativeNumber auto value) { return value; }
double asDouble(Currency value) {
  return static_cast<double>(value.scaled) / static_cast<double>(kCurrencyUnit);
}
double asDouble(const Decimal& value) { return toDouble(value); }
double asDouble(Date value) { return value.days; }
double asDouble(bool value) { return value ? -1 : 0; }
double asDouble(const Text& value) { return toDouble(TextView(value)); }
double asDouble(Empty) { return 0; }
double asDouble(Null) { fail(RunTime::invalidUseOfNull); }
double asDouble(const Opaque auto&) { fail(RunTime::typeMismatch); }

// Whole numbers and exact fractions are rounded as they are, never through a double.
template <class Integer>
Integer toInteger(const Variant& value) {
  return std::visit(
      Overloaded{[](Currency amount) {
                   return checked<Integer>(
                       scaledInteger(toDecimal(amount.scaled, kCurrencyDecimals), 0));
                 },
                 [](const Decimal& number) { return checked<Integer>(scaledInteger(number, 0)); },
                 [](const auto& other) { return checked<Integer>(rounded(asDouble(other))); }},
      value);
}

float narrowed(double value) {
  const auto single = static_cast<float>(value);
  if (std::isinf(single) && std::isfinite(value)) fail(RunTime::overflow);
  return single;
}

Currency currencyOf(double value) {
  return {checked<std::int64_t>(rounded(value * static_cast<double>(kCurrencyUnit)))};
}

Date dateFromNumber(double days) {
  constexpr double kFirstDay = -657434;   // 1 January 100
  constexpr double kAfterLast = 2958466;  // after 31 December 9999
  // A fraction of a negative day counts forward, so the first day reaches down to the next number.
  if (!(days > kFirstDay - 1 && days < kAfterLast)) fail(RunTime::overflow);
  return {days};
}

bool booleanOf(TextView text) {
  if (equalsName(text, u"True")) return true;
  if (equalsName(text, u"False")) return false;
  return toDouble(text) != 0;
}

}  // namespace

bool isNumeric(TextView text) { return isNumberText(text, userLocale()); }

bool isNumeric(const Variant& value) {
  return std::visit(
      Overloaded{[](const Text& text) { return isNumeric(TextView(text)); },
                 [](Date) { return false; }, [](Null) { return false; },
                 [](const Opaque auto&) { return false; }, [](const auto&) { return true; }},
      value);
}

bool isDate(TextView text) { return isDateText(text, userLocale()); }

bool isDate(const Variant& value) {
  if (const Text* text = std::get_if<Text>(&value)) return isDate(TextView(*text));
  return std::holds_alternative<Date>(value);
}

std::int16_t toInt16(const Variant& value) { return toInteger<std::int16_t>(value); }
std::int32_t toInt32(const Variant& value) { return toInteger<std::int32_t>(value); }
float toSingle(const Variant& value) { return narrowed(toDouble(value)); }

double toDouble(const Variant& value) {
  return std::visit([](const auto& from) { return asDouble(from); }, value);
}

Currency toCurrency(const Variant& value) {
  return std::visit(
      Overloaded{
          [](Currency amount) { return amount; },
          [](const Decimal& number) { return Currency{scaledInteger(number, kCurrencyDecimals)}; },
          [](const Text& text) {
            return Currency{scaledInteger(readDecimal(text, userLocale()), kCurrencyDecimals)};
          },
          [](const auto& other) { return currencyOf(asDouble(other)); }},
      value);
}

Decimal toDecimal(const Variant& value) {
  return std::visit(
      Overloaded{[](const Decimal& number) { return number; },
                 [](Currency amount) { return toDecimal(amount.scaled, kCurrencyDecimals); },
                 [](const Text& text) { return readDecimal(text, userLocale()); },
                 [](float number) { return toDecimal(number); },
                 [](const auto& other) { return toDecimal(asDouble(other)); }},
      value);
}

Date toDate(const Variant& value) {
  return std::visit(Overloaded{[](Date date) { return date; },
                               [](const Text& text) { return readDate(text, userLocale()); },
                               [](const auto& other) { return dateFromNumber(asDouble(other)); }},
                    value);
}

bool toBoolean(const Variant& value) {
  return std::visit(
      Overloaded{[](bool truth) { return truth; }, [](const Text& text) { return booleanOf(text); },
                 [](const auto& other) { return asDouble(other) != 0; }},
      value);
}

Text toText(const Variant& value) {
  return std::visit(
      Overloaded{[](const Text& text) { return text; },
                 [](bool truth) { return Text(truth ? u"True" : u"False"); },
                 [](Date date) { return formatGeneralDate(date); }, [](Empty) { return Text(); },
                 [](Null) -> Text { fail(RunTime::invalidUseOfNull); },
                 [](const Opaque auto&) -> Text { fail(RunTime::typeMismatch); },
                 [](std::int16_t number) { return toText(std::int32_t{number}); },
                 [](const auto& number) { return toText(number); }},
      value);
}

std::int16_t toInt16(double value) { return checked<std::int16_t>(rounded(value)); }
std::int32_t toInt32(double value) { return checked<std::int32_t>(rounded(value)); }
std::int16_t toInt16(TextView text) { return toInt16(toDouble(text)); }
std::int32_t toInt32(TextView text) { return toInt32(toDouble(text)); }
double toDouble(TextView text) { return readDouble(text, userLocale()); }

TextView trimRight(TextView text) {
  const std::size_t last = text.find_last_not_of(u' ');
  return text.substr(0, last == TextView::npos ? 0 : last + 1);
}

TextView trim(TextView text) {
  const std::size_t first = text.find_first_not_of(u' ');
  return first == TextView::npos ? TextView() : trimRight(text.substr(first));
}

}  // namespace veltgeneral
