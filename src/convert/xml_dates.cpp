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
constexpr std::size_t kXmlForm = 19;  // characters, without what may follow
constexpr TextView kDigits = u"00000000000000";

// Piece by piece; false where a number is no digits, and so a sign or a blank would stand among
// them.
bool copyPieces(TextView xml, char16_t* digits) {
  std::ranges::copy(kDigits, digits);
  for (const Field& field : kFields) {
    const TextView piece = xml.substr(std::min(field.xml, xml.size()), field.size);
    if (std::ranges::all_of(piece, isDigit)) {
      std::ranges::copy(piece, digits + field.digits);
    } else if (isNumeric(piece)) {
      return false;
    }
  }
  return true;
}

}  // namespace

Text Funzioni::getDate2Xml(TextView sDate) const {
  if (!isFixedStamp(sDate)) return {};
  const char16_t* const d = sDate.data();
  const char16_t xml[] = {d[0], d[1], d[2], d[3], u'-',  d[4],  d[5], u'-',  d[6], d[7],
                          u'T', d[8], d[9], u':', d[10], d[11], u':', d[12], d[13]};
  return {xml, std::size(xml)};
}

Variant Funzioni::getDateFromXml(TextView sDate) const {
  if (sDate.size() >= kXmlForm) {
    const char16_t* const x = sDate.data();
    const char16_t digits[] = {x[0], x[1],  x[2],  x[3],  x[5],  x[6],  x[8],
                               x[9], x[11], x[12], x[14], x[15], x[17], x[18]};
    const TextView stamp(digits, std::size(digits));
    if (isFixedStamp(stamp)) return Variant(std::in_place_type<Text>, stamp);
  }
  char16_t digits[kDigits.size()];
  if (!copyPieces(sDate, digits)) return Empty{};
  const TextView stamp(digits, kDigits.size());
  if (!isFixedStamp(stamp)) return Empty{};
  return Variant(std::in_place_type<Text>, stamp);
}

}  // namespace veltgeneral
