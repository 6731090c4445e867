// Literals for the three database engines.
#include <initializer_list>

#include "automation/calendar.h"
#include "automation/coerce.h"
#include "convert/fixed_date.h"
#include "convert/number_values.h"
#include "veltgeneral/funzioni.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

bool isKnown(typeDataBaseEngine engine) {
  return engine == dbengineORACLE || engine == dbengineMSACCESS || engine == dbengineSQLSERVER;
}

Variant emptyLiteral(typeDataBaseEngine engine) {
  return Text(engine == dbengineORACLE ? u"''" : u"Null");
}

// Kinds that have no text are no date.
bool hasText(const Variant& value) {
  switch (kindOf(value)) {
    case Kind::empty:
    case Kind::missing:
    case Kind::null:
    case Kind::bytes:
    case Kind::textArray:
    case Kind::object:
      return false;
    default:
      return true;
  }
}

Text joined(std::initializer_list<TextView> pieces) {
  Text text;
  for (const TextView piece : pieces) text += piece;
  return text;
}

Text shortDay(TextView stamp) {
  const FourDigits year(&stamp[0]);
  const FourDigits monthAndDay(&stamp[4]);
  return formatShortDate(dateSerial(static_cast<std::int16_t>(year.all()),
                                    static_cast<std::int16_t>(monthAndDay.first()),
                                    static_cast<std::int16_t>(monthAndDay.second())));
}

Text dateLiteral(typeDataBaseEngine engine, TextView stamp) {
  if (engine == dbengineORACLE) return joined({u"to_date('", stamp, u"','YYYYMMDDHH24MISS')"});
  const auto digits = [&](std::size_t at) { return stamp.substr(at, 2); };
  const Text time = joined({u" ", digits(8), u":", digits(10), u":", digits(12)});
  if (engine == dbengineSQLSERVER) return joined({u"'", shortDay(stamp), time, u"'"});
  return joined({u"#", digits(4), u"/", digits(6), u"/", stamp.substr(0, 4), time, u"#"});
}

std::int16_t negated(std::int16_t value) {
  if (value == INT16_MIN) throw RuntimeError(RunTime::overflow);
  return static_cast<std::int16_t>(-value);
}

}  // namespace

Variant Funzioni::getDataForDB(typeDataBaseEngine lEngine,
                               const Variant& sDateYYYYMMDDHHMMSS) const {
  if (!isKnown(lEngine)) return Empty{};
  if (!hasText(sDateYYYYMMDDHHMMSS)) return emptyLiteral(lEngine);
  const Text stamp = toText(sDateYYYYMMDDHHMMSS);
  if (!Funzioni().isDateYYYYMMDDHH24MISS(stamp)) return emptyLiteral(lEngine);
  return dateLiteral(lEngine, stamp);
}

std::int16_t Funzioni::getBoolForDB(typeDataBaseEngine lEngine) const {
  if (!isKnown(lEngine)) return 0;
  return lEngine == dbengineMSACCESS ? 1 : -1;
}

Variant Funzioni::getBoolForDBx(typeDataBaseEngine lEngine, Variant& vntBool) const {
  if (!isKnown(lEngine)) return Empty{};
  if (!isNumeric(vntBool)) return emptyLiteral(lEngine);
  const std::int16_t value = toInt16(vntBool);
  return lEngine == dbengineMSACCESS ? value : negated(value);
}

Variant Funzioni::getNumberForDB(typeDataBaseEngine lEngine, Variant& vntValue) const {
  if (!isKnown(lEngine)) return Empty{};
  if (!isNumeric(vntValue)) return emptyLiteral(lEngine);
  Variant result = plainNumber(vntValue);
  if (kindOf(result) == Kind::text) vntValue = result;
  return result;
}

}  // namespace veltgeneral
