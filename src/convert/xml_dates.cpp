// Dates between 14 digits and "YYYY-MM-DDThh:mm:ss".
#include <algorithm>

#include "automation/coerce.h"
#include "convert/fixed_date.h"
#include "veltgeneral/funzioni.h"

namespace veltgeneral {
namespace {

// Where a field stands in the XML form and in the digits.
struct Field {
  std::size_t xml;
  std::size_t digits;
  std::size_t size;
};

constexpr Field kFields[] = {{0, 0, 4}, {5, 4, 2}, {8, 6, 2}, {11, 8, 2}, {14, 10, 2}, {17, 12, 2}};
constexpr TextView kXmlForm = u"0000-00-00T00:00:00";
constexpr TextView kDigits = u"00000000000000";

}  // namespace

Text Funzioni::getDate2Xml(TextView sDate) const {
  if (!isFixedStamp(sDate)) return {};
  Text xml(kXmlForm);
  for (const Field& field : kFields) std::copy_n(&sDate[field.digits], field.size, &xml[field.xml]);
  return xml;
}

Variant Funzioni::getDateFromXml(TextView sDate) const {
  char16_t digits[kDigits.size()];
  std::ranges::copy(kDigits, digits);
  for (const Field& field : kFields) {
    const TextView piece = sDate.substr(std::min(field.xml, sDate.size()), field.size);
    if (std::ranges::all_of(piece, isDigit)) {
      std::ranges::copy(piece, digits + field.digits);
    } else if (isNumeric(piece)) {
      return Empty{};  // a sign or a blank would stand among the digits
    }
  }
  const TextView stamp(digits, kDigits.size());
  if (!isFixedStamp(stamp)) return Empty{};
  return Text(stamp);
}

}  // namespace veltgeneral
