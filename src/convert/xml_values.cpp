// Booleans and numbers in XML.
#include <algorithm>

#include "automation/coerce.h"
#include "convert/decimal_separator.h"
#include "convert/number_values.h"
#include "veltgeneral/funzioni.h"

namespace veltgeneral {

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
  return isNumeric(vntBool) && toDouble(vntBool) == -1 ? 1 : 0;
}

bool Funzioni::getBoolFromXml(const Variant& vntBool) const {
  return isNumeric(vntBool) && toDouble(vntBool) == 1;
}

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
