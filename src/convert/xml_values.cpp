// Booleans and numbers in XML.
#include <algorithm>
#include <string>

#include "automation/coerce.h"
#include "automation/decimal.h"
#include "convert/decimal_separator.h"
#include "convert/number_values.h"
#include "veltgeneral/funzioni.h"

namespace veltgeneral {
namespace {

// Whether the value is the number 1, or -1. A decimal has more digits than a double tells apart.
bool isOne(const Variant& value, bool negative) {
  if (const auto* const decimal = std::get_if<Decimal>(&value)) {
    const std::string digits = digitsOf(*decimal);
    return decimal->negative == negative && digits == '1' + std::string(decimal->scale, '0');
  }
  return isNumeric(value) && toDouble(value) == (negative ? -1 : 1);
}

}  // namespace

Variant plainNumber(const Variant& value) {
  switch (kindOf(value)) {
    case Kind::single:
    case Kind::real: {
      Text text = toText(value);
      std::ranges::replace(text, u',', u'.');
      return text;
    }
    case Kind::decimal:
      return toInt16(value);
    default:
      return toInt32(value);
  }
}

std::int16_t Funzioni::getBool2Xml(const Variant& vntBool) const {
  return isOne(vntBool, true) ? 1 : 0;
}

bool Funzioni::getBoolFromXml(const Variant& vntBool) const { return isOne(vntBool, false); }

Variant Funzioni::getNumber2Xml(const Variant& vntValue) const {
  if (!isNumeric(vntValue)) return Text();
  return plainNumber(vntValue);
}

double Funzioni::getNumberFromXml(const Variant& vntValue) const {
  if (!isNumeric(vntValue)) return 0;
  Text text = toText(vntValue);
  const auto isMark = [](char16_t c) { return c == u',' || c == u'.'; };
  std::ranges::replace_if(text, isMark, recordedDecimalSeparator());
  return toDouble(text);
}

}  // namespace veltgeneral
