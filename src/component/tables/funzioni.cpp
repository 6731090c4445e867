#include "veltgeneral/funzioni.h"

#include "component/member_row.h"
#include "component/tables/tables.h"

namespace veltgeneral {

namespace {

constexpr Member kRows[] = {
    method<&Funzioni::getValueFromCsvString>("getValueFromCsvString", "sStringValue", "sArrayValue",
                                             "lNumFieldFound"),
    method<&Funzioni::isDateYYYYMMDD>("isDateYYYYMMDD", "sDate"),
    method<&Funzioni::isDateYYYYMMDDHH24MISS>("isDateYYYYMMDDHH24MISS", "sDate"),
    method<&Funzioni::isTimeHH24MISS>("isTimeHH24MISS", "sTime"),
    method<&Funzioni::isDateYYYYMMDDefault>("isDateYYYYMMDDefault", "sDate"),
    method<&Funzioni::isDateYYYYMMDDefaultSpaces>("isDateYYYYMMDDefaultSpaces", "sDate"),
    method<&Funzioni::isYYYYBisestile>("isYYYYBisestile", "sAnno"),
    method<&Funzioni::getDayNumberFromYYYYMMDD>("getDayNumberFromYYYYMMDD", "sDateYYYYMMDD"),
    method<&Funzioni::getDayNumberFromDate>("getDayNumberFromDate", "sDate"),
};

}  // namespace

template <>
Class describeClass<Funzioni>() {
  return {"Funzioni", "Checks and conversions of values", kRows, &makeObject<Funzioni>};
}

}  // namespace veltgeneral
