// Dates between 14 digits and "YYYY-MM-DDThh:mm:ss".
#include <algorithm>

#include "automation/coerce.h"
#include "convert/fixed_date.h"
#include "veltgeneral/funzioni.h"

namespace veltgeneral {
namespace {

constexpr TextView kXmlForm = u"0000-00-00T00:00:00";
constexpr TextView kZeros = u"00000000000000";
constexpr std::size_t kYearSize = 4;

// Where the fields behind the year stand in the XML form and in the digits, two characters each.
struct Field {
  std::size_t xml;
  std::size_t digits;
};
constexpr Field kFields[] = {{5, 4}, {8, 6}, {11, 8}, {14, 10}, {17, 12}};

// One piece of the input; false where it is a number but no digits, and so a sign or a blank would
// stand among the digits.
bool copyPiece(TextView xml, std::size_t at, std::size_t size, char16_t* digits) {
  const TextView piece = xml.substr(std::min(at, xml.size()), size);
  if (!std::ranges::all_of(piece, isDigit)) return !isNumeric(piece);
  std::ranges::copy(piece, digits);
  return true;
}

// Whether it is a date, piece by piece; `digits` are overwritten.
bool copyDate(TextView xml, char16_t* digits) {
  std::ranges::copy(kZeros, digits);
  const bool copied =
      copyPiece(xml, 0, kYearSize, digits) && std::ranges::all_of(kFields, [&](const Field& field) {
        return copyPiece(xml, field.xml, 2, digits + field.digits);
      });
  return copied && isFixedStamp({digits, kZeros.size()});
}

// Of 14 digits.
Text inXml(const char16_t* digits) {
  Text xml(kXmlForm);
  std::copy_n(digits, kYearSize, xml.data());
  for (const Field& field : kFields) std::copy_n(digits + field.digits, 2, xml.data() + field.xml);
  return xml;
}

}  // namespace

Text Funzioni::getDate2Xml(TextView sDate) const {
  return isFixedStamp(sDate) ? inXml(sDate.data()) : Text();
}

Variant Funzioni::getDateFromXml(TextView sDate) const {
  Variant result(std::in_place_type<Text>, kZeros);
  char16_t* const digits = std::get_if<Text>(&result)->data();
  // Digits in all places and within their ranges, or else piece by piece.
  const bool isDate =
      sDate.size() >= kXmlForm.size() && platform::gatherFields(sDate.data(), fixed_date::kDay,
                                                                fixed_date::kDayAndTime, digits)
          ? fixed_date::calendarHas(digits)
          : copyDate(sDate, digits);
  if (!isDate) result = Empty{};
  return result;
}

}  // namespace veltgeneral
