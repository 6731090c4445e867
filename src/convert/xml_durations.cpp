// Durations and work amounts between numbers and "PT1H30M0S".
#include <cmath>
#include <optional>

#include "automation/coerce.h"
#include "convert/fixed_date.h"
#include "veltgeneral/funzioni.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

// Units to the minute.
constexpr double kDuration = 10;
constexpr double kWork = 1000;

// Whole numbers of this many digits are exact in a double.
constexpr std::size_t kExactDigits = 15;
constexpr double kExactLimit = 1e15;

char16_t* put(char16_t* out, std::int64_t number) {
  char16_t digits[kExactDigits];
  std::size_t count = 0;
  do {
    digits[count++] = static_cast<char16_t>(u'0' + number % 10);
    number /= 10;
  } while (number != 0);
  while (count > 0) *out++ = digits[--count];
  return out;
}

// As below, for whole seconds that are none below zero: the same numbers in integers.
Text writtenWhole(std::int64_t total) {
  char16_t text[kExactDigits + 10];
  char16_t* out = text;
  *out++ = u'P';
  *out++ = u'T';
  out = put(out, total / 3600);
  *out++ = u'H';
  const auto rest = static_cast<std::int32_t>(total % 3600);
  out = put(out, rest / 60);
  *out++ = u'M';
  out = put(out, rest % 60);
  *out++ = u'S';
  return {text, out};
}

double inRange(double value) {
  if (!std::isfinite(value)) throw RuntimeError(RunTime::overflow);
  return value;
}

double amountOf(const Variant& value) {
  const double* const real = std::get_if<double>(&value);
  return real ? *real : toDouble(value);
}

Text written(const Variant& amount, double unitsToMinute) {
  if (kindOf(amount) != Kind::real && !isNumeric(amount)) return u"PT0H0M0S";
  const double total = inRange(amountOf(amount) * 60 / unitsToMinute);
  if (total >= 0 && total < kExactLimit) {
    if (const auto whole = static_cast<std::int64_t>(total); static_cast<double>(whole) == total) {
      return writtenWhole(whole);
    }
  }
  const double hours = total >= 3600 ? std::trunc(total / 3600) : 0;
  const double rest = total - hours * 3600;
  const double minutes = rest >= 60 ? std::trunc(rest / 60) : 0;
  const double seconds = rest - minutes * 60;
  Text text = u"PT";
  text.append(shortNumber(hours)).push_back(u'H');
  text.append(shortNumber(minutes)).push_back(u'M');
  text.append(shortNumber(seconds)).push_back(u'S');
  return text;
}

double numberIn(const Text& digits) {
  if (digits.empty() || digits.size() > kExactDigits) return toDouble(digits);
  std::int64_t number = 0;
  for (const char16_t c : digits) number = number * 10 + (c - u'0');
  return static_cast<double>(number);
}

// The first two characters are not looked at.
double read(const Variant& value, double unitsToMinute) {
  std::optional<Text> converted;
  const Text* own = std::get_if<Text>(&value);
  const Text& text = own ? *own : converted.emplace(toText(value));
  double hours = 0;
  double minutes = 0;
  double seconds = 0;
  Text digits;
  for (std::size_t i = 2; i < text.size(); ++i) {
    const char16_t c = text[i];
    if (isDigit(c)) {
      digits.push_back(c);
    } else if (c == u'H' || c == u'M' || c == u'S') {
      (c == u'H' ? hours : c == u'M' ? minutes : seconds) = numberIn(digits);
      digits.clear();
    }
  }
  return inRange((minutes * 60 + hours * 3600 + seconds) * unitsToMinute / 60);
}

}  // namespace

Text Funzioni::getDur2Xml(const Variant& vntDur) const { return written(vntDur, kDuration); }
double Funzioni::getDurFromXml(const Variant& vntDur) const { return read(vntDur, kDuration); }
Text Funzioni::getWork2Xml(const Variant& vntBool) const { return written(vntBool, kWork); }
double Funzioni::getWorkFromXml(const Variant& vntWork) const { return read(vntWork, kWork); }

}  // namespace veltgeneral
