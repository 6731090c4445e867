// Durations and work amounts between numbers and "PT1H30M0S".
#include <cmath>
#include <optional>

#include "automation/coerce.h"
#include "convert/fixed_date.h"
#include "veltgeneral/funzioni.h"

namespace veltgeneral {
namespace {

// Units to the minute.
constexpr double kDuration = 10;
constexpr double kWork = 1000;

// Whole numbers of this many digits are exact in a double.
constexpr std::size_t kExactDigits = 15;
constexpr double kExactLimit = 1e15;

// Appends as shortNumber writes, the whole numbers without a detour.
void append(Text& out, double number) {
  if (!(std::abs(number) < kExactLimit) || number != std::trunc(number)) {
    out += shortNumber(number);
    return;
  }
  char16_t digits[kExactDigits + 1];
  char16_t* const end = digits + std::size(digits);
  char16_t* first = end;
  auto rest = static_cast<std::int64_t>(std::abs(number));
  do {
    *--first = static_cast<char16_t>(u'0' + rest % 10);
    rest /= 10;
  } while (rest != 0);
  if (number < 0) *--first = u'-';
  out.append(first, end);
}

Text written(const Variant& amount, double unitsToMinute) {
  if (!isNumeric(amount)) return u"PT0H0M0S";
  const double total = toDouble(amount) * 60 / unitsToMinute;
  const double hours = total >= 3600 ? std::trunc(total / 3600) : 0;
  const double rest = total - hours * 3600;
  const double minutes = rest >= 60 ? std::trunc(rest / 60) : 0;
  const double seconds = rest - minutes * 60;
  Text text;
  text.reserve(16);
  append(text.append(u"PT", 2), hours);
  text.push_back(u'H');
  append(text, minutes);
  text.push_back(u'M');
  append(text, seconds);
  text.push_back(u'S');
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
  return (minutes * 60 + hours * 3600 + seconds) * unitsToMinute / 60;
}

}  // namespace

Text Funzioni::getDur2Xml(const Variant& vntDur) const { return written(vntDur, kDuration); }
double Funzioni::getDurFromXml(const Variant& vntDur) const { return read(vntDur, kDuration); }
Text Funzioni::getWork2Xml(const Variant& vntBool) const { return written(vntBool, kWork); }
double Funzioni::getWorkFromXml(const Variant& vntWork) const { return read(vntWork, kWork); }

}  // namespace veltgeneral
